#include "score/staff.h"

#include <algorithm>
#include <cmath>

#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

NoteCV& Staff::AddNote(const NoteCV& note) {
  icv.push_back(note);
  return icv.back();
}

void Staff::RemoveNote(int index) {
  if (index >= 1 && index < static_cast<int>(icv.size())) icv.erase(icv.begin() + index);
}

void SetTitle(Staff& staff, std::string_view text) {
  if (staff.title == text) return;
  staff.title = std::string(text);
  staff.noteChanged = true;
}

void SetComment(Staff& staff, std::string_view text) {
  if (staff.comment == text) return;
  staff.comment = std::string(text);
  staff.noteChanged = true;
}

void SetMSBValue(Staff& staff, int value) {
  value = std::clamp(value, 0, kMsbMaximum);
  if (value == staff.msbValue) return;
  staff.msbValue = value;
  MSB_ValueChanged(staff, value);
}

void MSB_ValueChanged(Staff& staff, int value) {
  int v = std::clamp(value, 0, kMsbMaximum) / kBarWidth * kBarWidth;
  int delta = staff.oldSBValue[0] - v;
  for (auto& n : staff.icv) n.left = ClampToInt(static_cast<long long>(n.left) + delta);
  staff.preNote[0] = ClampToInt(static_cast<long long>(staff.preNote[0]) + delta);
  // Both the selected bar and the copied bar are view numbers: they follow the view, so
  // that a bar copied, scrolled away from and pasted is still the bar the user copied.
  staff.preCord[0] = ClampToInt(static_cast<long long>(staff.preCord[0]) + delta / kBarWidth);
  staff.preCord[1] = ClampToInt(static_cast<long long>(staff.preCord[1]) + delta / kBarWidth);
  staff.oldSBValue[0] = v;
  staff.msbValue = v;
}

void ClearNotes(Staff& staff) {
  SetMSBValue(staff, 0);
  staff.icv.resize(1);
  staff.preNote[0] = kFirstColumn;
  staff.preCord[0] = 0;
  staff.noteChanged = false;
}

void ClearNotes2(Staff& staff) {
  SetMSBValue(staff, 0);
  staff.icv.resize(1);
  SetTitle(staff, "");
  SetComment(staff, "");
  staff.preNote[0] = kFirstColumn;
  staff.preCord[0] = 0;
  staff.keyN = 0;
  staff.kcvPicture = "S0";
  staff.timeN = 0;
  staff.tcvPicture = "T4";
  staff.mcvBackdrop = "Sheet1";
  staff.noteChanged = false;
}

void ChangeKeyC(Staff& staff) {
  staff.keyN = 0;
  staff.kcvPicture = "S0";
}

void noteChangedCheck(Staff& staff) { staff.noteChanged = staff.Exists(5); }

void ChangeKestra(Staff& staff, std::string_view line) {
  std::vector<std::string> tokens;
  if (!line.empty()) tokens = SplitFields(line, " ");
  if (tokens.size() > static_cast<std::size_t>(kMaxKestraTokens)) tokens.resize(kMaxKestraTokens);
  ClearNotes(staff);
  ChangeKeyC(staff);
  int i = 0;
  for (const auto& token : tokens) {
    ++i;
    NoteCV n;
    FillFromToken(n, token);
    n.left = 32 * i + 96 + 16 * ((i - 1) / 4);
    n.top = NoteLine(n.nline);
    if (n.IsRest()) {
      n.top = kKestraRestTop;
      n.backdrop = NotePictureName('r', n.dr);
    } else {
      n.backdrop = NotePictureName(KestraFamily(n.top), n.dr);
    }
    staff.AddNote(n);
  }
  if (i > 0) staff.preNote[0] = staff.icv.back().left + 32;
}

bool InView(const NoteCV& note) {
  return static_cast<long long>(note.left) + kNoteWidth > kViewLeft && note.left < kViewRight;
}

void RepaintInView(Staff& staff) {
  for (std::size_t i = 1; i < staff.icv.size(); ++i)
    if (InView(staff.icv[i])) RepaintToken(staff.icv[i]);
}

int ClickColumn(int x) { return ClampToInt(std::llround((x + 116.0) / 8.0) * 8); }

int ClickRow(int y) { return ClampToInt(std::llround((y + 42.0) / 3.0) * 3); }

int SnapColumn(int left, int lastColumn) {
  if (left < kTemplateLeft) return kTemplateLeft;
  for (int b = 0; b < 5; ++b) {
    if (left == 248 + kBarWidth * b) return 240 + kBarWidth * b;
    if (left == 256 + kBarWidth * b) return 264 + kBarWidth * b;
  }
  if (left > lastColumn) return 960;
  return left;
}

int ClampNoteTop(int top) { return std::clamp(top, kNoteTopMin, kNoteTopMax); }

int RestRow(int top) { return top < 123 ? 111 : 147; }

int ClashSearch(const Staff& staff, int self, int left, int top, bool rest) {
  for (int i = 0; i < static_cast<int>(staff.icv.size()); ++i) {
    if (i == self) continue;
    const NoteCV& other = staff.icv[i];
    if (other.left != left || other.top != top) continue;
    top = rest ? ClampToInt(top + 18LL) : ClampToInt(std::min(top + 6LL, static_cast<long long>(kNoteTopMax)));
  }
  return top;
}

bool InViewBar(int left, int bar) {
  const long long start = static_cast<long long>(kBarWidth) * bar + 120;
  return start <= left && left < start + kBarWidth;
}

}  // namespace lirenza
