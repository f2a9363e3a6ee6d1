#pragma once
// The staff: the notes in entry order with the hidden template at index 0, the entry
// cursor, the selected bar, the scroll position, the signatures and the two texts of
// the score. The window draws this; it never keeps a second copy.
#include <string>
#include <string_view>
#include <vector>

#include "score/note_cv.h"

namespace lirenza {

inline constexpr int kBarWidth = 144;
inline constexpr int kMsbMaximum = 9504;  // 66 steps of one bar: 72 bars with six in view
inline constexpr int kMaxKestraTokens = 192;
inline constexpr int kFirstColumn = 136;  // where the first note of a new score goes
inline constexpr int kTemplateLeft = 120;
inline constexpr int kTemplateTop = 117;
inline constexpr int kNoteTopMin = 57;
inline constexpr int kNoteTopMax = 162;
inline constexpr int kKestraRestTop = 106;

struct Staff {
  // icv[0] is the hidden template: the origin of time, never a note of the score.
  std::vector<NoteCV> icv{NoteCV{}};
  int preNote[2] = {kFirstColumn, kTemplateTop};
  int preCord[2] = {0, 0};
  int oldSBValue[2] = {0, 0};
  int noteSpace = 32;
  int keyN = 0;
  int timeN = 0;
  int msbValue = 0;             // the scroll bar under the staff
  std::string title;            // EF(0)
  std::string comment;          // EF(1)
  std::string kcvPicture = "S0";
  std::string tcvPicture = "T4";
  std::string mcvBackdrop = "Sheet1";
  bool noteChanged = false;

  int NoteCount() const { return static_cast<int>(icv.size()) - 1; }
  bool Exists(int index) const { return index >= 0 && index < static_cast<int>(icv.size()); }
  // A new note takes the next index, as a new control does.
  NoteCV& AddNote(const NoteCV& note);
  // Removing a note closes the gap so that the walks from 1 stay dense.
  void RemoveNote(int index);
};

// The mode flags. While any of the first three is set the score is busy, and handlers
// that would change the score or the mode do nothing.
struct Modes {
  bool noteReading = false;
  bool playflag = false;
  bool repeatflag = false;
  bool Busy() const { return noteReading || playflag || repeatflag; }
};

// A text field of the score changed: the score now holds changes.
void SetTitle(Staff& staff, std::string_view text);
void SetComment(Staff& staff, std::string_view text);

// Scrolling. The value is cut to whole bars; notes, template, entry cursor, selected bar
// and copied bar move with the view. Setting the value the bar already has does nothing.
void SetMSBValue(Staff& staff, int value);
void MSB_ValueChanged(Staff& staff, int value);

void ClearNotes(Staff& staff);   // empties the staff, keeps title and signatures
void ClearNotes2(Staff& staff);  // empties the staff, title, comment and signatures
void ChangeKeyC(Staff& staff);
void noteChangedCheck(Staff& staff);
// Fills the staff from a line of note tokens with one blank between them. Tokens past
// the 192nd are dropped.
void ChangeKestra(Staff& staff, std::string_view line);

// The staff canvas shows the columns from 120 to 988. A note is painted, and its token
// rebuilt from its fields, only while some of it is in view.
inline constexpr int kViewLeft = 120;
inline constexpr int kViewRight = 988;
inline constexpr int kNoteWidth = 15;
inline constexpr int kNoteHeight = 35;
bool InView(const NoteCV& note);
// What the window's paint does to the notes in view: their tokens follow their fields.
void RepaintInView(Staff& staff);

// The grid. A click at x, y in the staff canvas gives a place before snapping.
int ClickColumn(int x);
int ClickRow(int y);
// Columns left of the first go to it; the two barred columns behind each of the first
// five bars go to the nearer column of a bar; a column past lastColumn goes to 960.
int SnapColumn(int left, int lastColumn);
int ClampNoteTop(int top);
int RestRow(int top);
// Pushes a new note (or rest) at index `self` down while another note stands at the
// same place: one walk over the staff from the template on, never started over.
int ClashSearch(const Staff& staff, int self, int left, int top, bool rest);
// The view bar that holds a Left: 144b + 120 <= Left < 144b + 264.
bool InViewBar(int left, int bar);

}  // namespace lirenza
