// Notes entered by double click and by the fingerboard, then dragged, dropped, deleted, hovered.
#include "editor/note_gestures.h"
#include "editor_fixture.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {
struct NoteEntry : Editor {
  // Press at (5, 18) inside the note, drag by (dx, dy), release.
  void Drag(Staff& s, int index, int dx, int dy) {
    ASSERT_EQ(NoteMouseDown(s, index, ticks += 100, false, 5, 18), PressResult::Claimed);
    NoteMouseDrag(s, index, ticks + 2, 5 + dx, 18 + dy, rig.ports, tuning);
    NoteMouseUp(s, index, rig.ports, tuning);
  }
};
}  // namespace

// Grid, bar lines, ends, clashes; then crotchet rests on their own row, a second one 18 lower.
TEST_F(NoteEntry, DoubleClicksPlaceNotesOnTheGrid) {
  const struct {
    int x, y;
    const char* note;
  } clicks[] = {
      {20, 78, "136,120 60 C494 n4"},   {52, 72, "168,114 64 E494 n4"},   {84, 36, "200,78 84 C694 u4"},
      {116, 99, "232,141 48 C394 u4"},  {132, 78, "240,120 60 C494 n4"},  {140, 78, "264,120 60 C494 n4"},
      {860, 78, "960,120 60 C494 n4"},  {852, 78, "968,120 60 C494 n4"},  {300, -20, "416,57 96 C794 u4"},
      {300, 180, "416,162 36 C294 n4"}, {300, 180, "416,162 36 C294 n4"}, {4, 75, "120,123 59 B394 u4"},
      {500, 60, "616,102 71 B494 n4"},  {500, 60, "616,108 67 G494 n4"},  {500, 60, "616,114 64 E494 n4"},
      {20, 60, "136,111 0 0004 r4"},    {20, 60, "136,129 0 0004 r4"},    {60, 100, "176,147 0 0004 r4"},
  };
  for (const auto& c : clicks) {
    if (&c == &clicks[15]) ChooseLength(staff, entry, modes, 20);
    ASSERT_TRUE(DoubleClick(c.x, c.y));
    EXPECT_EQ(Show(staff.notes.back()), c.note) << c.x << "," << c.y;
    EXPECT_EQ(std::pair(staff.entryLeft, staff.entryTop), std::pair(staff.notes.back().left + 32, staff.notes.back().top));
  }
}

TEST_F(NoteEntry, DoubleClickWindowGuardsAndBarSelection) {
  EXPECT_FALSE(EnterNoteAt(staff, entry, {}, {}, 1000, 300, 78));
  EXPECT_EQ(staff.selectedBar, 2);
  EXPECT_TRUE(EnterNoteAt(staff, entry, {}, {}, 1029, 300, 78)) << "29 ticks is a double click";
  EXPECT_TRUE(EnterNoteAt(staff, entry, {}, {}, 1029, 340, 78)) << "every click within the window makes a note";
  EXPECT_FALSE(EnterNoteAt(staff, entry, {}, {}, 1030, 380, 78)) << "30 ticks is not";
  EXPECT_FALSE(EnterNoteAt(staff, entry, {}, Modifiers{.shift = true}, 1032, 20, 78));
  EXPECT_EQ(std::pair(staff.NoteCount(), staff.selectedBar), std::pair(2, 2)) << "guarded presses change nothing";
  PressRightOfStaff(entry, 1500);
  EXPECT_TRUE(EnterNoteAt(staff, entry, {}, {}, 1510, 20, 78)) << "a press at the right end starts a double click";
}

// Played pitches are entered as played where no key acts on their line, 32 apart at any length.
TEST_F(NoteEntry, TheFingerboardKeepsThePitchPlayedAndTheSignatureWins) {
  ChooseLength(staff, entry, modes, 8);
  for (auto [key, pitch, sign, note] : {std::tuple{1, 65, 0, "136,111 66 F4#98 n8 0/0"}, {1, 65, 1, "168,111 66 F4#98 n8 0/0"},
                                        {0, 98, 0, "200,57 98 D798 u8 0/0"}, {0, 60, 1, "232,120 61 C4#98 n8 1/1"}}) {
    staff.keySignature = key;
    EnterPlayedNote(staff, entry, pitch, sign);
    EXPECT_EQ(Show(staff.notes.back(), true), note);
  }
}

// A drop snaps and reads the pitch of its new line under the key, with the note's own sign.
TEST_F(NoteEntry, DropSnapsAndReadsThePitchOfItsNewLine) {
  const struct {
    const char* token;
    int keySignature, accidentalSign, top, dx, dy;
    const char* after;
  } cases[] = {
      {"E498", 0, 0, 114, 1, 5, "304,120 60 C498 n8"},
      {"C498", 0, 0, 120, 800, 0, "960,120 60 C498 n8"},
      {"C498", 1, 0, 120, 0, -9, "304,111 66 F4#98 n8"},    // G major: F's line sounds F sharp
      {"C498", 1, 3, 120, 0, -9, "304,111 65 F498 n8"},     // a natural cancels the key
      {"C498", 8, 0, 120, 0, -18, "304,102 70 A4#98 n8"},   // F major's B flat spelled A sharp
      {"E4b98", 0, 2, 114, 0, -12, "304,102 70 B4b98 n8"},  // a flat travels with the note
      {"C498", 0, 0, 120, 0, -42, "304,78 84 C698 u8"},
  };
  for (const auto& c : cases) {
    Staff s = StaffOf({Made(c.token, c.top)});
    s.keySignature = c.keySignature;
    s.notes[1].accidentalSign = c.accidentalSign;
    Drag(s, 1, c.dx, c.dy);
    EXPECT_EQ(Show(s.notes[1]), c.after);
    EXPECT_EQ(s.notes[1].stemDown, c.after[std::string(c.after).size() - 2] == 'u') << c.after;
    EXPECT_EQ(std::pair(s.entryLeft, s.entryTop), std::pair(s.notes[1].left + 32, s.notes[1].top));
  }
  Staff s = StaffOf({Made("C498", 120), Made("E498", 114, 400)});
  Drag(s, 2, -96, 6);
  EXPECT_EQ(Show(s.notes[2]), "304,126 57 A398 u8") << "onto another note: moved down, pitch from where it ends";
  Staff r = StaffOf({Made("0008", 111, 300)});
  Drag(r, 1, 3, 40);
  EXPECT_EQ(Show(r.notes[1]), "304,147 60 C408 r8") << "a rest keeps its token";
  EXPECT_EQ(r.entryLeft, 300) << "the press put the entry column, the drop leaves it";
}

TEST_F(NoteEntry, DoubleClickDeletesBackspaceDeletesTwoNotesAreNoDoubleClick) {
  staff = StaffOf({Made("C498", 120, 300), Made("C498", 120, 400)});
  EXPECT_EQ(NoteMouseDown(staff, 1, 1000, false, 1, 1), PressResult::Claimed);
  EXPECT_EQ(NoteMouseDown(staff, 2, 1010, false, 1, 1), PressResult::Claimed) << "another note: no double click";
  EXPECT_EQ(NoteMouseDown(staff, 1, 1029, false, 1, 1), PressResult::Deleted);
  EXPECT_EQ(std::pair(staff.NoteCount(), staff.entryLeft), std::pair(1, 300)) << "the next entry replaces it in time";
  EXPECT_EQ(NoteMouseDown(staff, 1, 1100, true, 1, 1), PressResult::Contextual);
  EXPECT_TRUE(NoteKeyDown(staff, 1, 8));
  EXPECT_FALSE(NoteKeyDown(staff, 1, 8)) << "a note that is gone takes no key";
}

// Hover, a long press (the sound stops), drag, drop, leave.
TEST_F(NoteEntry, HoverDragAndDropLeaveNothingSounding) {
  staff = StaffOf({Made("C498", 120, 300)});
  NoteMouseEnter(staff, 1, rig.ports, tuning, 0);
  EXPECT_EQ(rig.players[1].notes, (std::vector<std::pair<int, int>>{{P(60), 75}}));
  NoteMouseDown(staff, 1, 1000, false, 5, 18);
  NoteMouseDrag(staff, 1, 1040, 5, 18, rig.ports, tuning);
  EXPECT_EQ(rig.players[1].notes.back(), std::make_pair(P(60), 0));
  NoteMouseDrag(staff, 1, 1041, 5, 30, rig.ports, tuning);
  NoteMouseUp(staff, 1, rig.ports, tuning);
  NoteMouseExit(staff, 1, rig.ports, tuning, 0);
  EXPECT_TRUE(rig.players[1].StillSounding().empty());
  EXPECT_EQ(rig.Fingerboard().front() + " " + rig.Fingerboard().back(), "G 4/5 GF 4/5") << "the finger comes and goes";
  EXPECT_TRUE(rig.players[0].notes.empty()) << "hover plays on the score's player only";
}
