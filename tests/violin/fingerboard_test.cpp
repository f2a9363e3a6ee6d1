// The fingerboard as the left hand: where a click lands, what it plays and enters, and
// where a note is drawn.
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

#include "violin/fingerboard.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

// A click on a drawn string, or within half the gap to its neighbours, is on that
// string; above the first and below the last, on none.
TEST(Fingerboard, AClickIsOnTheStringDrawnUnderIt) {
  for (int string = 1; string <= 4; ++string) {
    const Rect line = HandGeometryAt(string, 0).string;
    for (int y = line.y - 5; y < line.y + 6; ++y) EXPECT_EQ(StringRow(y), string) << "y " << y;
  }
  const int top = HandGeometryAt(1, 0).string.y, bottom = HandGeometryAt(4, 0).string.y;
  for (int y : {0, top - 6, bottom + 6, 400}) EXPECT_EQ(StringRow(y), 0) << "y " << y;
}

// A click hits the cell whose finger is drawn under it: each band is 25 pixels wide and
// centred on the drawn finger. Past the gap at 360 to 385 the bands go on counting as
// if it were not there, so from cell 11 on a band lies one cell right of its drawing.
TEST(Fingerboard, EachCellBandLiesAroundItsDrawnFinger) {
  for (int cell = 1; cell < kFirstUndrawnCell; ++cell) {
    const Rect finger = HandGeometryAt(1, cell).finger;
    const int centre2 = 2 * finger.x + finger.width + (cell >= 11 ? 50 : 0);  // twice the centre
    for (int x = finger.x - 30; x <= finger.x + finger.width + 30 + (cell >= 11 ? 25 : 0); ++x) {
      const bool inside = std::abs(2 * x + 1 - centre2) < 25;
      if (inside) EXPECT_EQ(CellOfX(x), cell) << "x " << x;
      else EXPECT_NE(CellOfX(x), cell) << "x " << x;
    }
  }
  // The open string answers left of the first band, and so does everything that is no
  // band: the gap and beyond the last band.
  for (int x : {90, 109, 360, 384, 585, -20, 900}) EXPECT_EQ(CellOfX(x), 0) << "x " << x;
}

// A white key goes in as it is; a black key as the sharp of the key below, or with
// Option as the flat of the key above, so the written note always sounds the pitch.
TEST(Fingerboard, BlackKeysAreSpelledFromBelowOrWithOptionFromAbove) {
  const std::set<int> blackKeys = {1, 3, 6, 8, 10};
  for (int index = 55; index <= 94; ++index) {
    SCOPED_TRACE(index);
    const bool black = blackKeys.count(index % 12) != 0;
    const Spelling plain = SpellForScore(index, false);
    const Spelling option = SpellForScore(index, true);
    EXPECT_EQ(plain.accidental, black ? 1 : 0);
    EXPECT_EQ(option.accidental, black ? 2 : 0);
    EXPECT_EQ(plain.index + (black ? 1 : 0), index);
    EXPECT_EQ(option.index - (black ? 1 : 0), index);
    EXPECT_FALSE(blackKeys.count(plain.index % 12)) << "written on a natural line";
    EXPECT_FALSE(blackKeys.count(option.index % 12));
  }
}

TEST(Fingerboard, WhereAFingerAndItsStringAreDrawn) {
  struct Case {
    int string, cell;
    bool drawn, fingertip;
    Rect finger, vibrating;
  } cases[] = {
      {1, 0, true, false, {90, 185, 15, 15}, {104, 190, 530, 3}},
      {4, 0, true, false, {90, 218, 15, 15}, {104, 223, 530, 3}},
      {2, 5, true, true, {215, 196, 15, 15}, {229, 201, 405, 3}},
      {3, 16, true, true, {490, 207, 15, 15}, {504, 212, 130, 3}},
      {1, 17, false, false, {}, {}},
      {1, 18, false, false, {}, {}},
      {1, -1, false, false, {}, {}},
  };
  for (const auto& c : cases) {
    const HandGeometry g = HandGeometryAt(c.string, c.cell);
    EXPECT_EQ(g.drawn, c.drawn) << c.string << "/" << c.cell;
    EXPECT_EQ(g.fingertip, c.fingertip) << c.string << "/" << c.cell;
    if (!c.drawn) continue;
    EXPECT_EQ(g.finger, c.finger) << c.string << "/" << c.cell;
    EXPECT_EQ(g.string, c.vibrating) << c.string << "/" << c.cell;
  }
}

namespace {
struct MouseFixture : ::testing::Test {
  FakeSound sound;
  TuningTables tuning = MarkedTuning();
  Staff staff;
  Modes modes;
  FingerPress press{-1, -1, -1};

  MouseDownResult Down(int x, int y, bool option = false) {
    Modifiers mods;
    mods.option = option;
    return FingerboardMouseDown(x, y, mods, modes, staff, press, tuning, sound.ports);
  }
};
}  // namespace

TEST_F(MouseFixture, APressSoundsShowsAndSpellsTheNote) {
  struct Case {
    int x, y;
    bool option;
    Log calls;
    FingerPress md;
    int index, accidental;
  } cases[] = {
      {215, 200, false, {"player0 p(74) 80", "G 2/5"}, {74, 2, 5}, 74, 0},
      {120, 200, false, {"player0 p(70) 80", "G 2/1"}, {70, 2, 1}, 69, 1},
      {120, 200, true, {"player0 p(70) 80", "G 2/1"}, {70, 2, 1}, 71, 2},
      {372, 190, false, {"player0 p(76) 80", "G 1/0"}, {76, 1, 0}, 76, 0},   // the gap
      {390, 190, false, {"player0 p(87) 80", "G 1/11"}, {87, 1, 11}, 86, 1},
      {40, 225, false, {"player0 p(55) 80", "G 4/0"}, {55, 4, 0}, 55, 0},    // left of the nut
      {700, 210, false, {"player0 p(62) 80", "G 3/0"}, {62, 3, 0}, 62, 0},   // past the bands
      {570, 190, false, {"player0 p(94) 80", "G 1/18"}, {94, 1, 18}, 93, 1}, // sounds, not drawn
  };
  for (const auto& c : cases) {
    sound.log.clear();
    const MouseDownResult r = Down(c.x, c.y, c.option);
    EXPECT_TRUE(r.handled) << c.x << "," << c.y;
    EXPECT_EQ(sound.log, c.calls) << c.x << "," << c.y;
    EXPECT_EQ(press, c.md) << c.x << "," << c.y;
    EXPECT_EQ(r.index, c.index) << c.x << "," << c.y;
    EXPECT_EQ(r.accidental, c.accidental) << c.x << "," << c.y;
  }
}

TEST_F(MouseFixture, PlaybackBlocksThePressButLoadingDoesNot) {
  for (Modes m : {Modes{false, true, false}, Modes{false, false, true}}) {
    modes = m;
    staff.entryLeft = 1000;
    EXPECT_FALSE(Down(215, 200).handled);
    EXPECT_TRUE(sound.log.empty());
    EXPECT_EQ(press, (FingerPress{-1, -1, -1}));
    EXPECT_EQ(staff.entryLeft, 1000) << "no page turn while playing";
  }
  modes = Modes{true, false, false};
  EXPECT_TRUE(Down(215, 200).handled);
}

TEST_F(MouseFixture, AMissOfTheStringsStillTurnsThePage) {
  staff.AddNote(Note{});
  staff.notes[1].left = 960;
  staff.entryLeft = 992;
  const MouseDownResult r = Down(215, 150);
  EXPECT_FALSE(r.handled);
  EXPECT_TRUE(sound.log.empty());
  EXPECT_EQ(staff.entryLeft, 280);
  EXPECT_EQ(staff.scrollValue, 720);  // 840 cut to whole bars
  EXPECT_EQ(staff.notes[1].left, 240);
}

TEST_F(MouseFixture, PageTurnsOnlyFrom984) {
  const std::pair<int, int> cases[] = {{983, 0}, {984, 720}};
  for (auto [preNote, msb] : cases) {
    staff = Staff{};
    staff.entryLeft = preNote;
    EXPECT_TRUE(Down(215, 200).handled);
    EXPECT_EQ(staff.scrollValue, msb) << preNote;
    EXPECT_EQ(staff.entryLeft, msb ? 280 : preNote) << preNote;
  }
}

TEST_F(MouseFixture, ReleaseEndsWhatThePressStartedWhereverThePointerIs) {
  Down(120, 200);
  sound.log.clear();
  FingerboardMouseUp(press, tuning, sound.ports);
  EXPECT_EQ(sound.log, (Log{"player0 p(70) 0", "GF 2/1"}));
}
