// The staff: kestra lines, clearing, scrolling, and the grid rules entry relies on.
#include <gtest/gtest.h>

#include <string>

#include "score/note_tables.h"
#include "score/staff.h"

using namespace lirenza;

namespace {
std::string Repeat(const std::string& token, int n) {
  std::string line;
  for (int i = 0; i < n; ++i) line += (i ? " " : "") + token;
  return line;
}
}  // namespace

TEST(LoadKestraLine, PlacesFourTokensABarWithTheBarGapBehindEach) {
  Staff s;
  LoadKestraLine(s, "C498 D498 E498 F498 G498");
  ASSERT_EQ(s.NoteCount(), 5);
  const int lefts[] = {128, 160, 192, 224, 272};
  for (int i = 1; i <= 5; ++i) EXPECT_EQ(s.notes[i].left, lefts[i - 1]) << i;
  EXPECT_EQ(s.notes[1].top, 114);  // C4 two steps above its entry place
  EXPECT_EQ(s.notes[5].top, 102);
  EXPECT_EQ(s.entryLeft, 272 + 32);
  // The template is untouched: hidden at the origin of time.
  EXPECT_EQ(s.notes[0].left, 120);
  EXPECT_EQ(s.notes[0].durationDigit, "4");
}

TEST(LoadKestraLine, DropsTokensPastTheLimit) {
  Staff s;
  LoadKestraLine(s, Repeat("C498", 200));
  ASSERT_EQ(s.NoteCount(), 192);
  EXPECT_EQ(s.notes[192].left, 6992);
  EXPECT_EQ(s.notes[9].left, 416);
}

TEST(LoadKestraLine, RestsAndPictureFamiliesFollowTheKestraRule) {
  Staff s;
  // C6 high (u), A5 (n at 78), C4 (n), G3 (u), E1 (n), a rest.
  LoadKestraLine(s, "C694 A594 C494 G394 E194 0008");
  struct Expect {
    int top;
    const char* picture;
  } expect[] = {{72, "u4"}, {78, "n4"}, {114, "n4"}, {123, "u4"}, {171, "n4"}, {106, "r8"}};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(s.notes[i + 1].top, expect[i].top) << i;
    EXPECT_EQ(s.notes[i + 1].picture, expect[i].picture) << i;
    EXPECT_FALSE(s.notes[i + 1].stemDown) << "kestra notes keep position false";
  }
  EXPECT_TRUE(s.notes[6].IsRest());
}

TEST(LoadKestraLine, ResetsTheKeyAndEmptiesTheStaffButKeepsTheTexts) {
  Staff s;
  s.keySignature = 9;
  s.keySignaturePicture = "F2";
  s.title = "練習";
  LoadKestraLine(s, "C498 D498");
  LoadKestraLine(s, "E498");
  EXPECT_EQ(s.NoteCount(), 1);
  EXPECT_EQ(s.keySignature, 0);
  EXPECT_EQ(s.keySignaturePicture, "S0");
  EXPECT_EQ(s.title, "練習");
  LoadKestraLine(s, "");
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.entryLeft, kFirstColumn);
}

TEST(Clearing, ClearNotesKeepsSignaturesClearNotes2ResetsEverything) {
  Staff s;
  LoadKestraLine(s, Repeat("C498", 40));
  s.keySignature = 3;
  s.keySignaturePicture = "S3";
  s.timeSignature = 2;
  s.timeSignaturePicture = "T3";
  s.title = "曲";
  s.comment = "解説";
  ScrollTo(s, 720);
  s.hasChanges = true;

  ClearStaff(s);
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.scrollValue, 0);
  EXPECT_EQ(s.notes[0].left, 120) << "the template scrolls back with the view";
  EXPECT_EQ(s.entryLeft, 136);
  EXPECT_EQ(s.selectedBar, 0);
  EXPECT_EQ(s.keySignature, 3);
  EXPECT_EQ(s.title, "曲");
  EXPECT_FALSE(s.hasChanges);

  s.hasChanges = true;
  ClearScore(s);
  EXPECT_EQ(s.keySignature, 0);
  EXPECT_EQ(s.keySignaturePicture, "S0");
  EXPECT_EQ(s.timeSignature, 0);
  EXPECT_EQ(s.timeSignaturePicture, "T4");
  EXPECT_EQ(s.sheetPicture, "Sheet1");
  EXPECT_EQ(s.title, "");
  EXPECT_EQ(s.comment, "");
  EXPECT_FALSE(s.hasChanges);
}

TEST(Scrolling, CutsToWholeBarsAndMovesNotesCursorAndBar) {
  Staff s;
  LoadKestraLine(s, "C498 D498 E498 F498 G498");
  s.selectedBar = 3;
  ScrollTo(s, 150);
  EXPECT_EQ(s.scrollValue, 144);
  EXPECT_EQ(s.appliedScroll, 144);
  EXPECT_EQ(s.notes[1].left, 128 - 144);
  EXPECT_EQ(s.notes[0].left, 120 - 144);
  EXPECT_EQ(s.entryLeft, 304 - 144);
  EXPECT_EQ(s.selectedBar, 2);
  EXPECT_EQ(s.copiedBar, -1) << "the copied bar follows the view";

  // A page turn: 840 more is cut to five bars.
  ScrollTo(s, s.scrollValue + 840);
  EXPECT_EQ(s.scrollValue, 864);
  EXPECT_EQ(s.notes[5].left, 272 - 864);

  ScrollTo(s, 0);
  EXPECT_EQ(s.notes[5].left, 272);
  EXPECT_EQ(s.entryLeft, 304);
  EXPECT_EQ(s.selectedBar, 3);

  ScrollTo(s, 99999);
  EXPECT_EQ(s.scrollValue, kScrollMaximum);
  ScrollTo(s, -5);
  EXPECT_EQ(s.scrollValue, 0);
  EXPECT_EQ(s.notes[1].left, 128);
}

TEST(Scrolling, SameValueChangesNothing) {
  Staff s;
  s.selectedBar = 2;
  s.copiedBar = 5;
  ScrollTo(s, 0);
  EXPECT_EQ(s.selectedBar, 2);
  EXPECT_EQ(s.copiedBar, 5);
}

TEST(NoteChanged, CountsAsChangedFromTheFifthNote) {
  Staff s;
  LoadKestraLine(s, Repeat("C498", 4));
  UpdateChangedFlag(s);
  EXPECT_FALSE(s.hasChanges);
  LoadKestraLine(s, Repeat("C498", 5));
  UpdateChangedFlag(s);
  EXPECT_TRUE(s.hasChanges);
  SetTitle(s, "x");
  s.hasChanges = false;
  SetTitle(s, "x");
  EXPECT_FALSE(s.hasChanges) << "setting the same text is no change";
  SetComment(s, "y");
  EXPECT_TRUE(s.hasChanges);
}

TEST(Grid, ClickPlaceAndColumnSnap) {
  EXPECT_EQ(ClickColumn(20), 136);
  EXPECT_EQ(ClickColumn(0), 120);   // 14.5 rounds away from zero
  EXPECT_EQ(ClickColumn(-1), 112);
  EXPECT_EQ(ClickRow(78), 120);
  EXPECT_EQ(ClickRow(79), 120);
  EXPECT_EQ(ClickRow(80), 123);
  struct Case {
    int left, last, snapped;
  } cases[] = {
      {100, 968, 120}, {120, 968, 120}, {240, 968, 240}, {248, 968, 240}, {256, 968, 264},
      {392, 968, 384}, {400, 968, 408}, {536, 968, 528}, {544, 968, 552}, {680, 968, 672},
      {688, 968, 696}, {824, 968, 816}, {832, 968, 840}, {960, 968, 960}, {968, 968, 968},
      {976, 968, 960}, {968, 960, 960}, {1200, 960, 960}, {264, 968, 264},
  };
  for (const auto& c : cases) EXPECT_EQ(SnapColumn(c.left, c.last), c.snapped) << c.left << " last " << c.last;
  EXPECT_EQ(ClampNoteTop(10), 57);
  EXPECT_EQ(ClampNoteTop(200), 162);
  EXPECT_EQ(RestRow(122), 111);
  EXPECT_EQ(RestRow(123), 147);
}

TEST(Grid, ClashSearchWalksOnceAndClamps) {
  Staff s;
  Note a, b;
  a.left = b.left = 200;
  b.top = 106;  // entered first
  a.top = 100;
  s.AddNote(b);
  s.AddNote(a);
  // The walk meets b (106) before a (100): pushed to 106 by a, it does not look back.
  EXPECT_EQ(ClashSearch(s, -1, 200, 100, false), 106);
  // Entered the other way round, the walk sees both in turn.
  Staff t;
  t.AddNote(a);
  t.AddNote(b);
  EXPECT_EQ(ClashSearch(t, -1, 200, 100, false), 112);
  // The note itself is skipped, and the bottom row stays the bottom row.
  Note low;
  low.left = 300;
  low.top = 162;
  t.AddNote(low);
  EXPECT_EQ(ClashSearch(t, -1, 300, 162, false), 162);
  EXPECT_EQ(ClashSearch(t, 3, 300, 162, false), 162);
  EXPECT_EQ(ClashSearch(t, -1, 300, 150, false), 150);
  // A rest drops 18 pixels and is not held on the staff.
  EXPECT_EQ(ClashSearch(t, -1, 300, 162, true), 180);
  // The hidden template takes part: a note at its place moves.
  EXPECT_EQ(ClashSearch(t, -1, 120, 117, false), 123);
}

TEST(Grid, BarMembershipAndDenseRemoval) {
  EXPECT_TRUE(InBar(120, 0));
  EXPECT_TRUE(InBar(263, 0));
  EXPECT_FALSE(InBar(264, 0));
  EXPECT_TRUE(InBar(264, 1));
  EXPECT_TRUE(InBar(960, 5));
  Staff s;
  LoadKestraLine(s, "C498 D498 E498");
  s.RemoveNote(2);
  ASSERT_EQ(s.NoteCount(), 2);
  EXPECT_EQ(s.notes[2].token, "E498");
  s.RemoveNote(0);  // the template is never removed
  s.RemoveNote(7);
  EXPECT_EQ(s.NoteCount(), 2);
  EXPECT_EQ(s.notes[0].left, 120);
}

TEST(Paint, OnlyNotesInViewRebuildTheirTokens) {
  Staff s;
  std::string line = "0008";
  for (int i = 1; i < 30; ++i) line += " 0008";
  LoadKestraLine(s, line);
  RespellNotesInView(s);
  EXPECT_EQ(s.notes[1].token, "C408");
  EXPECT_EQ(s.notes[24].token, "C408");   // Left 944, the last bar in view
  EXPECT_EQ(s.notes[25].token, "0008");   // Left 992, out of view until scrolled to
  ScrollTo(s, 144);
  RespellNotesInView(s);
  EXPECT_EQ(s.notes[25].token, "C408");
  EXPECT_EQ(s.notes[0].token, "C494") << "the hidden template is never painted";
}
