// The computer keyboard as a violin: which key plays what, where it shows, and how the
// polling pass turns key states into one sound and picture change at a time.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string_view>

#include "violin/fingerboard.h"
#include "violin/key_table.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

struct KeyTableFixture : ::testing::Test {
  FakeSound sound;
  FakeKeys keys;
  KeyFlags flag{};
  TuningTables tuning = MarkedTuning();

  bool Pass(int position) { return PollingPass(keys, flag, position, tuning, sound.ports); }
  // Runs passes until one finds nothing, and counts those that acted.
  int Settle(int position) {
    int n = 0;
    while (Pass(position)) ++n;
    return n;
  }
};

}  // namespace

// The keys are played like a keyboard: row by row they rise a semitone from the open G
// string, with Y doubling Shift's note, and each key's code is the Macintosh virtual
// key code of the key its label names (Carbon's kVK_ constants, US layout, with the
// JIS underscore key).
TEST(KeyTable, RowsRiseBySemitonesOnTheKeysTheirLabelsName) {
  const std::map<std::string_view, int> virtualKeyCodes = {
      {"X", 7},  {"D", 2},  {"C", 8},  {"F", 3},  {"V", 9},  {"B", 11}, {"H", 4},      {"N", 45},
      {"J", 38}, {"M", 46}, {",", 43}, {"L", 37}, {".", 47}, {";", 41}, {"/", 44},     {"'", 39},
      {"_", 94}, {"left Shift", 56}, {"Y", 16}, {"7", 26}, {"U", 32}, {"8", 28}, {"I", 34}, {"O", 31},
      {"0", 29}, {"P", 35}, {"-", 27}, {"[", 33}, {"=", 24}, {"]", 30}, {"Return", 36}};
  std::set<int> codes;
  int expectedPitch = FingerboardPitch(4, 0);
  for (const KeyRow& row : kKeyTable) {
    SCOPED_TRACE(row.label);
    EXPECT_TRUE(codes.insert(row.code).second) << "code used twice";
    ASSERT_TRUE(virtualKeyCodes.count(row.label));
    EXPECT_EQ(row.code, virtualKeyCodes.at(row.label));
    if (row.label == "Y") --expectedPitch;  // the second key for Shift's note
    EXPECT_EQ(row.pIndex, expectedPitch++);
  }
  EXPECT_EQ(kKeyTable.back().pIndex, 84) << "Return plays the highest note, C6";
}

TEST(KeyTable, AgreesWithThePositionTableAndTheFingerboard) {
  // The keyboard, PlayAndShow and the fingerboard must show one pitch at one place, or a
  // note played along with the score would show on another string.
  std::set<int> flags;
  for (const KeyRow& row : kKeyTable) {
    EXPECT_TRUE(flags.insert(row.flagIndex).second) << "flag " << row.flagIndex << " shared";
    EXPECT_LT(row.flagIndex, kFlagCount);
    for (int position = 0; position < 3; ++position) {
      const StringCell sc = row.place[position];
      const StringCell expected = PositionOf(row.pIndex, position);
      EXPECT_EQ(sc.string, expected.string) << row.label << " position " << position;
      EXPECT_EQ(sc.cell, expected.cell) << row.label << " position " << position;
      EXPECT_EQ(FingerboardPitch(sc.string, sc.cell), row.pIndex) << row.label;
    }
  }
}

TEST_F(KeyTableFixture, ShiftAndYBothPlayC5GAndNinePlayNothing) {
  keys.down = {56};
  EXPECT_TRUE(Pass(0));
  keys.down = {16};
  EXPECT_TRUE(Pass(0));  // Shift released
  EXPECT_TRUE(Pass(0));  // Y pressed
  EXPECT_EQ(sound.log, (Log{"G 2/3", "player0 p(72) 100", "GF 2/3", "player0 p(72) 0", "G 2/3", "player0 p(72) 100"}));
  sound.log.clear();
  keys.down = {5, 25, 16};  // G and 9 have no row
  EXPECT_FALSE(Pass(0));
  EXPECT_TRUE(sound.log.empty());
}

TEST_F(KeyTableFixture, PressAndReleaseDrawFirstThenSound) {
  struct Case {
    int code, position;
    Log press, release;
  } cases[] = {
      {7, 0, {"G 4/0", "player0 p(55) 100"}, {"GF 4/0", "player0 p(55) 0"}},
      {44, 0, {"G 2/0", "player0 p(69) 100"}, {"GF 2/0", "player0 p(69) 0"}},
      {44, 1, {"G 3/7", "player0 p(69) 100"}, {"GF 3/7", "player0 p(69) 0"}},
      {44, 2, {"G 4/14", "player0 p(69) 100"}, {"GF 4/14", "player0 p(69) 0"}},
      {36, 2, {"G 1/8", "player0 p(84) 100"}, {"GF 1/8", "player0 p(84) 0"}},
  };
  for (const auto& c : cases) {
    sound.log.clear();
    keys.down = {c.code};
    EXPECT_TRUE(Pass(c.position));
    EXPECT_EQ(sound.log, c.press) << c.code;
    EXPECT_FALSE(Pass(c.position)) << "a held key plays once";
    sound.log.clear();
    keys.down.clear();
    EXPECT_TRUE(Pass(c.position));
    EXPECT_EQ(sound.log, c.release) << c.code;
    EXPECT_FALSE(Pass(c.position));
    EXPECT_EQ(flag, KeyFlags{});
  }
}

TEST_F(KeyTableFixture, KeysChangingTogetherTakeOnePassEachInRowOrder) {
  // X, Y and ] at once: one a pass, in the order of the rows, not of the key codes.
  keys.down = {30, 16, 7};
  EXPECT_TRUE(Pass(0));
  EXPECT_EQ(sound.log, (Log{"G 4/0", "player0 p(55) 100"}));
  EXPECT_TRUE(flag[2]);
  EXPECT_FALSE(flag[32]);
  EXPECT_EQ(Settle(0), 2);
  EXPECT_EQ(sound.log, (Log{"G 4/0", "player0 p(55) 100", "G 2/3", "player0 p(72) 100", "G 1/7", "player0 p(83) 100"}));
  // A release and a press at one moment: the earlier row goes first.
  sound.log.clear();
  keys.down = {30, 16, 2};  // X up, D down
  EXPECT_EQ(Settle(0), 2);
  EXPECT_EQ(sound.log, (Log{"GF 4/0", "player0 p(55) 0", "G 4/1", "player0 p(56) 100"}));
}

TEST_F(KeyTableFixture, ReleasingShiftEndsC5WhileYStillHoldsIt) {
  keys.down = {56, 16};
  EXPECT_EQ(Settle(0), 2);
  sound.log.clear();
  keys.down = {16};
  EXPECT_EQ(Settle(0), 1);
  EXPECT_EQ(sound.log, (Log{"GF 2/3", "player0 p(72) 0"}));
  EXPECT_FALSE(flag[12]);
  EXPECT_TRUE(flag[32]);
}

TEST_F(KeyTableFixture, PanicSilencesEveryPlayerButLeavesAHeldKeyFlagged) {
  keys.down = {36};
  EXPECT_TRUE(Pass(0));
  sound.log.clear();
  PanicSweep(tuning, sound.ports);
  ASSERT_EQ(sound.log.size(), 127u * 7 + 1);
  for (int i = 1; i <= 127; ++i)
    for (int k = 0; k < 7; ++k)
      EXPECT_EQ(sound.log[(i - 1) * 7 + k], "player" + std::to_string(k) + " p(" + std::to_string(i) + ") 0");
  EXPECT_EQ(sound.log.back(), "clean");
  EXPECT_TRUE(flag[39]);
  sound.log.clear();
  EXPECT_FALSE(Pass(0)) << "the held key must not start again";
  keys.down.clear();
  EXPECT_TRUE(Pass(0));
  EXPECT_EQ(sound.log, (Log{"GF 1/8", "player0 p(84) 0"}));
}

TEST_F(KeyTableFixture, ReleaseAfterAPositionChangeTakesTheNewPlace) {
  PositionState pos;
  keys.down = {44};
  EXPECT_TRUE(Pass(pos.handPosition));
  EXPECT_EQ(ChoosePosition(pos, 2, Modes{}), 2);
  EXPECT_TRUE(flag[10]);
  keys.down.clear();
  EXPECT_TRUE(Pass(pos.handPosition));
  EXPECT_EQ(sound.log, (Log{"G 2/0", "player0 p(69) 100", "GF 4/14", "player0 p(69) 0"}));
}

TEST(PositionSelector, OneTimerRunsAndBusyHoldsThePosition) {
  struct Case {
    const char* name;
    Modes modes;
    int button;
    int shown;
    int handPosition;
    std::array<int, 3> timers;
  } cases[] = {
      {"1st", {}, 0, 0, 0, {2, 0, 0}},
      {"3rd", {}, 1, 1, 1, {0, 2, 0}},
      {"5th", {}, 2, 2, 2, {0, 0, 2}},
      {"while reading", {true, false, false}, 2, 1, 1, {0, 2, 0}},
      {"while playing", {false, true, false}, 0, 1, 1, {0, 2, 0}},
      {"while the list plays", {false, false, true}, 2, 1, 1, {0, 2, 0}},
  };
  for (const auto& c : cases) {
    PositionState state{1, {0, 2, 0}};
    EXPECT_EQ(ChoosePosition(state, c.button, c.modes), c.shown) << c.name;
    EXPECT_EQ(state.handPosition, c.handPosition) << c.name;
    EXPECT_EQ(state.timerMode, c.timers) << c.name;
  }
}

TEST(PositionSelector, EditAndPlayModeTouchOnlyTheFirstTimer) {
  PositionState state{2, {0, 0, 2}};
  ChooseKeyboardMode(state, 1);
  EXPECT_EQ(state.timerMode, (std::array<int, 3>{2, 0, 2}));
  ChooseKeyboardMode(state, 0);
  EXPECT_EQ(state.timerMode, (std::array<int, 3>{0, 0, 2}));
  EXPECT_EQ(state.handPosition, 2);
}

TEST(KeyDown, ReturnIsPanicAndArrowsStepTheSliders) {
  struct Case {
    int code;
    bool panic;
    int slider, step;
  } cases[] = {
      {13, true, -1, 0}, {30, false, 0, 1}, {31, false, 0, -1}, {29, false, 1, 1},
      {28, false, 1, -1}, {32, false, -1, 0}, {97, false, -1, 0},
  };
  for (const auto& c : cases) {
    const KeyDownAction a = EventKeyDownAction(c.code);
    EXPECT_EQ(a.panic, c.panic) << c.code;
    EXPECT_EQ(a.slider, c.slider) << c.code;
    EXPECT_EQ(a.step, c.step) << c.code;
  }
}
