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

std::string_view TimeMenuCaption(int timeSignature) {
  return timeSignature >= 0 && timeSignature < kTimeCount ? kTimeCaptions[timeSignature] : std::string_view{};
}

int KeyStepValue(int keySignature) { return IntVal(Field(kStepValues, keySignature + 1)); }

std::string TimeSheetPicture(int timeSignature) { return Field(kTimeSheets, timeSignature + 1); }

void MoveNotes(Staff& staff, int steps) {
  if (steps == 0) return;
  for (std::size_t i = 1; i < staff.notes.size(); ++i) {
    Note& n = staff.notes[i];
    if (n.IsRest()) continue;
    n.top = std::clamp(n.top + steps * 3, kMoveTopMin, kMoveTopMax);
    SetNoteFamily(n, TransposeFamily(n.top));
    n.linePitch = StaffLinePitch(n.top);
    n.keyShift = KeySignatureShift(staff.keySignature, n.linePitch);
    RespellToken(n);
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
    steps = KeyStepValue(staff.keySignature) - KeyStepValue(item);
    staff.keySignature = item;
    staff.keySignaturePicture = KeySignaturePicture(item);
  }
  MoveNotes(staff, steps);
  TuneToKey(tuning, staff.keySignature);
  return true;
}

bool ChooseTime(Staff& staff, const Modes& modes, int timeSignature) {
  if (modes.Busy() || timeSignature < 0 || timeSignature >= kTimeCount) return false;
  staff.timeSignature = timeSignature;
  staff.timeSignaturePicture = TimeSignaturePicture(timeSignature);
  staff.sheetPicture = TimeSheetPicture(timeSignature);
  return true;
}

}  // namespace lirenza
