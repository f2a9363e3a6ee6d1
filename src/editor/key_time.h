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

extern const std::array<std::string_view, 15> kKeyMenuItems;   // "0:ハ長調" ... "14:bbbbbbb"
inline const char* kKeyMenuTitle = "(調号の選択)";
inline const char* kOctaveUpItem = "15:オクターブ上";
inline const char* kOctaveDownItem = "16:オクターブ下";
extern const std::array<std::string_view, 9> kTimeMenuItems;   // "0:4/4" ... "8:9/8"
inline const char* kTimeMenuTitle = "(拍子の選択)";

// The key's distance from C in staff lines.
int KeyStepValue(int keyN);
// The staff picture of a time signature: Sheet2 for the compound and triple metres.
std::string TimeSheetPicture(int timeN);

// Moves every note (rests stay) by steps staff lines, downward for positive steps, and
// reads pitch and signature again from each note's new line.
void MoveNotes(Staff& staff, int steps);

// The key menu: sets the key, moves the notes, and retunes.
void KCV_ContextualMenuAction(Staff& staff, TuningTables& tuning, const std::string& itemText);
// The time menu: pictures and timeN.
void TCV_ContextualMenuAction(Staff& staff, const std::string& itemText);

}  // namespace lirenza
