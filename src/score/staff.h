#pragma once
// The staff: the notes in entry order with the hidden template at index 0, the entry
// cursor, the selected bar, the scroll position, the signatures and the two texts of
// the score. The window draws this; it never keeps a second copy.
#include <string>
#include <string_view>
#include <vector>

#include "score/note.h"

namespace lirenza {

inline constexpr int kBarWidth = 144;
inline constexpr int kScrollMaximum = 9504;  // 66 steps of one bar: 72 bars with six in view
inline constexpr int kMaxKestraTokens = 192;
inline constexpr int kFirstColumn = 136;  // where the first note of a new score goes
inline constexpr int kTemplateLeft = 120;
inline constexpr int kTemplateTop = 117;
inline constexpr int kNoteTopMin = 57;
inline constexpr int kNoteTopMax = 162;
inline constexpr int kKestraRestTop = 106;
// What a new score shows: no key signature, four-four time on its sheet.
inline constexpr const char* kPlainKeyPicture = "S0";
inline constexpr const char* kFourFourPicture = "T4";
inline constexpr const char* kFourFourSheet = "Sheet1";

struct Staff {
  // notes[0] is the hidden template: the origin of time, never a note of the score.
  std::vector<Note> notes{Note{}};
  int entryLeft = kFirstColumn;  // where the next entered note goes
  int entryTop = kTemplateTop;   // the row of the last note entered or pressed
  int selectedBar = 0;           // bar number in view of the last click on the staff
  int copiedBar = 0;             // bar number in view that a paste copies from
  int appliedScroll = 0;         // the scroll the notes' Left values stand at
  int entrySpacing = 32;         // columns between entered notes, by the length chosen
  int keySignature = 0;          // 0 none, 1..7 sharps, 8..14 flats
  int timeSignature = 0;         // 0 4/4, 1 6/8, 2 3/4, 3 2/4, 4 2/2, 5 12/8, 6 5/4, 7 3/8, 8 9/8
  int scrollValue = 0;           // the scroll bar under the staff
  std::string title;
  std::string comment;           // composer and remarks
  std::string keySignaturePicture = kPlainKeyPicture;
  std::string timeSignaturePicture = kFourFourPicture;
  std::string sheetPicture = kFourFourSheet;
  bool hasChanges = false;

  int NoteCount() const { return static_cast<int>(notes.size()) - 1; }
  bool Exists(int index) const { return index >= 0 && index < static_cast<int>(notes.size()); }
  // A new note takes the next index, as a new control does.
  Note& AddNote(const Note& note);
  // Removing a note closes the gap so that the walks from 1 stay dense.
  void RemoveNote(int index);
};

// The mode flags. While any of the first three is set the score is busy, and handlers
// that would change the score or the mode do nothing.
struct Modes {
  bool loading = false;
  bool playing = false;
  bool listPlaying = false;
  bool Busy() const { return loading || playing || listPlaying; }
};

// A text field of the score changed: the score now holds changes.
void SetTitle(Staff& staff, std::string_view text);
void SetComment(Staff& staff, std::string_view text);

// Scrolling. The value is cut to whole bars; notes, template, entry cursor, selected bar
// and copied bar move with the view. Setting the value the bar already has does nothing.
void ScrollTo(Staff& staff, int value);
void ApplyScroll(Staff& staff, int value);

void ClearStaff(Staff& staff);   // empties the staff, keeps title and signatures
void ClearScore(Staff& staff);  // empties the staff, title, comment and signatures
void ResetKeyToC(Staff& staff);
// No key signature, four-four time: the signatures of a new score.
void ResetSignatures(Staff& staff);
void UpdateChangedFlag(Staff& staff);
// Fills the staff from a line of note tokens with one blank between them. Tokens past
// the 192nd are dropped.
void LoadKestraLine(Staff& staff, std::string_view line);

// The staff canvas shows the columns from 120 to 988. A note is painted, and its token
// rebuilt from its fields, only while some of it is in view.
inline constexpr int kViewLeft = 120;
inline constexpr int kViewRight = 988;
inline constexpr int kNoteWidth = 15;
inline constexpr int kNoteHeight = 35;
bool InView(const Note& note);
// What the window's paint does to the notes in view: their tokens follow their fields.
void RespellNotesInView(Staff& staff);

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
bool InBar(int left, int bar);

}  // namespace lirenza
