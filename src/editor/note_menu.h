#pragma once
// The note's own menu: loudness, length and accidental, and the turn between note and
// rest. An item is known by what it does (NoteMenuChoice); its caption is only what
// the menu shows, so a mnemonic, a new wording or a translation changes no action.
#include <string>
#include <vector>

#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "ports/ports.h"

namespace lirenza {

struct NoteMenuChoice {
  enum class Kind { Loudness, Length, Accidental, NoteOrRest, Separator };
  Kind kind = Kind::Separator;
  int value = 0;  // loudness digit 0..15 (0 makes a rest), length digit 0..15, sign 0..3
  bool operator==(const NoteMenuChoice&) const = default;
};

struct NoteMenuItem {
  NoteMenuChoice choice;
  std::string caption;
  bool checked = false;
};

struct NoteMenu {
  std::string title;
  std::vector<NoteMenuItem> items;
};

// What the menu shows for a choice ("9:m", "4:4音符", "1:#", "音符/休符変換", "-").
std::string NoteMenuCaption(NoteMenuChoice choice);

// Opening the menu stops the sound the hover started, then builds the three sub-menus
// (loudness, length with the note/rest turn, accidental) with the note's present
// values checked.
std::vector<NoteMenu> OpenNoteMenu(const Note& note, const SoundPorts& ports, const TuningTables& tuning);

// The chosen item applied in the fixed order: loudness, repaint, accidental, length or
// the turn between note and rest, repaint. Refused (false) while a score is read or
// played.
bool ChooseFromNoteMenu(Note& note, const Modes& modes, NoteMenuChoice choice);

void RestConversion(Note& note);
void NoteConversion(Note& note);

}  // namespace lirenza
