#include "files/score_file.h"

#include <cctype>

#include "score/note_tables.h"
#include "score/text_fields.h"
#include "violin/tempo_table.h"

namespace lirenza {

std::string NoteRecord(const NoteCV& n) {
  std::string r;
  r.reserve(48);
  auto num = [&](long long v) {
    r += std::to_string(v);
    r += ',';
  };
  num(n.left);
  num(n.top);
  r += n.position ? "1," : "0,";
  num(n.noteNo);
  num(n.nline);
  num(n.sf);
  num(n.sib);
  num(n.ks);
  r += n.ve;
  r += ',';
  r += n.dr;
  r += ',';
  r += n.note;
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
          std::to_string(f.keyN) + ';' + std::to_string(f.timeN) + '\n';
  return text;
}

namespace {

std::string_view TrimTrailingBlanks(std::string_view s) {
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\n')) s.remove_suffix(1);
  return s;
}

NoteCV ParseRecord(std::string_view record) {
  const auto f = SplitFields(record, ",");
  auto field = [&](std::size_t n) -> const std::string& {
    static const std::string empty;
    return n <= f.size() ? f[n - 1] : empty;
  };
  NoteCV n;
  n.left = IntVal(field(1));
  n.top = IntVal(field(2));
  n.noteNo = IntVal(field(4));
  n.nline = IntVal(field(5));
  n.sf = IntVal(field(6));
  n.sib = IntVal(field(7));
  n.ks = IntVal(field(8));
  n.ve = field(9);
  n.dr = field(10);
  n.note = field(11);
  // The stored flag is compared as text: anything but "0" is the u family.
  n.position = field(3) != "0";
  n.backdrop = StoredBackdrop(n);
  return n;
}

}  // namespace

ScoreFile ParseScoreFile(std::string_view raw) {
  std::string text;
  text.reserve(raw.size());
  for (char c : raw)
    if (c != '\r') text += c;
  const auto fields = SplitFields(text, ";");
  auto field = [&](std::size_t n) -> const std::string& {
    static const std::string empty;
    return n <= fields.size() ? fields[n - 1] : empty;
  };
  ScoreFile f;
  f.title = field(2);
  f.comment = field(3);
  f.instrumentGroup = IntVal(field(4));
  f.instrumentRow = IntVal(field(5));
  auto isNumber = [](const std::string& t) { return !t.empty() && std::isdigit(static_cast<unsigned char>(t[0])); };
  f.instrumentGiven = isNumber(field(4)) && isNumber(field(5));
  f.tempoSlider = IntVal(field(6));
  f.keyN = IntVal(field(7));
  f.timeN = IntVal(field(8));
  std::string_view notes = TrimTrailingBlanks(field(1));
  if (!notes.empty())
    for (const auto& record : SplitFields(notes, " ")) f.notes.push_back(ParseRecord(record));
  return f;
}

std::string SaveFileText(Staff& staff, const WindowSettings& settings) {
  SetMSBValue(staff, 0);
  ScoreFile f;
  f.notes.assign(staff.icv.begin() + 1, staff.icv.end());
  f.title = staff.title;
  f.comment = staff.comment;
  f.instrumentGroup = settings.instrumentGroup;
  f.instrumentRow = settings.instrumentRow;
  f.tempoSlider = settings.tempoSlider;
  f.keyN = staff.keyN;
  f.timeN = staff.timeN;
  return ScoreFileText(f);
}

void ResetAfterSave(Staff& staff, WindowSettings& settings) {
  ClearNotes(staff);
  SetTitle(staff, "演奏");
  SetComment(staff, "作曲家/解説");
  staff.tcvPicture = "T4";
  staff.mcvBackdrop = "Sheet1";
  staff.timeN = 0;
  staff.keyN = 0;
  staff.kcvPicture = "S0";
  settings.tempoSlider = kTempoSliderStart;
}

int OpenFile1(Staff& staff, std::string_view text) { return ApplyScoreFile(staff, ParseScoreFile(text)); }

int ApplyScoreFile(Staff& staff, const ScoreFile& f) {
  ClearNotes(staff);
  SetTitle(staff, f.title);
  SetComment(staff, f.comment);
  staff.keyN = f.keyN;
  staff.timeN = f.timeN;
  if (auto pic = KeySignaturePicture(f.keyN); !pic.empty()) staff.kcvPicture = pic;
  if (auto pic = TimeSignaturePicture(f.timeN); !pic.empty()) staff.tcvPicture = pic;
  staff.icv.reserve(f.notes.size() + 1);
  for (const auto& n : f.notes) staff.AddNote(n);
  return ClampTempoSlider(f.tempoSlider);
}

}  // namespace lirenza
