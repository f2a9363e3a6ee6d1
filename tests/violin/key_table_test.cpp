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

// Row by row the keys rise a semitone from the open G string, with Y doubling Shift's
// note; each code is the Macintosh virtual key code (US layout, JIS underscore) of the
// key its label names; and each row's place in every position plays its pitch.
TEST(KeyTable, RowsRiseBySemitonesOnTheKeysTheirLabelsNameAndAgreeWithTheFingerboard) {
  const std::map<std::string_view, int> virtualKeyCodes = {
      {"X", 7}, {"D", 2}, {"C", 8}, {"F", 3}, {"V", 9}, {"B", 11}, {"H", 4}, {"N", 45}, {"J", 38}, {"M", 46},
      {",", 43}, {"L", 37}, {".", 47}, {";", 41}, {"/", 44}, {"'", 39}, {"_", 94}, {"left Shift", 56}, {"Y", 16},
      {"7", 26}, {"U", 32}, {"8", 28}, {"I", 34}, {"O", 31}, {"0", 29}, {"P", 35}, {"-", 27}, {"[", 33},
      {"=", 24}, {"]", 30}, {"Return", 36}};
  std::set<int> codes, flags;
  int expectedPitch = FingerboardPitch(4, 0);
  for (const KeyRow& row : kKeyTable) {
    EXPECT_TRUE(codes.insert(row.code).second && flags.insert(row.flagIndex).second) << row.label;
    EXPECT_LT(row.flagIndex, kFlagCount);
    ASSERT_TRUE(virtualKeyCodes.count(row.label)) << row.label;
    EXPECT_EQ(row.code, virtualKeyCodes.at(row.label)) << row.label;
    if (row.label == "Y") --expectedPitch;  // the second key for Shift's note
    EXPECT_EQ(row.pIndex, expectedPitch++) << row.label;
    for (int position = 0; position < 3; ++position) {
      const StringCell sc = row.place[position], expected = PositionOf(row.pIndex, position);
      EXPECT_EQ(sc.string * 100 + sc.cell, expected.string * 100 + expected.cell) << row.label << " " << position;
      EXPECT_EQ(FingerboardPitch(sc.string, sc.cell), row.pIndex) << row.label;
    }
  }
  EXPECT_EQ(kKeyTable.back().pIndex, 84) << "Return plays the highest note, C6";
}

namespace {
struct KeyTableFixture : ::testing::Test {
  FakeSound sound;
  FakeKeys keys;
  KeyFlags flag{};
  TuningTables tuning = MarkedTuning();

  bool Pass(int position) { return PollingPass(keys, flag, position, tuning, sound.ports); }
  // Passes until one finds nothing; each pass that acts draws and sounds one key.
  Log Settle(std::set<int> down, int position = 0) {
    keys.down = std::move(down);
    sound.log.clear();
    std::size_t passes = 0;
    while (Pass(position)) ++passes;
    EXPECT_EQ(sound.log.size(), 2 * passes);
    return sound.log;
  }
};
}  // namespace

TEST_F(KeyTableFixture, PressAndReleaseDrawFirstThenSound) {
  struct Case {
    int code, position;
    const char *place, *note;
  } cases[] = {{7, 0, "4/0", "p(55)"}, {44, 0, "2/0", "p(69)"}, {44, 1, "3/7", "p(69)"}, {44, 2, "4/14", "p(69)"}, {36, 2, "1/8", "p(84)"}};
  for (const auto& c : cases) {
    const std::string place = c.place, note = std::string("player0 ") + c.note;
    EXPECT_EQ(Settle({c.code}, c.position), (Log{"G " + place, note + " 100"})) << c.code;
    EXPECT_TRUE(Settle({c.code}, c.position).empty()) << "a held key plays once";
    EXPECT_EQ(Settle({}, c.position), (Log{"GF " + place, note + " 0"})) << c.code;
    EXPECT_EQ(flag, KeyFlags{});
  }
  EXPECT_TRUE(Settle({5, 25}).empty()) << "G and 9 have no row";
}

// Keys changing together take one pass each, in the order of the rows, not of the codes.
TEST_F(KeyTableFixture, KeysChangingTogetherTakeOnePassEachInRowOrder) {
  EXPECT_EQ(Settle({30, 16, 7}), (Log{"G 4/0", "player0 p(55) 100", "G 2/3", "player0 p(72) 100", "G 1/7", "player0 p(83) 100"}));
  EXPECT_EQ(Settle({30, 16, 2}), (Log{"GF 4/0", "player0 p(55) 0", "G 4/1", "player0 p(56) 100"}));  // X up, D down
  // Shift and Y play one note: releasing one ends it though the other still holds it.
  EXPECT_EQ(Settle({56, 16}), (Log{"GF 4/1", "player0 p(56) 0", "G 2/3", "player0 p(72) 100", "GF 1/7", "player0 p(83) 0"}));
  EXPECT_EQ(Settle({16}), (Log{"GF 2/3", "player0 p(72) 0"}));
  EXPECT_FALSE(flag[12]);
  EXPECT_TRUE(flag[32]);
}

TEST_F(KeyTableFixture, PanicSilencesEveryPlayerButLeavesAHeldKeyFlagged) {
  Settle({36});
  sound.log.clear();
  PanicSweep(tuning, sound.ports);
  ASSERT_EQ(sound.log.size(), 127u * 7 + 1);
  for (int i = 1; i <= 127; ++i)
    for (int k = 0; k < 7; ++k)
      EXPECT_EQ(sound.log[(i - 1) * 7 + k], "player" + std::to_string(k) + " p(" + std::to_string(i) + ") 0");
  EXPECT_EQ(sound.log.back(), "clean");
  EXPECT_TRUE(Settle({36}).empty()) << "the held key must not start again";
  EXPECT_EQ(Settle({}), (Log{"GF 1/8", "player0 p(84) 0"}));
}

// One timer runs; a busy window holds the position; a release after a position change
// is shown at the new place.
TEST_F(KeyTableFixture, PositionSelector) {
  struct Case {
    Modes modes;
    int button, shown;
    std::array<int, 3> timers;
  } cases[] = {{{}, 0, 0, {2, 0, 0}}, {{}, 2, 2, {0, 0, 2}}, {{true, false, false}, 2, 1, {0, 2, 0}},
               {{false, true, false}, 0, 1, {0, 2, 0}}, {{false, false, true}, 2, 1, {0, 2, 0}}};
  for (const auto& c : cases) {
    PositionState state{1, {0, 2, 0}};
    EXPECT_EQ(ChoosePosition(state, c.button, c.modes), c.shown) << c.button;
    EXPECT_EQ(state.handPosition, c.shown) << c.button;
    EXPECT_EQ(state.timerMode, c.timers) << c.button;
  }
  PositionState pos;
  Settle({44}, pos.handPosition);
  EXPECT_EQ(ChoosePosition(pos, 2, Modes{}), 2);
  EXPECT_EQ(Settle({}, pos.handPosition), (Log{"GF 4/14", "player0 p(69) 0"}));
}
