#pragma once
// Bars as the unit of editing: cut, copy, paste, clear, insert, write the score out
// twice, delete all. A bar is a number and a span of Left; every operation is a walk
// over the notes.
#include <array>
#include <string>
#include <string_view>

#include "score/staff.h"
#include "ports/ports.h"

namespace lirenza {

// What the staff's menu and the bar menu of the menu bar offer. The staff's menu has
// all nine; the bar menu the first seven. Captions are only what the menus show.
enum class BarOperation { Cut, Copy, Paste, Clear, Insert, DoubleAll, DeleteAll, OpenScore, SaveScore };
inline constexpr int kBarMenuOperations = 7;  // Cut .. DeleteAll

// One row of the staff's menu: a title, a separator ("-") or an operation.
struct StaffMenuRow {
  std::string_view caption;
  bool isOperation = false;
  BarOperation operation = BarOperation::Cut;
};
extern const std::array<StaffMenuRow, 13> kStaffMenuRows;
// The bar menu's caption and shortcut of operation Cut .. DeleteAll.
std::string_view BarMenuCaption(BarOperation operation);
std::string_view BarMenuShortcut(BarOperation operation);
inline constexpr int kBarAddStop = 10224;
inline constexpr int kBarDoubleMaxBars = 36;

void BarClear(Staff& staff);
void BarDelete(Staff& staff);
void BarAdd(Staff& staff);
// Paste: the copied bar replaces the target bar.
void BarCopy(Staff& staff);
// Copy: the bar clipboard is a bar number, read again at paste time.
void BarCopyMark(Staff& staff);
void CopyNote(Staff& staff, const Note& from, int left);
void BarDouble(Staff& staff);

inline const char* kDeleteAllMessage = "楽譜の音符を全部削除しますか？";
inline const char* kDeleteAllExplanation = "一度削除したら、元にはもどせません。 ";
inline const char* kDeleteAllAction = "削除";

// What the caller must do beside the staff for open and save (they ask for a file,
// which is the window's business).
enum class BarMenuOutcome { Done, OpenFile, SaveFile, Ignored };

// The staff's menu, chosen at the mouse place. This road has no busy guard: the menu
// opens on the staff itself, and its bars are what it acts on.
BarMenuOutcome ChooseFromStaffMenu(Staff& staff, BarOperation operation, int mouseX, int mouseY, Confirm& confirm);
// The bar menu of the menu bar; does nothing while a score is read or played.
BarMenuOutcome ChooseFromBarMenu(Staff& staff, const Modes& modes, BarOperation operation, Confirm& confirm);

}  // namespace lirenza
