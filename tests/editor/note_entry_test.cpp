// Notes entered by double click and by the fingerboard, then dragged, dropped, deleted, hovered.
#include <gtest/gtest.h>

#include "editor/note_entry.h"
#include "editor/note_gestures.h"
#include "score/note_tables.h"
#include "violin/fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

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
         " " + n.picture;
}
Staff OneNote(const char* token, int left, int top) {
  Staff s;
  Note& n = s.AddNote(Note{});
  FillFromToken(n, token);
  n.left = left;
  n.top = top;
  return s;
}
struct Gestures : ::testing::Test {
  TuningTables tuning;
  FakeSound rig;
  Gestures() { TuneToKey(tuning, 0); }
  // Press at (5, 18) inside the note, drag by (dx, dy), release.
  void Drag(Staff& s, int index, int dx, int dy, long long ticks) {
    ASSERT_EQ(NoteMouseDown(s, index, ticks, false, 5, 18), PressResult::Claimed);
    NoteMouseDrag(s, index, ticks + 2, 5 + dx, 18 + dy, rig.ports, tuning);
    NoteMouseUp(s, index, rig.ports, tuning);
  }
};
}  // namespace

// Snapped to the grid, clear of bar lines and ends, moved down past a note already there.
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
    EXPECT_EQ(s.notes.back().stemDown, false) << "entry leaves position alone";
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

TEST(NoteEntry, RestsTakeTheirOwnRowAndStepDownEighteen) {
  Staff s;
  EntryState e;
  ChooseLength(s, e, {}, 20);  // crotchet rest
  long long t = 0;
  for (int y : {60, 60, 100}) DoubleClick(s, e, t, 20, y);
  EXPECT_EQ(Show(s.notes[1]), "136,111 0 0004 r4");
  EXPECT_EQ(std::vector<int>({s.notes[2].top, s.notes[3].top}), std::vector<int>({129, 147}));
}

// A pitch played on the fingerboard is entered as played where no key acts on its line.
TEST(NoteEntry, TheFingerboardKeepsThePitchPlayedAndTheSignatureWins) {
  for (auto [key, pitch, sign, note] : {std::tuple{1, 65, 0, "136,111 66 F4#98 n8 sign 0"}, {1, 65, 1, "136,111 66 F4#98 n8 sign 0"},
                                        {0, 98, 0, "136,57 98 D798 u8 sign 0"}, {0, 60, 1, "136,120 61 C4#98 n8 sign 1"}}) {
    Staff s;
    s.keySignature = key;
    EntryState e;
    ChooseLength(s, e, {}, 8);
    EnterPlayedNote(s, e, pitch, sign);
    EXPECT_EQ(Show(s.notes[1]) + " sign " + std::to_string(s.notes[1].accidentalSign), note);
    EXPECT_EQ(s.entryLeft, 136 + 32) << "the fingerboard steps 32 whatever the length";
  }
}

// A drop snaps and reads the pitch of its new line under the key, with the note's own sign.
TEST_F(Gestures, DropSnapsAndReadsThePitchOfItsNewLine) {
  const struct {
    const char* token;
    int keySignature, accidentalSign, left, top, dx, dy;
    const char* after;
  } cases[] = {
      {"E498", 0, 0, 304, 114, 1, 5, "304,120 60 C498 n8"},
      {"C498", 0, 0, 900, 120, 400, 0, "960,120 60 C498 n8"},
      {"C498", 1, 0, 304, 120, 0, -9, "304,111 66 F4#98 n8"},    // G major: F's line sounds F sharp
      {"C498", 1, 3, 304, 120, 0, -9, "304,111 65 F498 n8"},     // a natural cancels the key
      {"C498", 8, 0, 304, 120, 0, -18, "304,102 70 A4#98 n8"},   // F major's B flat spelled A sharp
      {"E4b98", 0, 2, 304, 114, 0, -12, "304,102 70 B4b98 n8"},  // a flat travels with the note
      {"C498", 0, 0, 304, 120, 0, -42, "304,78 84 C698 u8"},
  };
  for (const auto& c : cases) {
    Staff s = OneNote(c.token, c.left, c.top);
    s.keySignature = c.keySignature;
    s.notes[1].accidentalSign = c.accidentalSign;
    Drag(s, 1, c.dx, c.dy, 1000);
    EXPECT_EQ(Show(s.notes[1]), c.after);
    EXPECT_EQ(s.notes[1].stemDown, c.after[std::string(c.after).size() - 2] == 'u') << c.after;
    EXPECT_EQ(s.entryLeft, s.notes[1].left + 32);
    EXPECT_EQ(s.entryTop, s.notes[1].top);
  }
  Staff s = OneNote("C498", 304, 120);
  s.AddNote(OneNote("E498", 400, 114).notes[1]);
  Drag(s, 2, -96, 6, 1000);
  EXPECT_EQ(Show(s.notes[2]), "304,126 57 A398 u8") << "onto another note: moved down, pitch from where it ends";
  Staff r = OneNote("0008", 300, 111);
  Drag(r, 1, 3, 40, 1000);
  EXPECT_EQ(Show(r.notes[1]), "304,147 60 0008 ") << "a rest keeps its token";
  EXPECT_EQ(r.entryLeft, 300) << "the press put the entry column, the drop leaves it";
}

TEST(NotePress, DoubleClickDeletesBackspaceDeletesTwoNotesAreNoDoubleClick) {
  Staff s = OneNote("C498", 300, 120);
  s.AddNote(OneNote("C498", 400, 120).notes[1]);
  EXPECT_EQ(NoteMouseDown(s, 1, 1000, false, 1, 1), PressResult::Claimed);
  EXPECT_EQ(NoteMouseDown(s, 2, 1010, false, 1, 1), PressResult::Claimed) << "another note: no double click";
  EXPECT_EQ(NoteMouseDown(s, 1, 1029, false, 1, 1), PressResult::Deleted);
  EXPECT_EQ(s.NoteCount(), 1);
  EXPECT_EQ(s.entryLeft, 300) << "the next entry replaces it in time";
  EXPECT_EQ(NoteMouseDown(s, 1, 1100, true, 1, 1), PressResult::Contextual);
  EXPECT_FALSE(NoteKeyDown(s, 1, 'a'));
  EXPECT_TRUE(NoteKeyDown(s, 1, 8));
  EXPECT_FALSE(NoteKeyDown(s, 1, 8)) << "a note that is gone takes no key";
}

// Hover, a long press (the sound stops), drag, drop, leave; then a quick drag after hovering.
TEST_F(Gestures, HoverDragAndDropLeaveNothingSounding) {
  Staff s = OneNote("C498", 300, 120);
  NoteMouseEnter(s, 1, rig.ports, tuning, 0);
  const int c4 = static_cast<int>(tuning.pitches[60]);
  EXPECT_EQ(rig.players[1].notes, (std::vector<std::pair<int, int>>{{c4, 75}}));
  NoteMouseDown(s, 1, 1000, false, 5, 18);
  NoteMouseDrag(s, 1, 1040, 5, 18, rig.ports, tuning);
  EXPECT_EQ(rig.players[1].notes.back(), std::make_pair(c4, 0));
  NoteMouseDrag(s, 1, 1041, 5, 30, rig.ports, tuning);
  NoteMouseUp(s, 1, rig.ports, tuning);
  NoteMouseExit(s, 1, rig.ports, tuning, 0);
  EXPECT_TRUE(rig.players[1].StillSounding().empty());
  EXPECT_EQ(rig.Fingerboard().front(), "G 4/5");
  EXPECT_EQ(rig.Fingerboard().back(), "GF 4/5");
  Staff t = OneNote("E498", 300, 114);
  NoteMouseEnter(t, 1, rig.ports, tuning, 0);
  Drag(t, 1, 0, 30, 2000);
  NoteMouseExit(t, 1, rig.ports, tuning, 0);
  EXPECT_TRUE(rig.players[1].StillSounding().empty());
  EXPECT_TRUE(rig.players[0].notes.empty()) << "hover plays on the score's player only";
}
