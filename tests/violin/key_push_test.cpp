#include <gtest/gtest.h>

#include "violin/fingerboard.h"
#include "violin/key_push.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

// Every index lands on a place that plays it; the lowest index of strings 4..1 by position.
TEST(PositionOf, StringBoundariesInEachPosition) {
  const int lowest[3][4] = {{55, 62, 69, 76}, {55, 67, 74, 81}, {55, 71, 77, 84}};
  for (int pos = 0; pos < 3; ++pos)
    for (int index = 54; index <= 92; ++index) {
      const StringCell sc = PositionOf(index, pos);
      int string = 0;
      for (int k = 0; k < 4 && index <= 91; ++k) string = index >= lowest[pos][k] ? 4 - k : string;
      EXPECT_EQ(sc.string, string) << "index " << index << " position " << pos;
      EXPECT_EQ(FingerboardPitch(sc.string, sc.cell), string ? index : 0) << "index " << index << " position " << pos;
    }
}

// Sound, then the finger inside the fingerboard; an index off the pitch table is not sounded.
TEST(PlayAndShow, SoundsFirstThenDrawsOnlyInsideTheFingerboard) {
  struct Case { int handPosition, index, velocity; Log calls; };
  const Case cases[] = {{0, 60, 100, {"player1 p(60) 100", "G 4/5"}}, {0, 60, 0, {"player1 p(60) 0", "GF 4/5"}},
                        {2, 81, 64, {"player1 p(81) 64", "G 2/12"}}, {0, 92, 100, {"player1 p(92) 100"}},
                        {0, -1, 100, {}}, {0, kPitchTableSize, 100, {}}};
  for (const auto& c : cases) {
    FakeSound sound;
    PlayAndShow(sound.ports, MarkedTuning(), c.handPosition, c.index, c.velocity);
    EXPECT_EQ(sound.log, c.calls) << c.index << " in position " << c.handPosition;
  }
}
