// The token and pitch tables: each lookup at its boundaries and at the irregular
// corners a hand-typed literal could get wrong.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <set>
#include <vector>

#include "score/note.h"
#include "score/note_tables.h"

using namespace lirenza;

struct TokenCase {
  const char* token;
  int linePitch, accidental, accidentalSign, pitch;
  const char* velocityDigit;
  const char* durationDigit;
  const char* repainted;
};

TEST(NoteToken, ReadsFromItsEndAndRepaintsFromTheFields) {
  const TokenCase cases[] = {
      {"C498", 60, 0, 0, 60, "9", "8", "C498"},
      {"E4b98", 64, -1, 2, 63, "9", "8", "E4b98"},
      {"F4#98", 65, 1, 1, 66, "9", "8", "F4#98"},
      {"A4#98", 69, 1, 1, 70, "9", "8", "A4#98"},
      {"B4b98", 71, -1, 2, 70, "9", "8", "B4b98"},
      {"G5#92", 79, 1, 1, 80, "9", "2", "G5#92"},
      {"0008", 60, 0, 0, 60, "0", "8", "C408"},  // a rest's "00" reads as middle C
      {"C408", 60, 0, 0, 60, "0", "8", "C408"},
      {"c4f4", 60, 0, 0, 60, "f", "4", "C4f4"},   // names compare without case
      {"A0#94", 21, 1, 1, 22, "9", "4", "A0#94"},
      {"C8F0", 108, 0, 0, 108, "F", "0", "C8F0"},
      {"X994", 0, 0, 0, 0, "9", "4", "0094"},     // unknown name: pitch 0, spelled "00"
      {"4", 0, 0, 0, 0, "", "4", "004"},           // too short: what is there is read
      {"", 0, 0, 0, 0, "", "", "00"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.token);
    Note n;
    FillFromToken(n, c.token);
    EXPECT_EQ(n.token, c.token);
    EXPECT_EQ(n.linePitch, c.linePitch);
    EXPECT_EQ(n.accidental, c.accidental);
    EXPECT_EQ(n.accidentalSign, c.accidentalSign);
    EXPECT_EQ(n.pitch, c.pitch);
    EXPECT_EQ(n.velocityDigit, c.velocityDigit);
    EXPECT_EQ(n.durationDigit, c.durationDigit);
    RespellToken(n);
    EXPECT_EQ(n.token, c.repainted);
  }
}

TEST(NoteToken, KeySignatureSpellsTheNoteWithoutItsOwnSign) {
  // A B flat from the signature has no flat of its own and is written as A sharp.
  Note n;
  FillFromToken(n, "B498");
  n.keyShift = -1;
  RespellToken(n);
  EXPECT_EQ(n.pitch, 70);
  EXPECT_EQ(n.token, "A4#98");
}

TEST(PitchName, EveryPitchSpelledSharpOrFlatReadsBackAsItself) {
  for (int pitch = 21; pitch <= 108; ++pitch) {
    for (int sf : {0, -1}) {
      Note n;
      FillFromToken(n, PitchName(pitch, sf) + "94");
      EXPECT_EQ(n.pitch, pitch) << PitchName(pitch, sf);
    }
  }
  for (int pitch : {-1, 109, INT_MIN, INT_MAX}) EXPECT_EQ(PitchName(pitch, 0), "") << pitch;
}

TEST(NaturalPitchOfName, InvertsTheSharpTableFromA0ToC8Only) {
  struct Case {
    const char* name;
    int pitch;
  } cases[] = {{"00", 60}, {"A0", 21}, {"B0", 23}, {"C4", 60}, {"c4", 60}, {"A4", 69},
               {"C8", 108}, {"G0", 0},  {"-C#", 0}, {"D8", 0},  {"H4", 0},  {"", 0}};
  for (const auto& c : cases) EXPECT_EQ(NaturalPitchOfName(c.name), c.pitch) << c.name;
  // Every natural and sharp name from A0 to C8 reads back as its own pitch.
  for (int p = 21; p <= 108; ++p) EXPECT_EQ(NaturalPitchOfName(PitchName(p, 0)), p) << p;
}

TEST(DigitTables, DurationDigitsAreTheNoteValuesOfTheMenu) {
  // Each digit as a note value: a fraction of a whole note, dots, triplet. 480 ticks
  // make a quarter.
  struct Value {
    int ofWhole, dots;
    bool triplet;
  } values[16] = {{1, 0, false},  {2, 1, false}, {2, 0, false},  {4, 1, false}, {4, 0, false},  {8, 2, false},
                  {8, 1, false},  {4, 0, true},  {8, 0, false},  {16, 1, false}, {8, 0, true},  {16, 0, false},
                  {16, 0, true},  {32, 0, false}, {32, 0, true}, {64, 0, false}};
  const char* digits = "0123456789ABCDEF";
  for (int i = 0; i < 16; ++i) {
    const Value& v = values[i];
    double ticks = 1920.0 / v.ofWhole * (2 - 1.0 / (1 << v.dots));
    if (v.triplet) ticks = ticks * 2 / 3;
    EXPECT_EQ(TicksOfDigit(std::string(1, digits[i])), static_cast<int>(ticks)) << digits[i];
    EXPECT_EQ(TicksOfDigit(std::string(1, static_cast<char>(std::tolower(digits[i])))), static_cast<int>(ticks));
  }
}

TEST(DigitTables, VelocityRisesWithTheDigitFromSilenceToTheTop) {
  const char* digits = "0123456789ABCDEF";
  EXPECT_EQ(VelocityOfDigit("0"), 0);
  EXPECT_EQ(VelocityOfDigit("F"), 127);
  for (int i = 1; i < 16; ++i) EXPECT_GT(VelocityOfDigit(std::string(1, digits[i])), VelocityOfDigit(std::string(1, digits[i - 1])));
}

TEST(DigitTables, UnreadableDigitsReadAsSilenceWhateverTheirSize) {
  // An empty or unknown digit reads as 0: silence, and the longest length.
  EXPECT_EQ(VelocityOfDigit(""), 0);
  EXPECT_EQ(VelocityOfDigit("Z"), 0);
  EXPECT_EQ(TicksOfDigit(""), 1920);
  // Past the table there is no value, however large the number, and no wrap-around.
  for (const char* digit : {"10", "FFFFFFFF", "100000000", "7FFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFFFFFF"}) {
    EXPECT_EQ(VelocityOfDigit(digit), 0) << digit;
    EXPECT_EQ(TicksOfDigit(digit), 0) << digit;
  }
}

TEST(DigitTables, NoteDurScalesByTheTempoFactor) {
  EXPECT_EQ(MicrosecondsOfDigit("4", 1.0), 480000);
  EXPECT_EQ(MicrosecondsOfDigit("4", 0.6), 288000);
  EXPECT_EQ(MicrosecondsOfDigit("F", 0.65), 19500);
  // A damaged factor gives a long or empty note, never an out-of-range cast.
  EXPECT_GT(MicrosecondsOfDigit("0", 1e308), 0);
  EXPECT_LT(MicrosecondsOfDigit("0", -1e308), 0);
  EXPECT_EQ(MicrosecondsOfDigit("0", std::nan("")), 0);
}

TEST(StaffPlaces, NotesStandOnTheirLineAndBlackKeysOnTheLineAbove) {
  for (int pitch = 22; pitch <= 108; ++pitch) {
    const bool black = PitchName(pitch, 0).find('#') != std::string::npos;
    EXPECT_EQ(StaffLinePitch(EntryTopOfPitch(pitch)), black ? pitch + 1 : pitch) << pitch;
    // A kestra line puts the head two diatonic steps (six pixels) higher, and a black
    // key on the line of the natural below it.
    if (!black) EXPECT_EQ(EntryTopOfPitch(pitch) - KestraTopOfPitch(pitch), 6) << pitch;
    else EXPECT_EQ(KestraTopOfPitch(pitch), KestraTopOfPitch(pitch - 1)) << pitch;
  }
  EXPECT_EQ(EntryTopOfPitch(60), 120);
  EXPECT_EQ(KestraTopOfPitch(60), 114);
  // Below the staff's lowest step, and past its top, notes go to the bottom line.
  for (int pitch : {21, 0, 109, -5, INT_MIN, INT_MAX}) EXPECT_EQ(EntryTopOfPitch(pitch), 189) << pitch;
}

TEST(StaffPlaces, StaffLineTableRunsThreePixelsADiatonicStep) {
  EXPECT_EQ(StaffLinePitch(36), 108);
  EXPECT_EQ(StaffLinePitch(120), 60);
  EXPECT_EQ(StaffLinePitch(189), 21);
  EXPECT_EQ(StaffLinePitch(121), 60);  // truncated to the line above
  for (int top : {INT_MIN, -1, 0, 33, 35, 192, INT_MAX}) EXPECT_EQ(StaffLinePitch(top), 0) << top;
  // An octave is seven steps, 21 pixels.
  for (int top = 36; top + 21 <= 189; top += 3) EXPECT_EQ(StaffLinePitch(top) - StaffLinePitch(top + 21), 12) << top;
}

TEST(KeySignature, AltersTheLinesInTheOrderOfSharpsAndFlats) {
  // Sharps come F C G D A E B, flats B E A D G C F: key k alters the first k of them.
  const std::vector<int> sharps = {5, 0, 7, 2, 9, 4, 11};
  const std::vector<int> flats = {11, 4, 9, 2, 7, 0, 5};
  for (int keySignature = 0; keySignature <= 14; ++keySignature) {
    for (int pc = 0; pc < 12; ++pc) {
      int expected = 0;
      if (keySignature >= 1 && keySignature <= 7 && std::find(sharps.begin(), sharps.begin() + keySignature, pc) != sharps.begin() + keySignature)
        expected = 1;
      if (keySignature >= 8 && std::find(flats.begin(), flats.begin() + (keySignature - 7), pc) != flats.begin() + (keySignature - 7))
        expected = -1;
      EXPECT_EQ(KeySignatureShift(keySignature, 60 + pc), expected) << "key " << keySignature << " class " << pc;
      EXPECT_EQ(KeySignatureShift(keySignature, 24 + pc), expected) << "key " << keySignature << " low octave";
    }
  }
  for (int keySignature : {15, -1, INT_MAX, INT_MIN}) EXPECT_EQ(KeySignatureShift(keySignature, 65), 0);
}

TEST(PictureFamily, EachRouteHasItsOwnThresholds) {
  struct Case {
    int top;
    NoteFamily entry, kestra, menu, transpose;
  };
  constexpr auto U = NoteFamily::StemDown, N = NoteFamily::StemUp;
  const Case cases[] = {
      {57, U, U, U, U},  {75, U, U, U, U},  {76, U, N, N, N},
      {78, U, N, N, N},  {79, N, N, N, N},  {117, N, N, N, N},
      {118, N, U, U, U}, {120, N, U, U, U}, {121, U, U, U, U},
      {141, U, U, U, U}, {142, N, U, U, U}, {150, N, U, U, U},
      {151, N, N, U, U}, {159, N, N, U, U}, {160, N, N, N, U},
      {189, N, N, N, U},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.top);
    EXPECT_EQ(EntryFamily(c.top), c.entry);
    EXPECT_EQ(KestraFamily(c.top), c.kestra);
    EXPECT_EQ(MenuFamily(c.top), c.menu);
    EXPECT_EQ(TransposeFamily(c.top), c.transpose);
  }
}

TEST(PictureNames, OneHexDigitNamesAPictureAnythingElseNone) {
  EXPECT_EQ(NotePictureName('n', "8"), "n8");
  EXPECT_EQ(NotePictureName('u', "f"), "uF");
  EXPECT_EQ(NotePictureName('r', "0"), "r0");
  EXPECT_EQ(NotePictureName(NoteFamily::StemDown, "A"), "uA");
  EXPECT_EQ(NotePictureName('n', ""), "");
  EXPECT_EQ(NotePictureName('n', "G"), "");
  EXPECT_EQ(NotePictureName('n', "10"), "");
  // Key k shows k sharps up to 7, then k - 7 flats; nine time signatures; nothing else.
  for (int keySignature = 0; keySignature <= 14; ++keySignature)
    EXPECT_EQ(KeySignaturePicture(keySignature), keySignature <= 7 ? "S" + std::to_string(keySignature) : "F" + std::to_string(keySignature - 7));
  std::set<std::string> times;
  for (int t = 0; t < 9; ++t) times.insert(TimeSignaturePicture(t));
  EXPECT_EQ(times.size(), 9u);
  EXPECT_EQ(times.count(""), 0u);
  for (int n : {-1, 15, 1000, INT_MAX, INT_MIN}) {
    EXPECT_EQ(KeySignaturePicture(n), "") << n;
    if (n != 15) EXPECT_EQ(TimeSignaturePicture(n), "") << n;
  }
  EXPECT_EQ(TimeSignaturePicture(9), "");
}
