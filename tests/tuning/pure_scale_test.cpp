// Just intonation: the pitch table every sound goes through.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "tuning/pure_scale.h"

using namespace lirenza;

namespace {
double Cents(long long pitch) { return pitch / 256.0 * 100.0; }
constexpr double kStepCents = 100.0 / 256.0;  // one step of the table, which truncates
}  // namespace

TEST(TuneToKey, CMajorAnchorsAAt440AndCAt264) {
  TuningTables t;
  TuneToKey(t, 0);
  EXPECT_EQ(t.pitches[69], 17664);
  EXPECT_EQ(t.wholeHertz[60], 264);
  EXPECT_EQ(t.frequencyTexts[9], "440");
  EXPECT_EQ(t.ratioTexts[9], "5/3");
  TuneToKey(t, 2);
  EXPECT_EQ(t.wholeHertz[62], 293) << "D is the tonic here, not the 9/8 of C";
  EXPECT_EQ(t.ratioTexts[2], "1");
}

TEST(TuneToKey, EveryKeyIsJustOverItsTonicAndKeepsANear440) {
  const double ratios[12] = {1, 16.0 / 15, 9.0 / 8, 6.0 / 5, 5.0 / 4, 4.0 / 3, 45.0 / 32, 3.0 / 2, 8.0 / 5, 5.0 / 3, 9.0 / 5, 15.0 / 8};
  const int offsets[15] = {0, 7, 2, 9, 4, 11, 6, 1, 5, 10, 3, 8, 1, 6, 11};
  for (int keySignature = 0; keySignature <= 14; ++keySignature) {
    TuningTables t;
    TuneToKey(t, keySignature);
    const int tonic = 60 + offsets[keySignature];
    EXPECT_EQ(t.ratioTexts[offsets[keySignature]], "1") << keySignature;
    for (int octave = -3; octave <= 3; ++octave)
      for (int k = 0; k < 12; ++k) {
        const int i = tonic + 12 * octave + k;
        const double expected = Cents(t.pitches[tonic]) + 1200.0 * octave + 1200.0 * std::log2(ratios[k]);
        EXPECT_NEAR(Cents(t.pitches[i]), expected, kStepCents) << "key " << keySignature << ", index " << i;
      }
    EXPECT_NEAR(Cents(t.pitches[69]), 6900, 22.0) << "A4 within a syntonic comma, key " << keySignature;
    for (int i = 11; i <= 119; ++i) EXPECT_GT(t.pitches[i], 0) << "key " << keySignature << ", index " << i;
  }
}

TEST(TuneToKey, KeysThatShareATonicShareTheirTables) {
  for (auto [a, b] : {std::pair{7, 12}, std::pair{6, 13}, std::pair{5, 14}}) {
    TuningTables ta, tb;
    TuneToKey(ta, a);
    TuneToKey(tb, b);
    EXPECT_EQ(ta.pitches, tb.pitches) << a << " and " << b;
    EXPECT_NE(ta.keyName, tb.keyName) << a << " and " << b;
  }
}

TEST(TuneToKey, AKeyNoScoreCanHoldTunesAsCMajor) {
  TuningTables c;
  TuneToKey(c, 0);
  for (int keySignature : {15, -1, INT_MAX, INT_MIN}) {
    TuningTables t;
    TuneToKey(t, keySignature);
    EXPECT_EQ(t.pitches, c.pitches) << keySignature;
    EXPECT_EQ(t.keyName, c.keyName) << keySignature;
  }
}
