#include "score/staff.h"

#include <algorithm>
#include <cmath>

#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

Note& Staff::AddNote(const Note& note) {
  notes.push_back(note);
  return notes.back();
}

void Staff::RemoveNote(int index) {
  if (index >= 1 && index < static_cast<int>(notes.size())) notes.erase(notes.begin() + index);
}

void SetTitle(Staff& staff, std::string_view text) {
  if (staff.title == text) return;
  staff.title = std::string(text);
  staff.hasChanges = true;
}

void SetComment(Staff& staff, std::string_view text) {
  if (staff.comment == text) return;
  staff.comment = std::string(text);
  staff.hasChanges = true;
}

void ScrollTo(Staff& staff, int value) {
  value = std::clamp(value, 0, kScrollMaximum);
  if (value == staff.scrollValue) return;
  staff.scrollValue = value;
  ApplyScroll(staff, value);
}

void ApplyScroll(Staff& staff, int value) {
  int v = std::clamp(value, 0, kScrollMaximum) / kBarWidth * kBarWidth;
  int delta = staff.appliedScroll - v;
  for (auto& n : staff.notes) n.left = ClampToInt(static_cast<long long>(n.left) + delta);
  staff.entryLeft = ClampToInt(static_cast<long long>(staff.entryLeft) + delta);
  // Both the selected bar and the copied bar are view numbers: they follow the view, so
  // that a bar copied, scrolled away from and pasted is still the bar the user copied.
  staff.selectedBar = ClampToInt(static_cast<long long>(staff.selectedBar) + delta / kBarWidth);
  staff.copiedBar = ClampToInt(static_cast<long long>(staff.copiedBar) + delta / kBarWidth);
  staff.appliedScroll = v;
  staff.scrollValue = v;
}

void ClearStaff(Staff& staff) {
  ScrollTo(staff, 0);
  staff.notes.resize(1);
  staff.entryLeft = kFirstColumn;
  staff.selectedBar = 0;
  staff.hasChanges = false;
}

void ClearScore(Staff& staff) {
  ScrollTo(staff, 0);
  staff.notes.resize(1);
  SetTitle(staff, "");
  SetComment(staff, "");
  staff.entryLeft = kFirstColumn;
  staff.selectedBar = 0;
  ResetSignatures(staff);
  staff.hasChanges = false;
}

void ResetKeyToC(Staff& staff) {
  staff.keySignature = 0;
  staff.keySignaturePicture = kPlainKeyPicture;
}

void ResetSignatures(Staff& staff) {
  ResetKeyToC(staff);
  staff.timeSignature = 0;
  staff.timeSignaturePicture = kFourFourPicture;
  staff.sheetPicture = kFourFourSheet;
}

void UpdateChangedFlag(Staff& staff) { staff.hasChanges = staff.Exists(5); }

void LoadKestraLine(Staff& staff, std::string_view line) {
  std::vector<std::string> tokens;
  if (!line.empty()) tokens = SplitFields(line, " ");
  if (tokens.size() > static_cast<std::size_t>(kMaxKestraTokens)) tokens.resize(kMaxKestraTokens);
  ClearStaff(staff);
  ResetKeyToC(staff);
  int i = 0;
  for (const auto& token : tokens) {
    ++i;
    Note n;
    FillFromToken(n, token);
    n.left = 32 * i + 96 + 16 * ((i - 1) / 4);
    n.top = KestraTopOfPitch(n.linePitch);
    if (n.IsRest()) {
      n.top = kKestraRestTop;
      n.picture = NotePictureName('r', n.durationDigit);
    } else {
      n.picture = NotePictureName(KestraFamily(n.top), n.durationDigit);
    }
    staff.AddNote(n);
  }
  if (i > 0) staff.entryLeft = staff.notes.back().left + 32;
}

bool InView(const Note& note) {
  return static_cast<long long>(note.left) + kNoteWidth > kViewLeft && note.left < kViewRight;
}

void RespellNotesInView(Staff& staff) {
  for (std::size_t i = 1; i < staff.notes.size(); ++i)
    if (InView(staff.notes[i])) RespellToken(staff.notes[i]);
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
  for (int i = 0; i < static_cast<int>(staff.notes.size()); ++i) {
    if (i == self) continue;
    const Note& other = staff.notes[i];
    if (other.left != left || other.top != top) continue;
    top = rest ? ClampToInt(top + 18LL) : ClampToInt(std::min(top + 6LL, static_cast<long long>(kNoteTopMax)));
  }
  return top;
}

bool InBar(int left, int bar) {
  const long long start = static_cast<long long>(kBarWidth) * bar + 120;
  return start <= left && left < start + kBarWidth;
}

}  // namespace lirenza
