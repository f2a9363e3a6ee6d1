// Note entry by double click and by the fingerboard, and the buttons that shape it.
#include <gtest/gtest.h>

#include "editor/note_entry.h"
#include "score/note_tables.h"

using namespace lirenza;

namespace {
// A double click at window-canvas x, y: two presses five ticks apart.
bool DoubleClick(Staff& s, EntryState& e, long long& ticks, int x, int y) {
  ticks += 100;
  EnterNoteAt(s, e, Modes{}, Modifiers{}, ticks, x, y);
  ticks += 5;
  return EnterNoteAt(s, e, Modes{}, Modifiers{}, ticks, x, y);
}
// Where a note sits and what it is: "left,top pitch token picture".
std::string Show(const Note& n) {
  return std::to_string(n.left) + "," + std::to_string(n.top) + " " + std::to_string(n.pitch) + " " + n.token +
         " " + n.picture + (n.stemDown ? " down" : "");
}
}  // namespace

// Each click makes a note where it lands, snapped to the grid, clear of the bar lines and
// the staff's ends, moved down past a note already there; its pitch is read from its line.
TEST(NoteEntry, DoubleClicksPlaceNotesOnTheGrid) {
  const struct {
    int x, y;
    const char* note;
  } clicks[] = {
      {20, 78, "136,120 60 C494 n4"},   {52, 72, "168,114 64 E494 n4"},   {84, 36, "200,78 84 C694 u4"},
      {116, 99, "232,141 48 C394 u4"},  {132, 78, "240,120 60 C494 n4"},  {140, 78, "264,120 60 C494 n4"},
      {860, 78, "960,120 60 C494 n4"},  {852, 78, "968,120 60 C494 n4"},  {300, -20, "416,57 96 C794 u4"},
      {300, 180, "416,162 36 C294 n4"}, {300, 180, "416,162 36 C294 n4"}, {4, 75, "120,123 59 B394 u4"},
      {500, 60, "616,102 71 B494 n4"},  {500, 60, "616,108 67 G494 n4"},  {500, 60, "616,114 64 E494 n4"},
  };
  Staff s;
  EntryState e;
  long long t = 0;
  for (const auto& c : clicks) {
    ASSERT_TRUE(DoubleClick(s, e, t, c.x, c.y));
    EXPECT_EQ(Show(s.notes.back()), c.note) << c.x << "," << c.y;
    EXPECT_EQ(s.entryLeft, s.notes.back().left + 32);
    EXPECT_EQ(s.entryTop, s.notes.back().top);
  }
}

TEST(NoteEntry, DoubleClickWindowGuardsAndBarSelection) {
  Staff s;
  EntryState e;
  EXPECT_FALSE(EnterNoteAt(s, e, {}, {}, 1000, 300, 78));
  EXPECT_EQ(s.selectedBar, 2);
  EXPECT_TRUE(EnterNoteAt(s, e, {}, {}, 1029, 300, 78)) << "29 ticks is a double click";
  EXPECT_TRUE(EnterNoteAt(s, e, {}, {}, 1029, 340, 78)) << "every click within the window makes a note";
  EXPECT_FALSE(EnterNoteAt(s, e, {}, {}, 1030, 380, 78)) << "30 ticks is not";
  Modifiers shift;
  shift.shift = true;
  EXPECT_FALSE(EnterNoteAt(s, e, {}, shift, 1032, 20, 78));
  EXPECT_EQ(s.NoteCount(), 2);
  EXPECT_EQ(s.selectedBar, 2) << "guarded presses change nothing";
  PressRightOfStaff(e, 1500);
  EXPECT_TRUE(EnterNoteAt(s, e, {}, {}, 1510, 20, 78)) << "a press at the right end starts a double click";
}

TEST(NoteEntry, LengthButtonsSetDigitSpacingAndRestRows) {
  const struct {
    int button;
    const char* durationDigit;
    int space;
  } cases[] = {{0, "0", 48}, {4, "4", 32}, {11, "B", 16}, {15, "F", 8}, {24, "8", 16}};
  for (const auto& c : cases) {
    Staff s;
    EntryState e;
    ChooseLength(s, e, {}, c.button);
    long long t = 0;
    DoubleClick(s, e, t, 20, 78);
    EXPECT_EQ(s.notes[1].durationDigit, c.durationDigit) << c.button;
    EXPECT_EQ(s.entryLeft, 136 + c.space) << c.button;
  }
  Staff s;
  EntryState e;
  ChooseLength(s, e, {}, 20);  // crotchet rest: its own row, a second one 18 lower
  long long t = 0;
  for (int y : {60, 60, 100}) DoubleClick(s, e, t, 20, y);
  EXPECT_EQ(Show(s.notes[1]), "136,111 0 0004 r4");
  EXPECT_EQ(s.notes[2].top, 129);
  EXPECT_EQ(s.notes[3].top, 147);
  for (int v = 1; v < 9; ++v)
    EXPECT_GT(std::stoi(VelocityDigitFor(v), nullptr, 16), std::stoi(VelocityDigitFor(v - 1), nullptr, 16));
}

TEST(EnterPlayedNote, TheFingerboardKeepsThePitchPlayedAndTheSignatureWins) {
  const struct {
    int keySignature, playedPitch, playedSign;
    const char* note;
    int accidental, accidentalSign, keyShift;
  } cases[] = {
      {0, 60, 0, "136,120 60 C494 n4", 0, 0, 0},
      {0, 60, 1, "136,120 61 C4#94 n4", 1, 1, 0},   // C sharp from a black key
      {0, 64, 2, "136,114 63 E4b94 n4", -1, 2, 0},  // E flat with Option
      {1, 65, 0, "136,111 66 F4#94 n4", 0, 0, 1},   // F natural pressed in G major enters F sharp
      {1, 65, 1, "136,111 66 F4#94 n4", 0, 0, 1},   // the sign is ignored where the key acts
      {0, 98, 0, "136,57 98 D794 u4", 0, 0, 0},     // clamped place, pitch kept
      {0, 36, 0, "136,162 36 C294 n4", 0, 0, 0},
  };
  for (const auto& c : cases) {
    Staff s;
    s.keySignature = c.keySignature;
    EntryState e;
    EnterPlayedNote(s, e, c.playedPitch, c.playedSign);
    const Note& n = s.notes[1];
    EXPECT_EQ(Show(n), c.note);
    EXPECT_EQ(n.linePitch, c.playedPitch);
    EXPECT_EQ(std::vector<int>({n.accidental, n.accidentalSign, n.keyShift}),
              std::vector<int>({c.accidental, c.accidentalSign, c.keyShift})) << c.note;
    EXPECT_EQ(s.entryLeft, 136 + 32);
  }
  // With an eighth-note button the fingerboard still steps 32; a rest from it keeps the
  // pitch as its line and steps by the button's spacing.
  Staff s;
  EntryState e;
  ChooseLength(s, e, {}, 8);
  EnterPlayedNote(s, e, 60, 0);
  EnterPlayedNote(s, e, 62, 0);
  EXPECT_EQ(s.notes[2].left - s.notes[1].left, 32);
  ChooseLength(s, e, {}, 24);
  EnterPlayedNote(s, e, 67, 0);
  EXPECT_EQ(s.notes[3].linePitch, 67);
  EXPECT_EQ(s.notes[3].top, 111);
  EXPECT_EQ(s.entryLeft, s.notes[3].left + 16);
}
