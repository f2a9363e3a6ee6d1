// Just intonation: the pitch table every sound goes through.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "tuning/pure_scale.h"

using namespace lirenza;

namespace {
double Cents(long long p) { return p / 256.0 * 100.0; }
// Cents of a frequency as a MIDI note number × 100, computed independently of the table.
double CentsOfHz(double hz) { return (69 + 12 * std::log2(hz / 440.0)) * 100.0; }
// One step of the table is 1/256 semitone, and the table truncates.
constexpr double kStepCents = 100.0 / 256.0;
}  // namespace

TEST(TuneToKey, KnownValuesOfCMajor) {
  TuningTables t;
  TuneToKey(t, 0);
  EXPECT_EQ(t.pitches[60], 15400);  // C4 at 264 Hz
  EXPECT_EQ(t.pitches[69], 17664);  // A4 at exactly 440 Hz
  EXPECT_EQ(t.pitches[64], 16389);  // E4 at 330 Hz
  EXPECT_EQ(t.wholeHertz[60], 264);
  EXPECT_EQ(t.wholeHertz[69], 440);
  EXPECT_EQ(t.wholeHertz[62], 297);
  EXPECT_EQ(t.ratioTexts[0], "1");
  EXPECT_EQ(t.ratioTexts[9], "5/3");
  EXPECT_EQ(t.frequencyTexts[9], "440");
  EXPECT_EQ(t.frequencyTexts[0], "264");
  EXPECT_EQ(t.keyName, "ハ長調(C)/イ短調(A)");
}

TEST(TuneToKey, RatiosAreCountedFromTheTonicOfEachKey) {
  TuningTables t;
  TuneToKey(t, 1);  // G major: C lies a fifth below the tonic
  EXPECT_EQ(t.ratioTexts[7], "1");
  EXPECT_EQ(t.ratioTexts[0], "2/3");
  EXPECT_NEAR(Cents(t.pitches[67]), CentsOfHz(391.1111111111111), kStepCents);
  EXPECT_EQ(t.keyName, "ト長調(G)/ホ短調(E)");
  TuneToKey(t, 3);
  EXPECT_EQ(t.pitches[69], 17664);
  EXPECT_EQ(t.ratioTexts[9], "1");
  TuneToKey(t, 2);
  EXPECT_EQ(t.wholeHertz[62], 293);  // D is the tonic here, not the 9/8 of C
  EXPECT_EQ(t.wholeHertz[69], 440);
  TuneToKey(t, 14);
  EXPECT_EQ(t.keyName, "変ハ長調(bC)/変イ短調(bA)");
}

TEST(TuneToKey, EveryKeyIsJustOverItsTonicAndKeepsANear440) {
  const double ratios[12] = {1, 16.0 / 15, 9.0 / 8, 6.0 / 5, 5.0 / 4, 4.0 / 3, 45.0 / 32, 3.0 / 2, 8.0 / 5, 5.0 / 3, 9.0 / 5, 15.0 / 8};
  const int offsets[15] = {0, 7, 2, 9, 4, 11, 6, 1, 5, 10, 3, 8, 1, 6, 11};
  for (int keySignature = 0; keySignature <= 14; ++keySignature) {
    SCOPED_TRACE(keySignature);
    TuningTables t;
    TuneToKey(t, keySignature);
    const int tonic = 60 + offsets[keySignature];
    EXPECT_EQ(t.ratioTexts[offsets[keySignature]], "1");
    // Every degree stands at its pure interval above the tonic, in every octave.
    for (int octave = -3; octave <= 3; ++octave) {
      for (int k = 0; k < 12; ++k) {
        const int i = tonic + 12 * octave + k;
        const double expected = Cents(t.pitches[tonic]) + 1200.0 * octave + 1200.0 * std::log2(ratios[k]);
        EXPECT_NEAR(Cents(t.pitches[i]), expected, kStepCents) << "index " << i;
      }
    }
    // A4 stays within a syntonic comma of 440 Hz, whichever tonic the key has.
    EXPECT_NEAR(Cents(t.pitches[69]), 6900, 22.0);
    // Everything the instrument can play is written by every key.
    for (int i = 11; i <= 119; ++i) EXPECT_GT(t.pitches[i], 0) << i;
  }
}

TEST(TuneToKey, KeysThatShareATonicShareTheirTables) {
  for (auto [a, b] : {std::pair{7, 12}, std::pair{6, 13}, std::pair{5, 14}}) {
    TuningTables ta, tb;
    TuneToKey(ta, a);
    TuneToKey(tb, b);
    EXPECT_EQ(ta.pitches, tb.pitches) << a << " and " << b;
    EXPECT_EQ(ta.ratioTexts, tb.ratioTexts);
    EXPECT_NE(ta.keyName, tb.keyName);
  }
}

TEST(TuneToKey, IndexesOutsideTheKeysOctavesKeepWhatTheyHeld) {
  TuningTables t;
  TuneToKey(t, 11);  // offset 8 writes 8 to 127
  const long long written = t.pitches[127];
  EXPECT_GT(written, 0);
  TuneToKey(t, 0);   // writes 0 to 119 only
  EXPECT_EQ(t.pitches[127], written);
  EXPECT_EQ(t.pitches[140], 0);
}

TEST(TuneToKey, AKeyNoScoreCanHoldTunesAsCMajor) {
  TuningTables c;
  TuneToKey(c, 0);
  for (int keySignature : {15, 99, -1, INT_MAX, INT_MIN}) {
    TuningTables t;
    TuneToKey(t, keySignature);
    EXPECT_EQ(t.pitches, c.pitches) << keySignature;
    EXPECT_EQ(t.ratioTexts, c.ratioTexts) << keySignature;
    EXPECT_EQ(t.keyName, c.keyName) << keySignature;
  }
}
