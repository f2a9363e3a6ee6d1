#include <gtest/gtest.h>

#include <map>
#include <set>

#include "violin/fingerboard.h"
#include "violin/key_table.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

// Keys rise by semitones from open G (Y doubles Shift) on the Macintosh virtual key codes
// their labels name (US layout, JIS underscore); each row's place plays its pitch.
TEST(KeyTable, RowsRiseBySemitonesOnTheKeysTheirLabelsNameAndAgreeWithTheFingerboard) {
  const std::map<std::string_view, int> virtualKeyCodes = {
      {"X", 7}, {"D", 2}, {"C", 8}, {"F", 3}, {"V", 9}, {"B", 11}, {"H", 4}, {"N", 45}, {"J", 38}, {"M", 46},
      {",", 43}, {"L", 37}, {".", 47}, {";", 41}, {"/", 44}, {"'", 39}, {"_", 94}, {"left Shift", 56}, {"Y", 16},
      {"7", 26}, {"U", 32}, {"8", 28}, {"I", 34}, {"O", 31}, {"0", 29}, {"P", 35}, {"-", 27}, {"[", 33},
      {"=", 24}, {"]", 30}, {"Return", 36}};
  std::set<int> codes, flags;
  int expectedPitch = FingerboardPitch(4, 0);
  for (const KeyRow& row : kKeyTable) {
    EXPECT_TRUE(codes.insert(row.code).second && flags.insert(row.flagIndex).second && row.flagIndex < kFlagCount) << row.label;
    ASSERT_TRUE(virtualKeyCodes.count(row.label)) << row.label;
    EXPECT_EQ(row.code, virtualKeyCodes.at(row.label)) << row.label;
    if (row.label == "Y") --expectedPitch;  // the second key for Shift's note
    EXPECT_EQ(row.pitchIndex, expectedPitch++) << row.label;
    for (int position = 0; position < 3; ++position) {
      const StringCell sc = row.place[position], expected = PositionOf(row.pitchIndex, position);
      EXPECT_EQ(sc.string * 100 + sc.cell, expected.string * 100 + expected.cell) << row.label << " " << position;
      EXPECT_EQ(FingerboardPitch(sc.string, sc.cell), row.pitchIndex) << row.label;
    }
  }
  EXPECT_EQ(kKeyTable.back().pitchIndex, 84) << "Return plays the highest note, C6";
}

namespace {
struct KeyTableFixture : ::testing::Test {
  FakeSound sound;
  FakeKeys keys;
  KeyboardHand hand;
  TuningTables tuning = MarkedTuning();

  // Passes until one finds nothing; each pass that acts draws and sounds one key.
  Log Settle(std::set<int> down, int position = 0) {
    keys.down = std::move(down);
    sound.log.clear();
    std::size_t passes = 0;
    while (PollingPass(keys, hand, position, tuning, sound.ports)) ++passes;
    EXPECT_EQ(sound.log.size(), 2 * passes);
    return sound.log;
  }
};
}  // namespace

// Each change draws first, then sounds; keys changing together take one pass each, in the
// order of the rows, not of the codes.
TEST_F(KeyTableFixture, KeysChangingTogetherTakeOnePassEachInRowOrder) {
  EXPECT_EQ(Settle({30, 16, 7}), (Log{"G 4/0", "player0 p(55) 100", "G 2/3", "player0 p(72) 100", "G 1/7", "player0 p(83) 100"}));
  EXPECT_EQ(Settle({30, 16, 2}), (Log{"GF 4/0", "player0 p(55) 0", "G 4/1", "player0 p(56) 100"}));  // X up, D down
  // Shift and Y play one note: releasing one ends it though the other still holds it.
  EXPECT_EQ(Settle({56, 16}), (Log{"GF 4/1", "player0 p(56) 0", "G 2/3", "player0 p(72) 100", "GF 1/7", "player0 p(83) 0"}));
  EXPECT_EQ(Settle({16}), (Log{"GF 2/3", "player0 p(72) 0"}));
  EXPECT_TRUE(Settle({16, 5, 25}).empty()) << "a held key plays once; G and 9 have no row";
}

TEST_F(KeyTableFixture, PanicSilencesEveryPlayerButLeavesAHeldKeyFlagged) {
  Settle({36});
  sound.log.clear();
  PanicSweep(tuning, sound.ports);
  Log sweep;
  for (int i = 1; i <= 127; ++i)
    for (int k = 0; k < 7; ++k) sweep.push_back("player" + std::to_string(k) + " p(" + std::to_string(i) + ") 0");
  sweep.push_back("clean");
  EXPECT_EQ(sound.log, sweep);
  EXPECT_TRUE(Settle({36}).empty()) << "the held key must not start again";
  EXPECT_EQ(Settle({}), (Log{"GF 1/8", "player0 p(84) 0"}));
  EXPECT_FALSE(hand.AnyPressed());
}

// A busy window holds the position. A key held across a change of position, or of the
// score's key, ends the pitch it started and wipes the finger where it was drawn.
TEST_F(KeyTableFixture, ReleaseEndsWhatThePressStartedWhateverChangedMeanwhile) {
  for (Modes busy : {Modes{true, false, false}, Modes{false, true, false}, Modes{false, false, true}}) {
    PositionState state{1, {0, 2, 0}};
    EXPECT_EQ(ChoosePosition(state, 2, busy), 1);
    EXPECT_EQ(state.handPosition, 1);
  }
  PositionState pos;
  Settle({44}, pos.handPosition);
  EXPECT_EQ(ChoosePosition(pos, 2, Modes{}), 2);
  EXPECT_EQ(pos.timerMode, (std::array<int, 3>{0, 0, 2})) << "one timer runs";
  tuning.pitches[69] += 10;  // retuned while held
  EXPECT_EQ(Settle({}, pos.handPosition), (Log{"GF 2/0", "player0 p(69) 0"}));
}

// Back in play mode in 3rd position two timers poll, the first position's first; when
// no timer is left to see a release, the held keys are ended at once.
TEST_F(KeyTableFixture, RunningTimersPollInOrderAndPressedKeysEndWhenNoneIsLeft) {
  PositionState pos{1, {2, 2, 0}};
  keys.down = {44};
  EXPECT_TRUE(PollRunningTimers(pos, keys, hand, tuning, sound.ports));
  EXPECT_EQ(sound.log, (Log{"G 2/0", "player0 p(69) 100"})) << "the first position's pass took the press";
  keys.down = {44, 7};
  EXPECT_TRUE(PollRunningTimers(pos, keys, hand, tuning, sound.ports));
  EXPECT_FALSE(PollRunningTimers(pos, keys, hand, tuning, sound.ports));
  ChooseKeyboardMode(pos, 0);
  EXPECT_TRUE(pos.AnyTimerRunning());
  sound.log.clear();
  ReleasePressedKeys(hand, sound.ports);
  EXPECT_EQ(sound.log, (Log{"GF 4/0", "player0 p(55) 0", "GF 2/0", "player0 p(69) 0"}));
  EXPECT_FALSE(hand.AnyPressed());
}
