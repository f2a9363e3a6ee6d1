// A note's own gestures: drag and drop to a new pitch and place, deletion, hover sound.
#include <gtest/gtest.h>

#include "editor/note_gestures.h"
#include "violin/fakes.h"
#include "score/note_tables.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

Staff OneNote(const char* token, int left, int top, int keySignature = 0) {
  Staff s;
  s.keySignature = keySignature;
  Note n;
  FillFromToken(n, token);
  n.keyShift = KeySignatureShift(keySignature, n.linePitch);
  RespellToken(n);
  n.left = left;
  n.top = top;
  s.AddNote(n);
  return s;
}

// Press at (5, 18) inside the note, drag by (dx, dy), release.
void Drag(Staff& s, int index, int dx, int dy, long long ticks, const SoundPorts& ports, const TuningTables& t) {
  ASSERT_EQ(NoteMouseDown(s, index, ticks, false, 5, 18), PressResult::Claimed);
  NoteMouseDrag(s, index, ticks + 2, 5 + dx, 18 + dy, ports, t);
  NoteMouseUp(s, index, ports, t);
}

}  // namespace

TEST(NoteDrop, SnapsAndReadsThePitchOfItsNewLine) {
  TuningTables tuning;
  TuneToKey(tuning, 0);
  struct Case {
    const char* name;
    const char* token;
    int keySignature, accidentalSign, left, top, dx, dy;
    int wantLeft, wantTop, wantNoteNo;
    const char* wantToken;
    const char* wantPicture;
  } cases[] = {
      {"onto middle C", "E498", 0, 0, 304, 114, 1, 5, 304, 120, 60, "C498", "n8"},
      {"onto the bar gap left", "C498", 0, 0, 240, 120, 8, 0, 240, 120, 60, "C498", "n8"},
      {"onto the bar gap right", "C498", 0, 0, 240, 120, 16, 0, 264, 120, 60, "C498", "n8"},
      {"far right", "C498", 0, 0, 900, 120, 400, 0, 960, 120, 60, "C498", "n8"},
      {"far left", "C498", 0, 0, 200, 120, -400, 0, 120, 120, 60, "C498", "n8"},
      {"G major line 65 is F sharp", "C498", 1, 0, 304, 120, 0, -9, 304, 111, 66, "F4#98", "n8"},
      {"a natural cancels the signature", "C498", 1, 3, 304, 120, 0, -9, 304, 111, 65, "F498", "n8"},
      {"F major B flat from the key spells A sharp", "C498", 8, 0, 304, 120, 0, -18, 304, 102, 70, "A4#98", "n8"},
      {"a flat sign travels with the note", "E4b98", 0, 2, 304, 114, 0, -12, 304, 102, 70, "B4b98", "n8"},
      {"above the staff clamps", "C498", 0, 0, 304, 120, 0, -200, 304, 57, 96, "C798", "u8"},
      {"high u family", "C498", 0, 0, 304, 120, 0, -42, 304, 78, 84, "C698", "u8"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Staff s = OneNote(c.token, c.left, c.top, c.keySignature);
    s.notes[1].accidentalSign = c.accidentalSign;
    FakeSound rig;
    Drag(s, 1, c.dx, c.dy, 1000, rig.ports, tuning);
    const Note& n = s.notes[1];
    EXPECT_EQ(n.left, c.wantLeft);
    EXPECT_EQ(n.top, c.wantTop);
    EXPECT_EQ(n.pitch, c.wantNoteNo);
    EXPECT_EQ(n.token, c.wantToken);
    EXPECT_EQ(n.picture, c.wantPicture);
    EXPECT_EQ(n.stemDown, c.wantPicture[0] == 'u');
    EXPECT_EQ(s.entryLeft, c.wantLeft + 32);
    EXPECT_EQ(s.entryTop, c.wantTop);
  }
}

TEST(NoteDrop, OntoAnotherNoteMovesDownAndRestsKeepTheirRows) {
  TuningTables tuning;
  TuneToKey(tuning, 0);
  FakeSound rig;
  Staff s = OneNote("C498", 304, 120);
  Note other;
  FillFromToken(other, "E498");
  other.left = 400;
  other.top = 114;
  s.AddNote(other);
  Drag(s, 2, -96, 6, 1000, rig.ports, tuning);
  EXPECT_EQ(s.notes[2].left, 304);
  EXPECT_EQ(s.notes[2].top, 126);
  EXPECT_EQ(s.notes[2].pitch, 57) << "its pitch comes from where it ends";

  Staff r = OneNote("0008", 300, 111);
  const std::string token = r.notes[1].token;
  Drag(r, 1, 3, 40, 1000, rig.ports, tuning);
  EXPECT_EQ(r.notes[1].top, 147);
  EXPECT_EQ(r.notes[1].token, token) << "a rest's token does not change";
  EXPECT_EQ(r.entryLeft, 300) << "the press put the entry column, the drop leaves it";
}

TEST(NotePress, DoubleClickDeletesBackspaceDeletesTwoNotesAreNoDoubleClick) {
  Staff s = OneNote("C498", 300, 120);
  Note second = s.notes[1];
  second.left = 400;
  s.AddNote(second);
  EXPECT_EQ(NoteMouseDown(s, 1, 1000, false, 1, 1), PressResult::Claimed);
  EXPECT_EQ(NoteMouseDown(s, 2, 1010, false, 1, 1), PressResult::Claimed) << "another note: no double click";
  EXPECT_EQ(NoteMouseDown(s, 1, 1029, false, 1, 1), PressResult::Deleted);
  EXPECT_EQ(s.NoteCount(), 1);
  EXPECT_EQ(s.entryLeft, 300) << "the next entry replaces it in time";
  EXPECT_EQ(NoteMouseDown(s, 1, 1100, true, 1, 1), PressResult::Contextual);
  EXPECT_FALSE(NoteKeyDown(s, 1, 'a'));
  EXPECT_TRUE(NoteKeyDown(s, 1, 8));
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_FALSE(NoteKeyDown(s, 1, 8)) << "a note that is gone takes no key";
}

TEST(NoteHover, HoverDragAndDropLeaveNothingSounding) {
  TuningTables tuning;
  TuneToKey(tuning, 0);
  FakeSound rig;
  Staff s = OneNote("C498", 300, 120);
  FakePlayer& np1 = rig.players[1];

  // Hover, long press without moving (the sound stops), drag, drop, leave.
  NoteMouseEnter(s, 1, rig.ports, tuning, 0);
  ASSERT_EQ(np1.notes.size(), 1u);
  EXPECT_EQ(np1.notes[0], std::make_pair(static_cast<int>(tuning.pitches[60]), 75));
  NoteMouseDown(s, 1, 1000, false, 5, 18);
  NoteMouseDrag(s, 1, 1040, 5, 18, rig.ports, tuning);
  EXPECT_EQ(np1.notes.back(), std::make_pair(static_cast<int>(tuning.pitches[60]), 0));
  NoteMouseDrag(s, 1, 1041, 5, 30, rig.ports, tuning);
  NoteMouseUp(s, 1, rig.ports, tuning);
  NoteMouseExit(s, 1, rig.ports, tuning, 0);
  EXPECT_TRUE(np1.StillSounding().empty());
  EXPECT_TRUE(rig.players[0].notes.empty()) << "hover plays on the score's player only";
  // The finger was shown and taken away again in first position (C4: G string, cell 5).
  EXPECT_EQ(rig.Fingerboard().front(), "G 4/5");
  EXPECT_EQ(rig.Fingerboard().back(), "GF 4/5");

  // A quick drag and drop after hovering: the drop stops the old pitch, the exit too.
  Staff t = OneNote("E498", 300, 114);
  FakeSound rig2;
  NoteMouseEnter(t, 1, rig2.ports, tuning, 0);
  Drag(t, 1, 0, 30, 2000, rig2.ports, tuning);
  NoteMouseExit(t, 1, rig2.ports, tuning, 0);
  EXPECT_TRUE(rig2.players[1].StillSounding().empty());
  // A rest is silent.
  Staff r = OneNote("0008", 300, 111);
  FakeSound rig3;
  NoteMouseEnter(r, 1, rig3.ports, tuning, 0);
  EXPECT_TRUE(rig3.players[1].notes.empty());
}
