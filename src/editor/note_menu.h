#pragma once
// The note's own menu: loudness, length and accidental, and the turn between note and
// rest. Items are told apart by their text, so the texts are data.
#include <string>
#include <vector>

#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/ports.h"

namespace lirenza {

struct MenuEntry {
  std::string text;  // "-" is a separator
  bool checked = false;
};

struct NoteMenu {
  std::string title;
  std::vector<MenuEntry> items;
};

inline const char* kVolumeMenuTitle = "音量の変更";
inline const char* kLengthMenuTitle = "音長の変更";
inline const char* kAccidentalMenuTitle = "臨時符号";
inline const char* kConversionItem = "音符/休符変換";

// Opening the menu stops the sound the hover started, then builds the three sub-menus
// with the note's present values checked.
std::vector<NoteMenu> NoteConstructContextualMenu(const NoteCV& note, const SoundPorts& ports,
                                                   const TuningTables& tuning);

// The chosen item's text applied in the fixed order: loudness, repaint, accidental,
// length or conversion, repaint.
void NoteContextualMenuAction(NoteCV& note, const std::string& itemText);

void RestConversion(NoteCV& note);
void NoteConversion(NoteCV& note);

}  // namespace lirenza
