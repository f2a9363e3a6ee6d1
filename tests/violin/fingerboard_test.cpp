// The fingerboard as the left hand: where a click lands, what it plays and enters.
#include <gtest/gtest.h>

#include <cstdlib>
#include <tuple>

#include "violin/fingerboard.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

// A click within half the gap of a drawn string is on it; outside them, on none.
TEST(Fingerboard, AClickIsOnTheStringDrawnUnderIt) {
  for (int string = 1; string <= 4; ++string)
    for (int y = HandGeometryAt(string, 0).string.y - 5; y < HandGeometryAt(string, 0).string.y + 6; ++y)
      EXPECT_EQ(StringRow(y), string) << "y " << y;
  for (int y : {0, HandGeometryAt(1, 0).string.y - 6, HandGeometryAt(4, 0).string.y + 6, 400}) EXPECT_EQ(StringRow(y), 0) << y;
}

// Each band is 25 pixels wide around its drawn finger; past the gap at 360-385 the bands
// count on as if it were not there, so from cell 11 a band lies one cell right.
TEST(Fingerboard, EachCellBandLiesAroundItsDrawnFinger) {
  for (int cell = 1; cell < kFirstUndrawnCell; ++cell) {
    const Rect finger = HandGeometryAt(1, cell).finger;
    const int centre2 = 2 * finger.x + finger.width + (cell >= 11 ? 50 : 0);  // twice the centre
    for (int x = finger.x - 30; x <= finger.x + finger.width + 30 + (cell >= 11 ? 25 : 0); ++x)
      EXPECT_EQ(CellOfX(x) == cell, std::abs(2 * x + 1 - centre2) < 25) << "x " << x << " cell " << cell;
  }
  for (int x : {90, 109, 360, 384, 585, -20, 900}) EXPECT_EQ(CellOfX(x), 0) << "x " << x;
  for (int cell : {-1, kFirstUndrawnCell}) EXPECT_FALSE(HandGeometryAt(1, cell).drawn) << cell;
}

struct MouseFixture : ::testing::Test {
  FakeSound sound;
  TuningTables tuning = MarkedTuning();
  Staff staff;
  Modes modes;
  FingerPress press{-1, -1, -1};
  MouseDownResult Down(int x, int y, bool option = false) {
    return FingerboardMouseDown(x, y, Modifiers{.option = option}, modes, staff, press, tuning, sound.ports);
  }
};

// A black key goes in as the sharp of the key below, or with Option as the flat of the
// key above; the release ends what the press started wherever the pointer is.
TEST_F(MouseFixture, APressSoundsShowsAndSpellsTheNote) {
  struct Case { int x, y; bool option; int pitch, string, cell, index, accidental; } cases[] = {
      {215, 200, false, 74, 2, 5, 74, 0}, {120, 200, false, 70, 2, 1, 69, 1}, {120, 200, true, 70, 2, 1, 71, 2},
      {390, 190, false, 87, 1, 11, 86, 1},  // after the gap
      {570, 225, true, 73, 4, 18, 74, 2},   // sounds, though not drawn
  };
  for (const auto& c : cases) {
    sound.log.clear();
    const MouseDownResult r = Down(c.x, c.y, c.option);
    const std::string place = std::to_string(c.string) + "/" + std::to_string(c.cell), note = "p(" + std::to_string(c.pitch) + ")";
    EXPECT_TRUE(r.handled) << c.x << "," << c.y;
    EXPECT_EQ(r.index * 10 + r.accidental, c.index * 10 + c.accidental) << c.x << "," << c.y;
    FingerboardMouseUp(press, tuning, sound.ports);
    EXPECT_EQ(sound.log, (Log{"player0 " + note + " 80", "G " + place, "player0 " + note + " 0", "GF " + place}));
  }
}

// Playing blocks the press and its page turn; a note about to be entered from 984 on
// turns the page first, even when the click then misses the strings.
TEST_F(MouseFixture, PageTurnsAndPlaybackBlocks) {
  staff.AddNote(Note{});
  staff.notes[1].left = 960;
  for (Modes m : {Modes{false, true, false}, Modes{false, false, true}}) {
    modes = m, staff.entryLeft = 1000;
    EXPECT_FALSE(Down(215, 200).handled || staff.entryLeft != 1000 || !sound.log.empty());
  }
  modes = Modes{true, false, false}, staff.entryLeft = 983;  // reading a score does not block
  EXPECT_TRUE(Down(215, 200).handled && staff.scrollValue == 0);
  staff.entryLeft = 984;
  EXPECT_FALSE(Down(215, 150).handled);
  EXPECT_EQ(std::tuple(staff.entryLeft, staff.scrollValue, staff.notes[1].left), std::tuple(280, 720, 240)) << "840 cut to whole bars";
}
