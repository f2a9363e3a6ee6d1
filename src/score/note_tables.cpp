#include "score/note_tables.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>

#include "score/text_fields.h"

namespace lirenza {

const std::string_view kStaffLineTable =
    "108,107,105,103,101,100,98,96,95,93,91,89,88,86,84,83,81,79,77,76,74,72,71,69,67,65,64,62,"
    "60,59,57,55,53,52,50,48,47,45,43,41,40,38,36,35,33,31,29,28,26,24,23,21";
const std::string_view kVelocityTable = "0,5,10,20,30,40,50,60,70,75,85,90,100,110,120,127";
const std::string_view kDurationTable =
    "1920,1440,960,720,480,420,360,320,240,180,160,120,80,60,40,30";
const std::string_view kVelocityHexTable = "00,05,0A,14,1E,28,32,3C,46,4B,55,5A,64,6E,78,7F";
const std::string_view kEntryVelocityDigits = "3,5,7,8,9,A,B,D,F";

namespace {

// Pitch names by MIDI number, 0 to 108. The first octave is irregular: it has no
// octave digit and a leading "-", and pitch 0 is "00".
const std::string_view kSharpNames =
    "00,-C#,-D,-D#,-E,-F,-F#,-G,-G#,-A,-A#,-B,"
    "C0,C0#,D0,D0#,E0,F0,F0#,G0,G0#,A0,A0#,B0,"
    "C1,C1#,D1,D1#,E1,F1,F1#,G1,G1#,A1,A1#,B1,"
    "C2,C2#,D2,D2#,E2,F2,F2#,G2,G2#,A2,A2#,B2,"
    "C3,C3#,D3,D3#,E3,F3,F3#,G3,G3#,A3,A3#,B3,"
    "C4,C4#,D4,D4#,E4,F4,F4#,G4,G4#,A4,A4#,B4,"
    "C5,C5#,D5,D5#,E5,F5,F5#,G5,G5#,A5,A5#,B5,"
    "C6,C6#,D6,D6#,E6,F6,F6#,G6,G6#,A6,A6#,B6,"
    "C7,C7#,D7,D7#,E7,F7,F7#,G7,G7#,A7,A7#,B7,"
    "C8";
const std::string_view kFlatNames =
    "00,-Db,-D,-Eb,-E,-F,-Gb,-G,-Ab,-A,-Bb,-B,"
    "C0,D0b,D0,E0b,E0,F0,G0b,G0,A0b,A0,B0b,B0,"
    "C1,D1b,D1,E1b,E1,F1,G1b,G1,A1b,A1,B1b,B1,"
    "C2,D2b,D2,E2b,E2,F2,G2b,G2,A2b,A2,B2b,B2,"
    "C3,D3b,D3,E3b,E3,F3,G3b,G3,A3b,A3,B3b,B3,"
    "C4,D4b,D4,E4b,E4,F4,G4b,G4,A4b,A4,B4b,B4,"
    "C5,D5b,D5,E5b,E5,F5,G5b,G5,A5b,A5,B5b,B5,"
    "C6,D6b,D6,E6b,E6,F6,G6b,G6,A6b,A6,B6b,B6,"
    "C7,D7b,D7,E7b,E7,F7,G7b,G7,A7b,A7,B7b,B7,"
    "C8";

// Pitch classes that key signature keySignature alters; sharps for 1 to 7, flats for 8 to 14.
const std::array<std::string_view, 15> kKeySignatureClasses = {
    "", "5", "0,5", "0,5,7", "0,2,5,7", "0,2,5,7,9", "0,2,4,5,7,9", "0,2,4,5,7,9,11",
    "11", "4,11", "4,9,11", "2,4,9,11", "2,4,7,9,11", "0,2,4,7,9,11", "0,2,4,5,7,9,11"};

// Base Top of each pitch class in the octave of middle C, for kestra lines.
const std::array<int, 12> kNoteLineBase = {114, 114, 111, 111, 108, 105, 105, 102, 102, 99, 99, 96};

const std::string_view kKeySignaturePictures = "S0,S1,S2,S3,S4,S5,S6,S7,F1,F2,F3,F4,F5,F6,F7";
const std::string_view kTimeSignaturePictures = "T4,T7,T3,T2,T1,T9,T5,T6,T8";

bool IsNatural(int pitch) {
  int pc = ((pitch % 12) + 12) % 12;
  return pc == 0 || pc == 2 || pc == 4 || pc == 5 || pc == 7 || pc == 9 || pc == 11;
}

}  // namespace

int NaturalPitchOfName(std::string_view name) {
  if (name == "00") return 60;
  for (int pitch = 21; pitch <= 108; ++pitch)
    if (EqualsIgnoreCase(name, Field(kSharpNames, pitch + 1))) return pitch;
  return 0;
}

int AccidentalOfName(std::string_view name) {
  if (name.empty()) return 0;
  if (name.back() == '#') return 1;
  if (name.back() == 'b' || name.back() == 'B') return -1;
  return 0;
}

int SignOfName(std::string_view name) {
  int sf = AccidentalOfName(name);
  return sf == 1 ? 1 : sf == -1 ? 2 : 0;
}

namespace {

// Field (index + 1) of a table, empty for any index the table has no field for, however
// large: a damaged digit such as "7FFFFFFFFFFFFFFF" must not wrap round onto a real field.
std::string TableField(std::string_view table, long long index) {
  if (index < 0 || index >= 1000) return {};
  return Field(table, static_cast<int>(index) + 1);
}

}  // namespace

int VelocityOfDigit(std::string_view digit) { return IntVal(TableField(kVelocityTable, HexVal(digit))); }

int TicksOfDigit(std::string_view digit) { return IntVal(TableField(kDurationTable, HexVal(digit))); }

long long MicrosecondsOfDigit(std::string_view digit, double d) {
  // The tempo factor is a setting; keep a damaged one from casting out of range.
  const double us = TicksOfDigit(digit) * d * 1000;
  constexpr double kLimit = 1e15;  // about 30 years
  if (!(us == us)) return 0;
  if (us > kLimit) return static_cast<long long>(kLimit);
  if (us < -kLimit) return static_cast<long long>(-kLimit);
  return static_cast<long long>(us);
}

std::string PitchName(int pitch, int sf) {
  if (pitch < 0 || pitch > 108) return {};
  return Field(sf == -1 ? kFlatNames : kSharpNames, pitch + 1);
}

int StaffLinePitch(int top) {
  return IntVal(TableField(kStaffLineTable, (static_cast<long long>(top) - 33) / 3 - 1));
}

int EntryTopOfPitch(int pitch) {
  if (pitch < 22 || pitch > 108) return 189;
  int natural = IsNatural(pitch) ? pitch : pitch + 1;
  for (int n = 1; n <= 52; ++n)
    if (IntVal(Field(kStaffLineTable, n)) == natural) return 33 + 3 * n;
  return 189;
}

int KestraTopOfPitch(int pitch) {
  int pc = ((pitch % 12) + 12) % 12;
  const long long top = kNoteLineBase[pc] - (static_cast<long long>(pitch) / 12 - 5) * 21;
  return static_cast<int>(std::clamp<long long>(top, INT_MIN, INT_MAX));
}

int KeySignatureShift(int keySignature, int linePitch) {
  if (keySignature < 1 || keySignature > 14) return 0;
  int pc = ((linePitch % 12) + 12) % 12;
  for (const auto& f : SplitFields(kKeySignatureClasses[keySignature], ","))
    if (IntVal(f) == pc) return keySignature <= 7 ? 1 : -1;
  return 0;
}

NoteFamily EntryFamily(int top) {
  if (top <= 78) return NoteFamily::StemDown;
  if (top <= 120) return NoteFamily::StemUp;
  if (top <= 141) return NoteFamily::StemDown;
  return NoteFamily::StemUp;
}

NoteFamily KestraFamily(int top) {
  if (top <= 75) return NoteFamily::StemDown;
  if (top <= 117) return NoteFamily::StemUp;
  if (top <= 150) return NoteFamily::StemDown;
  return NoteFamily::StemUp;
}

NoteFamily MenuFamily(int top) {
  if (top <= 75) return NoteFamily::StemDown;
  if (top <= 117) return NoteFamily::StemUp;
  if (top <= 159) return NoteFamily::StemDown;
  return NoteFamily::StemUp;
}

NoteFamily TransposeFamily(int top) {
  if (top <= 75) return NoteFamily::StemDown;
  if (top <= 117) return NoteFamily::StemUp;
  return NoteFamily::StemDown;
}

std::string NotePictureName(char family, std::string_view digit) {
  if (digit.size() != 1 || !std::isxdigit(static_cast<unsigned char>(digit[0]))) return {};
  return std::string(1, family) + Hex(HexVal(digit));
}

std::string NotePictureName(NoteFamily family, std::string_view digit) {
  return NotePictureName(family == NoteFamily::StemDown ? 'u' : 'n', digit);
}

std::string KeySignaturePicture(int keySignature) { return TableField(kKeySignaturePictures, keySignature); }

std::string TimeSignaturePicture(int timeSignature) { return TableField(kTimeSignaturePictures, timeSignature); }

}  // namespace lirenza
