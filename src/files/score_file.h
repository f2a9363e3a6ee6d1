#pragma once
// The .note score file: one line of eight fields cut by ";", the first holding one
// record of eleven comma-separated fields for each note in entry order, each record
// followed by a blank. UTF-8, one LF at the end. The reader forgives everything: any
// bytes give a staff, missing fields read as empty or 0.
#include <string>
#include <string_view>
#include <vector>

#include "score/note_cv.h"
#include "score/staff.h"

namespace lirenza {

struct ScoreFile {
  std::vector<NoteCV> notes;  // file order, backdrops chosen as the loader chooses
  std::string title;
  std::string comment;
  int instrumentGroup = 0;  // menu value of the group menu; no reader applies it
  int instrumentRow = 0;    // menu value of the instrument menu; no reader applies it
  bool instrumentGiven = false;  // both menu values stand in the file as numbers
  int tempoSlider = 0;
  int keyN = 0;
  int timeN = 0;
};

// The text of a file holding exactly these notes and settings.
std::string ScoreFileText(const ScoreFile& file);
// The record of one note, without the blank behind it.
std::string NoteRecord(const NoteCV& note);

// Reads a score from any text. The slider value is taken as it stands in the file;
// whoever applies it holds it to the slider's range.
ScoreFile ParseScoreFile(std::string_view text);

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
// Loads a score onto the staff as OpenFile1 does: the staff is emptied, texts and
// signatures are taken, the notes come in file order. Returns the tempo slider value
// the window must take (held to 0..15); the instrument menus are left alone.
int ApplyScoreFile(Staff& staff, const ScoreFile& file);
int OpenFile1(Staff& staff, std::string_view text);

}  // namespace lirenza
