// The token and pitch tables: each lookup at its boundaries and at the irregular corners
// a hand-typed literal could get wrong, and each checked against a rule, not a copy.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "score/note.h"
#include "score/note_tables.h"

using namespace lirenza;

TEST(NoteToken, ReadsFromItsEndAndRepaintsFromTheFields) {
  struct Case {
    const char *token, *fields, *repainted;  // fields: linePitch accidental sign pitch velocity duration
  } cases[] = {
      {"E4b98", "64 -1 2 63 9 8", "E4b98"}, {"B4b98", "71 -1 2 70 9 8", "B4b98"},
      {"G5#92", "79 1 1 80 9 2", "G5#92"},
      {"A0#94", "21 1 1 22 9 4", "A0#94"},  {"C8F0", "108 0 0 108 F 0", "C8F0"},
      {"0008", "60 0 0 60 0 8", "C408"},  // a rest's "00" reads as middle C
      {"c4f4", "60 0 0 60 f 4", "C4f4"},  // names compare without case
      {"X994", "0 0 0 0 9 4", "0094"},    // unknown name: pitch 0, spelled "00"
      {"4", "0 0 0 0  4", "004"},         // too short: what is there is read
      {"", "0 0 0 0  ", "00"},
  };
  for (const auto& c : cases) {
    Note n;
    FillFromToken(n, c.token);
    EXPECT_EQ(n.token, c.token);
    auto str = [](int v) { return std::to_string(v); };
    EXPECT_EQ(str(n.linePitch) + " " + str(n.accidental) + " " + str(n.accidentalSign) + " " + str(n.pitch) + " " +
                  n.velocityDigit + " " + n.durationDigit, c.fields) << c.token;
    RespellToken(n);
    EXPECT_EQ(n.token, c.repainted);
  }
  Note n;
  FillFromToken(n, "B498");
  n.keyShift = -1;
  RespellToken(n);
  EXPECT_EQ(n.token, "A4#98") << "a B flat of the key signature has no flat of its own";
}

TEST(PitchName, EveryPitchSpelledSharpOrFlatReadsBackAsItself) {
  auto pitchOf = [](const std::string& name) {
    Note n;
    FillFromToken(n, name + "94");
    return n.pitch;
  };
  for (int pitch = 21; pitch <= 108; ++pitch) {
    EXPECT_EQ(NaturalPitchOfName(PitchName(pitch, 0)), pitch) << pitch;  // naturals and sharps
    EXPECT_EQ(std::pair(pitchOf(PitchName(pitch, 0)), pitchOf(PitchName(pitch, -1))), std::pair(pitch, pitch)) << pitch;
  }
  for (int pitch : {-1, 109, INT_MIN, INT_MAX}) EXPECT_EQ(PitchName(pitch, 0), "") << pitch;
  for (const char* name : {"G0", "D8", "-C#", "H4", ""}) EXPECT_EQ(NaturalPitchOfName(name), 0) << name;
}

TEST(DigitTables, DurationsAreTheNoteValuesOfTheMenuAndVelocityRises) {
  // Each digit a note value: a fraction of a whole note (1920 ticks), its dots, triplet.
  const char* values[] = {"1", "2.", "2",  "4.", "4",   "8..", "8.",  "4t",
                          "8", "16.", "8t", "16", "16t", "32",  "32t", "64"};
  for (int i = 0; i < 16; ++i) {
    const std::string value = values[i], digit(1, "0123456789abcdef"[i]);
    double ticks = 1920.0 / std::stoi(value) * (2 - 1.0 / (1 << std::count(value.begin(), value.end(), '.')));
    if (value.back() == 't') ticks = ticks * 2 / 3;
    EXPECT_EQ(TicksOfDigit(digit), static_cast<int>(ticks)) << digit;
    EXPECT_EQ(TicksOfDigit(digit), TicksOfDigit(std::string(1, std::toupper(digit[0]))));
    EXPECT_GT(VelocityOfDigit(digit), i ? VelocityOfDigit(std::string(1, "0123456789abcdef"[i - 1])) : -1) << digit;
  }
  EXPECT_EQ(VelocityOfDigit("F"), 127);
  // A rest, an empty or an unknown digit is silent, and an empty one the longest; past the
  // table there is no value, however large the number, and no wrap-around.
  EXPECT_EQ(VelocityOfDigit("0") + VelocityOfDigit("") + VelocityOfDigit("Z"), 0);
  EXPECT_EQ(TicksOfDigit(""), 1920);
  for (const char* digit : {"10", "FFFFFFFF", "100000000", "7FFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFFFFFF"})
    EXPECT_EQ(VelocityOfDigit(digit) + TicksOfDigit(digit), 0) << digit;
  EXPECT_EQ(MicrosecondsOfDigit("4", 0.6), 288000) << "the tempo factor scales a note";
  EXPECT_EQ(MicrosecondsOfDigit("0", std::nan("")), 0);
}

TEST(StaffPlaces, NotesStandOnTheirLineThreePixelsADiatonicStep) {
  for (int pitch = 22; pitch <= 108; ++pitch) {
    const bool black = PitchName(pitch, 0).find('#') != std::string::npos;
    EXPECT_EQ(StaffLinePitch(EntryTopOfPitch(pitch)), black ? pitch + 1 : pitch) << pitch;
    // A kestra line puts a head two steps (six pixels) higher, a black key on the natural's line.
    EXPECT_EQ(KestraTopOfPitch(pitch), black ? KestraTopOfPitch(pitch - 1) : EntryTopOfPitch(pitch) - 6) << pitch;
  }
  EXPECT_EQ(EntryTopOfPitch(60), 120);
  for (int pitch : {21, 0, 109, INT_MIN, INT_MAX}) EXPECT_EQ(EntryTopOfPitch(pitch), 189) << pitch;
  EXPECT_EQ(std::tuple(StaffLinePitch(36), StaffLinePitch(189), StaffLinePitch(121)), std::tuple(108, 21, 60));
  for (int top : {INT_MIN, -1, 35, 192, INT_MAX}) EXPECT_EQ(StaffLinePitch(top), 0) << top;
  for (int top = 36; top + 21 <= 189; top += 3) EXPECT_EQ(StaffLinePitch(top) - StaffLinePitch(top + 21), 12) << top;
}

TEST(KeySignature, AltersTheLinesInTheOrderOfSharpsAndFlats) {
  // Sharps come F C G D A E B, flats B E A D G C F: key k alters the first k of them.
  const int sharps[] = {5, 0, 7, 2, 9, 4, 11}, flats[] = {11, 4, 9, 2, 7, 0, 5};
  for (int key = 0; key <= 14; ++key) {
    for (int pc = 0; pc < 12; ++pc) {
      const bool sharp = key <= 7 && std::find(sharps, sharps + key, pc) != sharps + key;
      const bool flat = key >= 8 && std::find(flats, flats + key - 7, pc) != flats + key - 7;
      EXPECT_EQ(KeySignatureShift(key, 60 + pc), sharp - flat) << "key " << key << " class " << pc;
      EXPECT_EQ(KeySignatureShift(key, 24 + pc), sharp - flat) << "key " << key << " low octave";
    }
  }
  for (int key : {15, -1, INT_MAX, INT_MIN}) EXPECT_EQ(KeySignatureShift(key, 65), 0);
}

TEST(Pictures, EachRouteHasItsOwnThresholdsAndOneHexDigitNamesAPicture) {
  constexpr auto U = NoteFamily::StemDown, N = NoteFamily::StemUp;
  struct Case {
    int top;
    NoteFamily entry, kestra, menu, transpose;
  } cases[] = {{75, U, U, U, U},  {76, U, N, N, N},  {78, U, N, N, N},  {79, N, N, N, N},
               {117, N, N, N, N}, {118, N, U, U, U}, {120, N, U, U, U}, {121, U, U, U, U},
               {141, U, U, U, U}, {142, N, U, U, U}, {150, N, U, U, U}, {151, N, N, U, U},
               {159, N, N, U, U}, {160, N, N, N, U}};
  for (const auto& c : cases)
    EXPECT_EQ(std::tuple(EntryFamily(c.top), KestraFamily(c.top), MenuFamily(c.top), TransposeFamily(c.top)),
              std::tuple(c.entry, c.kestra, c.menu, c.transpose)) << c.top;
  EXPECT_EQ(NotePictureName(NoteFamily::StemDown, "a"), "uA");
  for (const char* digit : {"", "G", "10"}) EXPECT_EQ(NotePictureName('n', digit), "") << digit;
  // Key k shows k sharps up to 7, then k - 7 flats; nothing past the menus.
  for (int k = 0; k <= 14; ++k)
    EXPECT_EQ(KeySignaturePicture(k), k <= 7 ? "S" + std::to_string(k) : "F" + std::to_string(k - 7));
  for (int n : {-1, 15, INT_MAX, INT_MIN})
    EXPECT_EQ(KeySignaturePicture(n) + TimeSignaturePicture(n == 15 ? 9 : n), "") << n;
}
