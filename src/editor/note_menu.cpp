#include "violin/key_push.h"
#include "editor/note_menu.h"

#include <array>

#include "editor/note_entry.h"
#include "editor/note_gestures.h"
#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

namespace {

using Kind = NoteMenuChoice::Kind;

const std::array<const char*, 16> kLoudnessNames = {"休符", " - -", " - -", "ppp", " - -", "pp", " - -", "p",
                                                    "mp",   "m",    "mf",   "f",   " - -", "ff", " - -", "fff"};
const std::array<const char*, 4> kAccidentalNames = {"  ", "#", "b", "n"};

bool DigitMatches(int digit, const std::string& field) {
  return !field.empty() && EqualsIgnoreCase(Hex(digit), field.substr(0, 1));
}

}  // namespace

std::string NoteMenuCaption(NoteMenuChoice choice) {
  const int v = choice.value;
  switch (choice.kind) {
    case Kind::Loudness: return v >= 0 && v < 16 ? Hex(v) + ":" + kLoudnessNames[v] : "";
    case Kind::Length: return v >= 0 && v < 16 ? Hex(v) + ":" + std::string(kLengthNames[v]) : "";
    case Kind::Accidental: return v >= 0 && v < 4 ? Hex(v) + ":" + kAccidentalNames[v] : "";
    case Kind::NoteOrRest: return "音符/休符変換";
    case Kind::Separator: return "-";
  }
  return "";
}

std::vector<NoteMenu> OpenNoteMenu(const Note& note, const SoundPorts& ports, const TuningTables& tuning) {
  PlayIndex(ports, kScorePlayer, tuning, note.pitch, 0);
  NoteMenu volume{"音量の変更", {}}, length{"音長の変更", {}}, accidental{"臨時符号", {}};
  auto item = [](Kind kind, int value, bool checked) {
    const NoteMenuChoice choice{kind, value};
    return NoteMenuItem{choice, NoteMenuCaption(choice), checked};
  };
  for (int v = 0; v < 16; ++v) volume.items.push_back(item(Kind::Loudness, v, DigitMatches(v, note.velocityDigit)));
  for (int d = 0; d < 16; ++d) length.items.push_back(item(Kind::Length, d, DigitMatches(d, note.durationDigit)));
  length.items.push_back(item(Kind::Separator, 0, false));
  length.items.push_back(item(Kind::NoteOrRest, 0, false));
  for (int s = 0; s < 4; ++s) accidental.items.push_back(item(Kind::Accidental, s, note.accidentalSign == s));
  return {volume, length, accidental};
}

void RestConversion(Note& note) {
  note.velocityDigit = "0";
  note.picture = NotePictureName('r', note.durationDigit);
  note.token = PitchName(note.pitch, note.accidental) + "0" + note.durationDigit;
  note.top = note.top < 117 ? 106 : 142;
}

void NoteConversion(Note& note) {
  note.velocityDigit = "9";
  SetNoteFamily(note, MenuFamily(note.top));
}

bool ChooseFromNoteMenu(Note& note, const Modes& modes, NoteMenuChoice choice) {
  if (modes.Busy()) return false;
  const int v = choice.value;
  // 1. Loudness.
  if (choice.kind == Kind::Loudness && v == 0) {
    RestConversion(note);
  } else if (choice.kind == Kind::Loudness && v > 0 && v < 16) {
    note.velocityDigit = Hex(v);
  }
  // 2. The repaint brings the token up to date.
  RespellToken(note);
  // 3. Accidental.
  if (choice.kind == Kind::Accidental && v >= 0 && v < 4) {
    note.accidentalSign = v;
    note.accidental = v == 0 ? 0 : SfOfSign(v, note.keyShift, note.accidental);
  }
  // 4. Length, or the turn between note and rest, by what the note is now.
  const bool length = choice.kind == Kind::Length && v >= 0 && v < 16;
  if (length) {
    note.durationDigit = Hex(v);
    note.picture = NotePictureName(note.IsRest() ? 'r' : note.stemDown ? 'u' : 'n', note.durationDigit);
  } else if (choice.kind == Kind::NoteOrRest) {
    if (note.IsRest()) NoteConversion(note);
    else RestConversion(note);
  }
  // 5. Repaint.
  RespellToken(note);
  return true;
}

}  // namespace lirenza
