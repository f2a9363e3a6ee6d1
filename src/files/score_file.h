#pragma once
// The .note score file: one line of eight fields cut by ";", the first holding one
// record of eleven comma-separated fields for each note in entry order, each record
// followed by a blank. UTF-8, one LF at the end. The reader forgives everything: any
// bytes give a staff, missing or unreadable fields read as empty or 0, and it keeps
// count of what it had to repair so a batch run can say so.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "score/note.h"
#include "score/staff.h"

namespace lirenza {

struct ScoreFile {
  std::vector<Note> notes;  // file order, backdrops chosen as the loader chooses
  std::string title;
  std::string comment;
  int instrumentGroup = 0;  // menu value of the group menu; no reader applies it
  int instrumentRow = 0;    // menu value of the instrument menu; no reader applies it
  bool instrumentGiven = false;  // both menu values stand in the file as numbers
  int tempoSlider = 0;  // always 0..kMaxTempoSlider
  int keySignature = 0;         // always 0..kMaxKeyNumber
  int timeSignature = 0;        // always 0..kMaxTimeNumber
};

inline constexpr int kMaxTempoSlider = 15;
inline constexpr int kMaxKeyNumber = 14;
inline constexpr int kMaxTimeNumber = 8;
// Note places and numbers are held within this, so no later sum or product of them
// can overflow an int; a real staff stays within a few thousand.
inline constexpr int kMaxNoteNumberMagnitude = 10'000'000;

// What the reader had to repair to make a staff of a text, counted by kind.
struct ScoreReadReport {
  // Why the text is not a score at all (NUL bytes, not UTF-8, neither a note record nor
  // a score field); empty when it is one. The staff is still read as far as it goes.
  std::string notAScore;
  bool byteOrderMarkSkipped = false;
  bool noScoreFields = false;      // only a note section, no ";" at all
  int missingScoreFields = 0;      // of the seven after the note section
  int unreadableScoreNumbers = 0;  // tempo, key, time or menu fields that are not whole numbers
  int recordsMissingFields = 0;    // fewer than eleven fields
  int recordsWithExtraFields = 0;  // more than eleven; the rest are left out
  int recordsWithUnreadableNumbers = 0;
  int recordsWithHugeNumbers = 0;  // held to kMaxNoteNumberMagnitude
  std::optional<long long> keyOutOfRange, timeOutOfRange, tempoOutOfRange;  // as written

  // One sentence for each kind of repair, in a fixed order; empty for a clean file.
  std::vector<std::string> Repairs() const;
};

// Strict UTF-8: no overlong forms, no surrogates, nothing past U+10FFFF.
bool IsUtf8Text(std::string_view text);

// The text of a file holding exactly these notes and settings.
std::string ScoreFileText(const ScoreFile& file);
// The record of one note, without the blank behind it.
std::string NoteRecord(const Note& note);

// Reads a score from any text, the one way the window and the command line both read.
// A leading byte-order mark is skipped; carriage returns are dropped; missing,
// unreadable and out-of-range numbers read as 0 (the tempo is held to its range, note
// numbers to kMaxNoteNumberMagnitude). *report, when given, says what was repaired.
ScoreFile ParseScoreFile(std::string_view text, ScoreReadReport* report = nullptr);

// The settings of the window that a save writes beside the staff.
struct WindowSettings {
  int instrumentGroup = 5;
  int instrumentRow = 0;
  int tempoSlider = 7;
};

// What a save writes: the staff scrolled back to the start, its notes in entry order.
// Scrolls the staff, as the save does before it asks for a name.
std::string SaveFileText(Staff& staff, const WindowSettings& settings);
// After the file is safely written: the staff becomes a new score.
void ResetAfterSave(Staff& staff, WindowSettings& settings);
// Loads a score onto the staff: the staff is emptied, texts and signatures are taken,
// the notes come in file order. Returns the tempo slider value the window must take;
// the instrument menus are left alone.
int ApplyScoreFile(Staff& staff, const ScoreFile& file);
// ParseScoreFile and ApplyScoreFile in one, for a text a file was read into.
int LoadScoreText(Staff& staff, std::string_view text);

}  // namespace lirenza
