#pragma once
// Key and time signatures. Choosing a key changes the signature and moves every note
// line by line into the new key; two items move the score an octave. Choosing a time
// signature changes pictures only.
#include <array>
#include <string>
#include <string_view>

#include "score/staff.h"
#include "tuning/pure_scale.h"

namespace lirenza {

// The key menu's items: keys 0..14 by their number (0 C major, 1..7 sharps, 8..14
// flats), then the two octave moves. The caption is only what the menu shows.
inline constexpr int kKeyCount = 15;
inline constexpr int kOctaveUpItem = 15;
inline constexpr int kOctaveDownItem = 16;
inline constexpr int kKeyMenuItemCount = 17;
inline constexpr int kTimeCount = 9;  // time signatures 0..8 are their own menu items
inline const char* kKeyMenuTitle = "(調号の選択)";
inline const char* kTimeMenuTitle = "(拍子の選択)";
std::string_view KeyMenuCaption(int item);   // "0:ハ長調" ... "16:オクターブ下"
std::string_view TimeMenuCaption(int timeSignature);  // "0:4/4" ... "8:9/8"

// The key's distance from C in staff lines.
int KeyStepValue(int keySignature);
// The staff picture of a time signature: Sheet2 for the compound and triple metres.
std::string TimeSheetPicture(int timeSignature);

// Moves every note (rests stay) by steps staff lines, downward for positive steps, and
// reads pitch and signature again from each note's new line.
void MoveNotes(Staff& staff, int steps);

// The key menu: sets the key, moves the notes, and retunes. Refused (false) while a
// score is read or played, and for an item the menu does not have.
bool ChooseKey(Staff& staff, TuningTables& tuning, const Modes& modes, int item);
// The time menu: pictures and timeSignature only; refused the same way.
bool ChooseTime(Staff& staff, const Modes& modes, int timeSignature);

}  // namespace lirenza
