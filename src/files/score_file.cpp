#include "files/score_file.h"

#include <algorithm>
#include <cctype>

#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

std::string NoteRecord(const Note& n) {
  std::string r;
  r.reserve(48);
  auto num = [&](long long v) {
    r += std::to_string(v);
    r += ',';
  };
  num(n.left);
  num(n.top);
  r += n.stemDown ? "1," : "0,";
  num(n.pitch);
  num(n.linePitch);
  num(n.accidental);
  num(n.accidentalSign);
  num(n.keyShift);
  r += n.velocityDigit;
  r += ',';
  r += n.durationDigit;
  r += ',';
  r += n.token;
  return r;
}

std::string ScoreFileText(const ScoreFile& f) {
  std::string text;
  text.reserve(f.notes.size() * 48 + 64);
  for (const auto& n : f.notes) {
    text += NoteRecord(n);
    text += ' ';
  }
  text += ';' + f.title + ';' + f.comment + ';' + std::to_string(f.instrumentGroup) + ';' +
          std::to_string(f.instrumentRow) + ';' + std::to_string(f.tempoSlider) + ';' +
          std::to_string(f.keySignature) + ';' + std::to_string(f.timeSignature) + '\n';
  return text;
}

namespace {

bool IsWholeNumber(std::string_view t) {
  std::size_t i = !t.empty() && t[0] == '-' ? 1 : 0;
  if (i == t.size()) return false;
  for (; i < t.size(); ++i)
    if (t[i] < '0' || t[i] > '9') return false;
  return true;
}

// Cuts text at sep into views of it, keeping the first `limit`. *total, when given, is
// the number of pieces there are.
std::size_t SplitViews(std::string_view text, char sep, std::string_view* out, std::size_t limit,
                       std::size_t* total = nullptr) {
  std::size_t n = 0, start = 0, count = 1;
  while (true) {
    const std::size_t at = text.find(sep, start);
    if (n < limit) out[n++] = text.substr(start, at == std::string_view::npos ? at : at - start);
    if (at == std::string_view::npos) break;
    ++count;
    start = at + 1;
  }
  if (total) *total = count;
  return n;
}

// The number a field reads as, held to kMaxNoteNumberMagnitude. *unreadable when the
// field is not a whole decimal number, *huge when it had to be held.
int ReadNumber(std::string_view t, bool* unreadable, bool* huge) {
  long long v;
  if (IsWholeNumber(t) && t.size() <= 9) {
    v = 0;
    for (char c : t.substr(t[0] == '-')) v = v * 10 + (c - '0');
    if (t[0] == '-') v = -v;
  } else {
    if (!IsWholeNumber(t)) *unreadable = true;
    v = IntVal(t);
  }
  if (v > kMaxNoteNumberMagnitude || v < -kMaxNoteNumberMagnitude) {
    *huge = true;
    return v > 0 ? kMaxNoteNumberMagnitude : -kMaxNoteNumberMagnitude;
  }
  return static_cast<int>(v);
}

constexpr std::size_t kRecordFields = 11;

// A note record is recognised by a comma after a whole number, so plain prose is not.
bool LooksLikeNoteRecord(std::string_view record) {
  const std::size_t comma = record.find(',');
  return comma != std::string_view::npos && IsWholeNumber(record.substr(0, comma));
}

Note ParseRecord(std::string_view record, ScoreReadReport& report) {
  std::string_view f[kRecordFields + 1];
  std::size_t total = 0;
  const std::size_t have = SplitViews(record, ',', f, kRecordFields + 1, &total);
  if (total < kRecordFields) ++report.recordsMissingFields;
  if (total > kRecordFields) ++report.recordsWithExtraFields;
  bool unreadable = false, huge = false;
  auto number = [&](std::size_t n) { return n <= have ? ReadNumber(f[n - 1], &unreadable, &huge) : 0; };
  auto text = [&](std::size_t n) { return n <= have ? std::string(f[n - 1]) : std::string(); };
  Note n;
  n.left = number(1);
  n.top = number(2);
  n.pitch = number(4);
  n.linePitch = number(5);
  n.accidental = number(6);
  n.accidentalSign = number(7);
  n.keyShift = number(8);
  n.velocityDigit = text(9);
  n.durationDigit = text(10);
  n.token = text(11);
  // The stored flag is compared as text: anything but "0" is the u family.
  n.stemDown = have < 3 || f[2] != "0";
  n.picture = StoredPicture(n);
  if (unreadable) ++report.recordsWithUnreadableNumbers;
  if (huge) ++report.recordsWithHugeNumbers;
  return n;
}

std::string Count(int n, const char* one, const char* many) {
  return std::to_string(n) + ' ' + (n == 1 ? one : many);
}

}  // namespace

bool IsUtf8Text(std::string_view s) {
  std::size_t i = 0;
  while (i < s.size()) {
    const unsigned char c = s[i];
    if (c < 0x80) {
      ++i;
      continue;
    }
    int extra;
    unsigned lo = 0x80, hi = 0xBF;  // the allowed range of the second byte
    if (c >= 0xC2 && c <= 0xDF) extra = 1;
    else if (c == 0xE0) extra = 2, lo = 0xA0;
    else if (c == 0xED) extra = 2, hi = 0x9F;
    else if (c >= 0xE1 && c <= 0xEF) extra = 2;
    else if (c == 0xF0) extra = 3, lo = 0x90;
    else if (c == 0xF4) extra = 3, hi = 0x8F;
    else if (c >= 0xF1 && c <= 0xF3) extra = 3;
    else return false;
    if (i + extra >= s.size()) return false;
    for (int k = 1; k <= extra; ++k) {
      const unsigned char b = s[i + k];
      if (k == 1 ? (b < lo || b > hi) : (b & 0xC0) != 0x80) return false;
    }
    i += extra + 1;
  }
  return true;
}

std::vector<std::string> ScoreReadReport::Repairs() const {
  std::vector<std::string> out;
  if (byteOrderMarkSkipped) out.push_back("a byte-order mark at the start was skipped");
  if (noScoreFields)
    out.push_back("the file holds only notes, no score fields; read with an empty title, tempo 0, key 0, time 0");
  if (missingScoreFields)
    out.push_back(Count(missingScoreFields, "score field was", "score fields were") +
                  " missing after the notes, read as empty or 0");
  if (unreadableScoreNumbers)
    out.push_back(Count(unreadableScoreNumbers, "score field was", "score fields were") +
                  " not a whole number, read as far as it goes (a non-number as 0)");
  if (tempoOutOfRange)
    out.push_back("the tempo " + std::to_string(*tempoOutOfRange) + " was outside 0.." +
                  std::to_string(kMaxTempoSlider) + ", held to " +
                  std::to_string(*tempoOutOfRange < 0 ? 0 : kMaxTempoSlider));
  if (keyOutOfRange)
    out.push_back("the key signature number " + std::to_string(*keyOutOfRange) + " was outside 0.." +
                  std::to_string(kMaxKeyNumber) + ", read as 0");
  if (timeOutOfRange)
    out.push_back("the time signature number " + std::to_string(*timeOutOfRange) + " was outside 0.." +
                  std::to_string(kMaxTimeNumber) + ", read as 0");
  if (recordsMissingFields)
    out.push_back(Count(recordsMissingFields, "note record had", "note records had") +
                  " missing fields, read as 0");
  if (recordsWithExtraFields)
    out.push_back(Count(recordsWithExtraFields, "note record had", "note records had") +
                  " more than eleven fields, the extra ones left out");
  if (recordsWithUnreadableNumbers)
    out.push_back(Count(recordsWithUnreadableNumbers, "note record had", "note records had") +
                  " numbers that were not whole numbers, read as far as they go (a non-number as 0)");
  if (recordsWithHugeNumbers)
    out.push_back(Count(recordsWithHugeNumbers, "note record had", "note records had") +
                  " numbers beyond " + std::to_string(kMaxNoteNumberMagnitude) + " either way, held to that");
  return out;
}

ScoreFile ParseScoreFile(std::string_view raw, ScoreReadReport* reportOut) {
  ScoreReadReport report;
  if (raw.substr(0, 3) == "\xEF\xBB\xBF") {
    raw.remove_prefix(3);
    report.byteOrderMarkSkipped = true;
  }
  if (raw.find('\0') != std::string_view::npos)
    report.notAScore = "holds NUL bytes, so it is not a text file";
  else if (!IsUtf8Text(raw))
    report.notAScore = "is not UTF-8 text";

  // Carriage returns are dropped, not turned into line feeds.
  std::string withoutReturns;
  std::string_view text = raw;
  if (raw.find('\r') != std::string_view::npos) {
    withoutReturns.reserve(raw.size());
    for (char c : raw)
      if (c != '\r') withoutReturns += c;
    text = withoutReturns;
  }

  constexpr std::size_t kFields = 8;
  std::string_view fields[kFields];  // fields past the eighth are ignored
  std::size_t total = 0;
  const std::size_t have = SplitViews(text, ';', fields, kFields, &total);
  auto field = [&](std::size_t n) { return n <= have ? fields[n - 1] : std::string_view(); };
  report.noScoreFields = total == 1;
  if (total > 1 && total < kFields) report.missingScoreFields = static_cast<int>(kFields - total);
  auto number = [&](std::size_t n) -> long long {
    if (n > total) return 0;
    const std::string_view t = field(n);
    // The last field ends the line; its line end is not part of the number.
    std::string_view digits = t;
    while (!digits.empty() && (digits.back() == '\n' || digits.back() == ' ' || digits.back() == '\t'))
      digits.remove_suffix(1);
    if (!IsWholeNumber(digits)) ++report.unreadableScoreNumbers;
    return IntVal(t);
  };

  ScoreFile f;
  f.title = field(2);
  f.comment = field(3);
  f.instrumentGroup = static_cast<int>(number(4));
  f.instrumentRow = static_cast<int>(number(5));
  auto startsWithDigit = [](std::string_view t) { return !t.empty() && t[0] >= '0' && t[0] <= '9'; };
  f.instrumentGiven = startsWithDigit(field(4)) && startsWithDigit(field(5));
  const long long tempo = number(6), key = number(7), time = number(8);
  if (tempo < 0 || tempo > kMaxTempoSlider) report.tempoOutOfRange = tempo;
  f.tempoSlider = static_cast<int>(std::clamp<long long>(tempo, 0, kMaxTempoSlider));
  if (key < 0 || key > kMaxKeyNumber) report.keyOutOfRange = key;
  f.keySignature = report.keyOutOfRange ? 0 : static_cast<int>(key);
  if (time < 0 || time > kMaxTimeNumber) report.timeOutOfRange = time;
  f.timeSignature = report.timeOutOfRange ? 0 : static_cast<int>(time);

  // Trailing blanks are cut first: the blank after the last record is not a record.
  std::string_view notes = field(1);
  while (!notes.empty() && (notes.back() == ' ' || notes.back() == '\t' || notes.back() == '\n'))
    notes.remove_suffix(1);
  bool sawNoteRecord = false;
  if (!notes.empty()) {
    f.notes.reserve(std::count(notes.begin(), notes.end(), ' ') + 1);
    std::size_t start = 0;
    while (true) {
      const std::size_t at = notes.find(' ', start);
      const std::string_view record =
          notes.substr(start, at == std::string_view::npos ? at : at - start);
      sawNoteRecord = sawNoteRecord || LooksLikeNoteRecord(record);
      f.notes.push_back(ParseRecord(record, report));
      if (at == std::string_view::npos) break;
      start = at + 1;
    }
  }
  if (report.notAScore.empty() && total == 1 && !sawNoteRecord)
    report.notAScore = "has neither note records nor score fields";
  if (reportOut) *reportOut = std::move(report);
  return f;
}

std::string SaveFileText(Staff& staff, const WindowSettings& settings) {
  ScrollTo(staff, 0);
  ScoreFile f;
  f.notes.assign(staff.notes.begin() + 1, staff.notes.end());
  f.title = staff.title;
  f.comment = staff.comment;
  f.instrumentGroup = settings.instrumentGroup;
  f.instrumentRow = settings.instrumentRow;
  f.tempoSlider = settings.tempoSlider;
  f.keySignature = staff.keySignature;
  f.timeSignature = staff.timeSignature;
  return ScoreFileText(f);
}

void ResetAfterSave(Staff& staff, WindowSettings& settings) {
  ClearStaff(staff);
  SetTitle(staff, "演奏");
  SetComment(staff, "作曲家/解説");
  ResetSignatures(staff);
  settings.tempoSlider = WindowSettings{}.tempoSlider;
}

int LoadScoreText(Staff& staff, std::string_view text) { return ApplyScoreFile(staff, ParseScoreFile(text)); }

int ApplyScoreFile(Staff& staff, const ScoreFile& f) {
  ClearStaff(staff);
  SetTitle(staff, f.title);
  SetComment(staff, f.comment);
  staff.keySignature = f.keySignature;
  staff.timeSignature = f.timeSignature;
  if (auto pic = KeySignaturePicture(f.keySignature); !pic.empty()) staff.keySignaturePicture = pic;
  if (auto pic = TimeSignaturePicture(f.timeSignature); !pic.empty()) staff.timeSignaturePicture = pic;
  staff.notes.reserve(f.notes.size() + 1);
  for (const auto& n : f.notes) staff.AddNote(n);
  return std::clamp(f.tempoSlider, 0, kMaxTempoSlider);
}

}  // namespace lirenza
