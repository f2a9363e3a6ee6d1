#pragma once
// Bars as the unit of editing: cut, copy, paste, clear, insert, write the score out
// twice, delete all. A bar is a number and a span of Left; every operation is a walk
// over the notes.
#include <array>
#include <string>
#include <string_view>

#include "score/staff.h"
#include "violin/ports.h"

namespace lirenza {

// The staff's context menu: title, separators and the nine operations in order.
extern const std::array<std::string_view, 13> kStaffMenuTexts;
// The same operations in the EditBar menu (index 0..6) and their shortcuts.
extern const std::array<std::string_view, 7> kEditBarTexts;
extern const std::array<std::string_view, 7> kEditBarShortcuts;
inline constexpr int kBarAddStop = 10224;
inline constexpr int kBarDoubleMaxBars = 36;

void BarClear(Staff& staff);
void BarDelete(Staff& staff);
void BarAdd(Staff& staff);
// Paste: the copied bar replaces the target bar.
void BarCopy(Staff& staff);
// Copy: the bar clipboard is a bar number, read again at paste time.
void BarCopyMark(Staff& staff);
void CopyNote(Staff& staff, const NoteCV& from, int left);
void BarDouble(Staff& staff);

inline const char* kDeleteAllMessage = "楽譜の音符を全部削除しますか？";
inline const char* kDeleteAllExplanation = "一度削除したら、元にはもどせません。 ";
inline const char* kDeleteAllAction = "削除";

// What the caller must do beside the staff for items 7 and 8 (open and save ask for a
// file, which is the window's business).
enum class BarMenuOutcome { Done, OpenFile, SaveFile, Ignored };

// The staff's context menu at the mouse place: no busy guard on this road.
BarMenuOutcome MCV_ContextualMenuAction(Staff& staff, const std::string& itemText, int mouseX, int mouseY,
                                        Confirm& confirm);
// The EditBar menu by index; does nothing while busy.
BarMenuOutcome EditBar_Action(Staff& staff, const Modes& modes, int index, Confirm& confirm);

}  // namespace lirenza
