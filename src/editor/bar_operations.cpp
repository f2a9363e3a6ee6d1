#include "editor/bar_operations.h"

#include "score/note_tables.h"

namespace lirenza {

const std::array<std::string_view, 13> kStaffMenuTexts = {
    "(編集)", "-", "0:小節カット", "1:小節コピー", "2:小節ペースト", "3:小節クリア", "4:小節挿入", "-",
    "5:全音符を2倍にする", "6:全音符を削除", "-", "7:楽譜を開く", "8:楽譜を保存"};
const std::array<std::string_view, 7> kEditBarTexts = {"小節カット", "小節コピー", "小節ペースト", "小節クリアー",
                                                       "小節挿入", "全音符を2倍にする", "全音符を削除"};
const std::array<std::string_view, 7> kEditBarShortcuts = {"Option+X", "Option+C", "Option+V", "", "Option+I", "", ""};

namespace {

void ClearBar(Staff& staff, int bar) {
  for (int i = 1; i < static_cast<int>(staff.icv.size());) {
    if (InViewBar(staff.icv[i].left, bar)) staff.RemoveNote(i);
    else ++i;
  }
}

}  // namespace

void BarClear(Staff& staff) { ClearBar(staff, staff.preCord[0]); }

void BarDelete(Staff& staff) {
  ClearBar(staff, staff.preCord[0]);
  const int from = staff.preCord[0] * kBarWidth + 264;
  for (std::size_t i = 1; i < staff.icv.size(); ++i)
    if (staff.icv[i].left >= from) staff.icv[i].left -= kBarWidth;
}

void BarAdd(Staff& staff) {
  const int from = staff.preCord[0] * kBarWidth + 120;
  // The hidden template is the origin of time and stays where it is; the walk over the
  // notes is in entry order and stops at the first note past the end of the staff.
  for (std::size_t i = 1; i < staff.icv.size(); ++i) {
    NoteCV& n = staff.icv[i];
    if (n.left > kBarAddStop) return;
    if (n.left >= from) n.left += kBarWidth;
  }
}

void BarCopyMark(Staff& staff) { staff.preCord[1] = staff.preCord[0]; }

void CopyNote(Staff& staff, const NoteCV& from, int left) {
  // Only what a score file stores is copied: no gesture state, no playing highlight.
  NoteCV n;
  n.left = left;
  n.top = from.top;
  n.noteNo = from.noteNo;
  n.nline = from.nline;
  n.sf = from.sf;
  n.sib = from.sib;
  n.ks = from.ks;
  n.ve = from.ve;
  n.dr = from.dr;
  n.note = from.note;
  n.position = from.position;
  n.backdrop = StoredBackdrop(n);
  staff.AddNote(n);
  if (InView(staff.icv.back())) RepaintToken(staff.icv.back());
}

void BarCopy(Staff& staff) {
  const int target = staff.preCord[0], source = staff.preCord[1];
  const int offset = (target - source) * kBarWidth;
  ClearBar(staff, target);
  const std::size_t count = staff.icv.size();
  for (std::size_t i = 1; i < count; ++i)
    if (InViewBar(staff.icv[i].left, source)) CopyNote(staff, NoteCV(staff.icv[i]), staff.icv[i].left + offset);
}

void BarDouble(Staff& staff) {
  SetMSBValue(staff, 0);
  const int count = staff.NoteCount();
  int greatest = 0;
  for (int i = 1; i <= count; ++i) greatest = std::max(greatest, staff.icv[i].left);
  const int bars = static_cast<int>(greatest / 144.0);
  if (bars > kBarDoubleMaxBars) return;
  const int offset = bars * kBarWidth;
  for (int i = 1; i <= count; ++i) CopyNote(staff, NoteCV(staff.icv[i]), staff.icv[i].left + offset);
}

namespace {

BarMenuOutcome RunBarOperation(Staff& staff, int index, bool menuRoad, Confirm& confirm) {
  switch (index) {
    case 0: BarDelete(staff); break;
    case 1: BarCopyMark(staff); break;
    case 2: BarCopy(staff); break;
    case 3: BarClear(staff); break;
    case 4: BarAdd(staff); break;
    case 5: BarDouble(staff); break;
    case 6:
      if (menuRoad) {
        if (confirm.Ask(kDeleteAllMessage, kDeleteAllExplanation, kDeleteAllAction)) ClearNotes2(staff);
      } else if (!staff.noteChanged || confirm.Ask(kDeleteAllMessage, kDeleteAllExplanation, kDeleteAllAction)) {
        ClearNotes(staff);
      }
      break;
    case 7: return BarMenuOutcome::OpenFile;
    case 8: return BarMenuOutcome::SaveFile;
    default: return BarMenuOutcome::Ignored;
  }
  return BarMenuOutcome::Done;
}

}  // namespace

BarMenuOutcome MCV_ContextualMenuAction(Staff& staff, const std::string& itemText, int mouseX, int mouseY,
                                        Confirm& confirm) {
  staff.preNote[0] = ClickColumn(mouseX);
  staff.preNote[1] = ClickRow(mouseY);
  for (int index = 0; index <= 8; ++index) {
    // Items 0..4 stand at 2..6, 5 and 6 at 8 and 9, 7 and 8 at 11 and 12.
    const int at = index <= 4 ? index + 2 : index <= 6 ? index + 3 : index + 4;
    if (itemText == kStaffMenuTexts[at]) return RunBarOperation(staff, index, false, confirm);
  }
  return BarMenuOutcome::Ignored;
}

BarMenuOutcome EditBar_Action(Staff& staff, const Modes& modes, int index, Confirm& confirm) {
  if (modes.Busy()) return BarMenuOutcome::Ignored;
  return RunBarOperation(staff, index, true, confirm);
}

}  // namespace lirenza
