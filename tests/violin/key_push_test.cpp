// PlayAndShow: the score's player sounds a pitch index and the fingerboard shows it at the
// place the hand position gives.
#include <gtest/gtest.h>

#include "violin/fingerboard.h"
#include "violin/key_push.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

TEST(PositionOf, StringBoundariesInEachPosition) {
  // Lowest and highest pitch index of strings 4, 3, 2, 1 in 1st, 3rd and 5th position.
  const int ranges[3][4][2] = {
      {{55, 61}, {62, 68}, {69, 75}, {76, 91}},
      {{55, 66}, {67, 73}, {74, 80}, {81, 91}},
      {{55, 70}, {71, 76}, {77, 83}, {84, 91}},
  };
  for (int pos = 0; pos < 3; ++pos) {
    for (int k = 0; k < 4; ++k) {
      const int string = 4 - k;
      for (int index : {ranges[pos][k][0], ranges[pos][k][1]}) {
        const StringCell sc = PositionOf(index, pos);
        EXPECT_EQ(sc.string, string) << "index " << index << " position " << pos;
        EXPECT_EQ(FingerboardPitch(sc.string, sc.cell), index) << "index " << index << " position " << pos;
      }
    }
    EXPECT_EQ(PositionOf(54, pos).string, 0);
    EXPECT_EQ(PositionOf(92, pos).string, 0);
  }
}

TEST(PlayAndShow, SoundsFirstThenDrawsOnlyInsideTheFingerboard) {
  struct Case {
    int handPosition, index, velocity;
    Log calls;
  } cases[] = {
      {0, 60, 100, {"player1 p(60) 100", "G 4/5"}},
      {0, 60, 0, {"player1 p(60) 0", "GF 4/5"}},
      {1, 81, 64, {"player1 p(81) 64", "G 1/5"}},
      {2, 81, 64, {"player1 p(81) 64", "G 2/12"}},
      {0, 91, 1, {"player1 p(91) 1", "G 1/15"}},
      {0, 54, 100, {"player1 p(54) 100"}},
      {0, 92, 100, {"player1 p(92) 100"}},
      {0, 21, 0, {"player1 p(21) 0"}},
      {0, 108, 0, {"player1 p(108) 0"}},
  };
  const TuningTables tuning = MarkedTuning();
  for (const auto& c : cases) {
    FakeSound sound;
    PlayAndShow(sound.ports, tuning, c.handPosition, c.index, c.velocity);
    EXPECT_EQ(sound.log, c.calls) << c.index << " in position " << c.handPosition;
  }
}

TEST(PlayAndShow, AnIndexOutsideThePitchTableIsNotSounded) {
  // A hand-edited score can carry any number; it must not read past the table.
  FakeSound sound;
  const TuningTables tuning = MarkedTuning();
  PlayAndShow(sound.ports, tuning, 0, -1, 100);
  PlayAndShow(sound.ports, tuning, 0, kPitchTableSize, 100);
  EXPECT_TRUE(sound.log.empty());
}
