#include "editor/bar_operations.h"

#include "score/note_tables.h"

namespace lirenza {

const std::array<StaffMenuRow, 13> kStaffMenuRows = {{
    {"(編集)"},
    {"-"},
    {"0:小節カット", true, BarOperation::Cut},
    {"1:小節コピー", true, BarOperation::Copy},
    {"2:小節ペースト", true, BarOperation::Paste},
    {"3:小節クリア", true, BarOperation::Clear},
    {"4:小節挿入", true, BarOperation::Insert},
    {"-"},
    {"5:全音符を2倍にする", true, BarOperation::DoubleAll},
    {"6:全音符を削除", true, BarOperation::DeleteAll},
    {"-"},
    {"7:楽譜を開く", true, BarOperation::OpenScore},
    {"8:楽譜を保存", true, BarOperation::SaveScore},
}};

namespace {
constexpr std::array<std::string_view, kBarMenuOperations> kBarMenuCaptions = {
    "小節カット", "小節コピー", "小節ペースト", "小節クリアー", "小節挿入", "全音符を2倍にする", "全音符を削除"};
constexpr std::array<std::string_view, kBarMenuOperations> kBarMenuShortcuts = {
    "Option+X", "Option+C", "Option+V", "", "Option+I", "", ""};
}  // namespace

std::string_view BarMenuCaption(BarOperation operation) {
  const int i = static_cast<int>(operation);
  return i < kBarMenuOperations ? kBarMenuCaptions[i] : std::string_view{};
}

std::string_view BarMenuShortcut(BarOperation operation) {
  const int i = static_cast<int>(operation);
  return i < kBarMenuOperations ? kBarMenuShortcuts[i] : std::string_view{};
}

namespace {

void ClearBar(Staff& staff, int bar) {
  for (int i = 1; i < static_cast<int>(staff.notes.size());) {
    if (InBar(staff.notes[i].left, bar)) staff.RemoveNote(i);
    else ++i;
  }
}

}  // namespace

void BarClear(Staff& staff) { ClearBar(staff, staff.selectedBar); }

void BarDelete(Staff& staff) {
  ClearBar(staff, staff.selectedBar);
  const int from = staff.selectedBar * kBarWidth + 264;
  for (std::size_t i = 1; i < staff.notes.size(); ++i)
    if (staff.notes[i].left >= from) staff.notes[i].left -= kBarWidth;
}

void BarAdd(Staff& staff) {
  const int from = staff.selectedBar * kBarWidth + 120;
  // The hidden template is the origin of time and stays where it is; the walk over the
  // notes is in entry order and stops at the first note past the end of the staff.
  for (std::size_t i = 1; i < staff.notes.size(); ++i) {
    Note& n = staff.notes[i];
    if (n.left > kBarAddStop) return;
    if (n.left >= from) n.left += kBarWidth;
  }
}

void BarCopyMark(Staff& staff) { staff.copiedBar = staff.selectedBar; }

void CopyNote(Staff& staff, const Note& from, int left) {
  // Only what a score file stores is copied: no gesture state, no playing highlight.
  Note n;
  n.StoredFields() = from.StoredFields();
  n.left = left;
  n.picture = StoredPicture(n);
  staff.AddNote(n);
  if (InView(staff.notes.back())) RespellToken(staff.notes.back());
}

void BarCopy(Staff& staff) {
  const int target = staff.selectedBar, source = staff.copiedBar;
  const int offset = (target - source) * kBarWidth;
  ClearBar(staff, target);
  const std::size_t count = staff.notes.size();
  for (std::size_t i = 1; i < count; ++i)
    if (InBar(staff.notes[i].left, source)) CopyNote(staff, Note(staff.notes[i]), staff.notes[i].left + offset);
}

void BarDouble(Staff& staff) {
  ScrollTo(staff, 0);
  const int count = staff.NoteCount();
  int greatest = 0;
  for (int i = 1; i <= count; ++i) greatest = std::max(greatest, staff.notes[i].left);
  const int bars = static_cast<int>(greatest / 144.0);
  if (bars > kBarDoubleMaxBars) return;
  const int offset = bars * kBarWidth;
  for (int i = 1; i <= count; ++i) CopyNote(staff, Note(staff.notes[i]), staff.notes[i].left + offset);
}

namespace {

BarMenuOutcome RunBarOperation(Staff& staff, BarOperation operation, bool barMenu, Confirm& confirm) {
  switch (operation) {
    case BarOperation::Cut: BarDelete(staff); break;
    case BarOperation::Copy: BarCopyMark(staff); break;
    case BarOperation::Paste: BarCopy(staff); break;
    case BarOperation::Clear: BarClear(staff); break;
    case BarOperation::Insert: BarAdd(staff); break;
    case BarOperation::DoubleAll: BarDouble(staff); break;
    case BarOperation::DeleteAll:
      if (barMenu) {
        if (confirm.Ask(kDeleteAllMessage, kDeleteAllExplanation, kDeleteAllAction)) ClearScore(staff);
      } else if (!staff.hasChanges || confirm.Ask(kDeleteAllMessage, kDeleteAllExplanation, kDeleteAllAction)) {
        ClearStaff(staff);
      }
      break;
    case BarOperation::OpenScore: return barMenu ? BarMenuOutcome::Ignored : BarMenuOutcome::OpenFile;
    case BarOperation::SaveScore: return barMenu ? BarMenuOutcome::Ignored : BarMenuOutcome::SaveFile;
  }
  return BarMenuOutcome::Done;
}

}  // namespace

BarMenuOutcome ChooseFromStaffMenu(Staff& staff, BarOperation operation, int mouseX, int mouseY, Confirm& confirm) {
  staff.entryLeft = ClickColumn(mouseX);
  staff.entryTop = ClickRow(mouseY);
  return RunBarOperation(staff, operation, false, confirm);
}

BarMenuOutcome ChooseFromBarMenu(Staff& staff, const Modes& modes, BarOperation operation, Confirm& confirm) {
  if (modes.Busy()) return BarMenuOutcome::Ignored;
  return RunBarOperation(staff, operation, true, confirm);
}

}  // namespace lirenza
