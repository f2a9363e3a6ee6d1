#include "editor/key_time.h"

#include <algorithm>

#include "editor/note_gestures.h"
#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

namespace {
constexpr std::string_view kStepValues = "0,4,1,5,2,6,3,7,-4,-1,-5,-2,-6,-3,-7";
constexpr std::string_view kTimeSheets = "Sheet1,Sheet2,Sheet2,Sheet1,Sheet1,Sheet2,Sheet1,Sheet2,Sheet2";
// Transposition may go one line further than entry at each end.
constexpr int kMoveTopMin = 54;
constexpr int kMoveTopMax = 159;

constexpr std::array<std::string_view, kKeyMenuItemCount> kKeyCaptions = {
    "0:ハ長調", "1:#", "2:##", "3:###", "4:####", "5:#####", "6:######", "7:#######", "8:b",
    "9:bb", "10:bbb", "11:bbbb", "12:bbbbb", "13:bbbbbb", "14:bbbbbbb", "15:オクターブ上", "16:オクターブ下"};
constexpr std::array<std::string_view, kTimeCount> kTimeCaptions = {"0:4/4", "1:6/8",  "2:3/4", "3:2/4", "4:2/2",
                                                                    "5:12/8", "6:5/4", "7:3/8", "8:9/8"};
}  // namespace

std::string_view KeyMenuCaption(int item) {
  return item >= 0 && item < kKeyMenuItemCount ? kKeyCaptions[item] : std::string_view{};
}

std::string_view TimeMenuCaption(int timeN) {
  return timeN >= 0 && timeN < kTimeCount ? kTimeCaptions[timeN] : std::string_view{};
}

int KeyStepValue(int keyN) { return IntVal(Field(kStepValues, keyN + 1)); }

std::string TimeSheetPicture(int timeN) { return Field(kTimeSheets, timeN + 1); }

void MoveNotes(Staff& staff, int steps) {
  if (steps == 0) return;
  for (std::size_t i = 1; i < staff.icv.size(); ++i) {
    NoteCV& n = staff.icv[i];
    if (n.IsRest()) continue;
    n.top = std::clamp(n.top + steps * 3, kMoveTopMin, kMoveTopMax);
    SetNoteFamily(n, TransposeFamily(n.top));
    n.nline = StaffLinePitch(n.top);
    n.ks = KeySignatureShift(staff.keyN, n.nline);
    RepaintToken(n);
  }
}

bool ChooseKey(Staff& staff, TuningTables& tuning, const Modes& modes, int item) {
  if (modes.Busy() || item < 0 || item >= kKeyMenuItemCount) return false;
  int steps = 0;
  if (item == kOctaveUpItem) {
    steps = -7;
  } else if (item == kOctaveDownItem) {
    steps = 7;
  } else {
    steps = KeyStepValue(staff.keyN) - KeyStepValue(item);
    staff.keyN = item;
    staff.kcvPicture = KeySignaturePicture(item);
  }
  MoveNotes(staff, steps);
  PureScale(tuning, staff.keyN);
  return true;
}

bool ChooseTime(Staff& staff, const Modes& modes, int timeN) {
  if (modes.Busy() || timeN < 0 || timeN >= kTimeCount) return false;
  staff.timeN = timeN;
  staff.tcvPicture = TimeSignaturePicture(timeN);
  staff.mcvBackdrop = TimeSheetPicture(timeN);
  return true;
}

}  // namespace lirenza
