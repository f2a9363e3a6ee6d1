#include "editor/key_time.h"

#include <algorithm>

#include "editor/note_gestures.h"
#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

const std::array<std::string_view, 15> kKeyMenuItems = {
    "0:ハ長調", "1:#", "2:##", "3:###", "4:####", "5:#####", "6:######", "7:#######",
    "8:b", "9:bb", "10:bbb", "11:bbbb", "12:bbbbb", "13:bbbbbb", "14:bbbbbbb"};
const std::array<std::string_view, 9> kTimeMenuItems = {"0:4/4", "1:6/8", "2:3/4", "3:2/4", "4:2/2",
                                                        "5:12/8", "6:5/4", "7:3/8", "8:9/8"};

namespace {
constexpr std::string_view kStepValues = "0,4,1,5,2,6,3,7,-4,-1,-5,-2,-6,-3,-7";
constexpr std::string_view kTimeSheets = "Sheet1,Sheet2,Sheet2,Sheet1,Sheet1,Sheet2,Sheet1,Sheet2,Sheet2";
// Transposition may go one line further than entry at each end.
constexpr int kMoveTopMin = 54;
constexpr int kMoveTopMax = 159;
}  // namespace

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

void KCV_ContextualMenuAction(Staff& staff, TuningTables& tuning, const std::string& text) {
  int steps = KeyStepValue(staff.keyN);
  bool matched = false;
  for (int k = 0; k < 15; ++k) {
    if (text != kKeyMenuItems[k]) continue;
    staff.keyN = k;
    staff.kcvPicture = KeySignaturePicture(k);
    steps -= KeyStepValue(k);
    matched = true;
  }
  if (text == kOctaveUpItem) steps = -7;
  else if (text == kOctaveDownItem) steps = 7;
  else if (!matched) steps = 0;
  MoveNotes(staff, steps);
  PureScale(tuning, staff.keyN);
}

void TCV_ContextualMenuAction(Staff& staff, const std::string& text) {
  for (int t = 0; t < 9; ++t) {
    if (text != kTimeMenuItems[t]) continue;
    staff.timeN = t;
    staff.tcvPicture = TimeSignaturePicture(t);
    staff.mcvBackdrop = TimeSheetPicture(t);
  }
}

}  // namespace lirenza
