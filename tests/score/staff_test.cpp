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

TEST(ChangeKestra, PlacesFourTokensABarWithTheBarGapBehindEach) {
  Staff s;
  ChangeKestra(s, "C498 D498 E498 F498 G498");
  ASSERT_EQ(s.NoteCount(), 5);
  const int lefts[] = {128, 160, 192, 224, 272};
  for (int i = 1; i <= 5; ++i) EXPECT_EQ(s.icv[i].left, lefts[i - 1]) << i;
  EXPECT_EQ(s.icv[1].top, 114);  // C4 two steps above its entry place
  EXPECT_EQ(s.icv[5].top, 102);
  EXPECT_EQ(s.preNote[0], 272 + 32);
  // The template is untouched: hidden at the origin of time.
  EXPECT_EQ(s.icv[0].left, 120);
  EXPECT_EQ(s.icv[0].dr, "4");
}

TEST(ChangeKestra, DropsTokensPastTheLimit) {
  Staff s;
  ChangeKestra(s, Repeat("C498", 200));
  ASSERT_EQ(s.NoteCount(), 192);
  EXPECT_EQ(s.icv[192].left, 6992);
  EXPECT_EQ(s.icv[9].left, 416);
}

TEST(ChangeKestra, RestsAndPictureFamiliesFollowTheKestraRule) {
  Staff s;
  // C6 high (u), A5 (n at 78), C4 (n), G3 (u), E1 (n), a rest.
  ChangeKestra(s, "C694 A594 C494 G394 E194 0008");
  struct Expect {
    int top;
    const char* picture;
  } expect[] = {{72, "u4"}, {78, "n4"}, {114, "n4"}, {123, "u4"}, {171, "n4"}, {106, "r8"}};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(s.icv[i + 1].top, expect[i].top) << i;
    EXPECT_EQ(s.icv[i + 1].backdrop, expect[i].picture) << i;
    EXPECT_FALSE(s.icv[i + 1].position) << "kestra notes keep position false";
  }
  EXPECT_TRUE(s.icv[6].IsRest());
}

TEST(ChangeKestra, ResetsTheKeyAndEmptiesTheStaffButKeepsTheTexts) {
  Staff s;
  s.keyN = 9;
  s.kcvPicture = "F2";
  s.title = "練習";
  ChangeKestra(s, "C498 D498");
  ChangeKestra(s, "E498");
  EXPECT_EQ(s.NoteCount(), 1);
  EXPECT_EQ(s.keyN, 0);
  EXPECT_EQ(s.kcvPicture, "S0");
  EXPECT_EQ(s.title, "練習");
  ChangeKestra(s, "");
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.preNote[0], kFirstColumn);
}

TEST(Clearing, ClearNotesKeepsSignaturesClearNotes2ResetsEverything) {
  Staff s;
  ChangeKestra(s, Repeat("C498", 40));
  s.keyN = 3;
  s.kcvPicture = "S3";
  s.timeN = 2;
  s.tcvPicture = "T3";
  s.title = "曲";
  s.comment = "解説";
  SetMSBValue(s, 720);
  s.noteChanged = true;

  ClearNotes(s);
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.msbValue, 0);
  EXPECT_EQ(s.icv[0].left, 120) << "the template scrolls back with the view";
  EXPECT_EQ(s.preNote[0], 136);
  EXPECT_EQ(s.preCord[0], 0);
  EXPECT_EQ(s.keyN, 3);
  EXPECT_EQ(s.title, "曲");
  EXPECT_FALSE(s.noteChanged);

  s.noteChanged = true;
  ClearNotes2(s);
  EXPECT_EQ(s.keyN, 0);
  EXPECT_EQ(s.kcvPicture, "S0");
  EXPECT_EQ(s.timeN, 0);
  EXPECT_EQ(s.tcvPicture, "T4");
  EXPECT_EQ(s.mcvBackdrop, "Sheet1");
  EXPECT_EQ(s.title, "");
  EXPECT_EQ(s.comment, "");
  EXPECT_FALSE(s.noteChanged);
}

TEST(Scrolling, CutsToWholeBarsAndMovesNotesCursorAndBar) {
  Staff s;
  ChangeKestra(s, "C498 D498 E498 F498 G498");
  s.preCord[0] = 3;
  SetMSBValue(s, 150);
  EXPECT_EQ(s.msbValue, 144);
  EXPECT_EQ(s.oldSBValue[0], 144);
  EXPECT_EQ(s.icv[1].left, 128 - 144);
  EXPECT_EQ(s.icv[0].left, 120 - 144);
  EXPECT_EQ(s.preNote[0], 304 - 144);
  EXPECT_EQ(s.preCord[0], 2);
  EXPECT_EQ(s.preCord[1], -1) << "the copied bar follows the view";

  // A page turn: 840 more is cut to five bars.
  SetMSBValue(s, s.msbValue + 840);
  EXPECT_EQ(s.msbValue, 864);
  EXPECT_EQ(s.icv[5].left, 272 - 864);

  SetMSBValue(s, 0);
  EXPECT_EQ(s.icv[5].left, 272);
  EXPECT_EQ(s.preNote[0], 304);
  EXPECT_EQ(s.preCord[0], 3);

  SetMSBValue(s, 99999);
  EXPECT_EQ(s.msbValue, kMsbMaximum);
  SetMSBValue(s, -5);
  EXPECT_EQ(s.msbValue, 0);
  EXPECT_EQ(s.icv[1].left, 128);
}

TEST(Scrolling, SameValueChangesNothing) {
  Staff s;
  s.preCord[0] = 2;
  s.preCord[1] = 5;
  SetMSBValue(s, 0);
  EXPECT_EQ(s.preCord[0], 2);
  EXPECT_EQ(s.preCord[1], 5);
}

TEST(NoteChanged, CountsAsChangedFromTheFifthNote) {
  Staff s;
  ChangeKestra(s, Repeat("C498", 4));
  noteChangedCheck(s);
  EXPECT_FALSE(s.noteChanged);
  ChangeKestra(s, Repeat("C498", 5));
  noteChangedCheck(s);
  EXPECT_TRUE(s.noteChanged);
  SetTitle(s, "x");
  s.noteChanged = false;
  SetTitle(s, "x");
  EXPECT_FALSE(s.noteChanged) << "setting the same text is no change";
  SetComment(s, "y");
  EXPECT_TRUE(s.noteChanged);
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
  NoteCV a, b;
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
  NoteCV low;
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
  EXPECT_TRUE(InViewBar(120, 0));
  EXPECT_TRUE(InViewBar(263, 0));
  EXPECT_FALSE(InViewBar(264, 0));
  EXPECT_TRUE(InViewBar(264, 1));
  EXPECT_TRUE(InViewBar(960, 5));
  Staff s;
  ChangeKestra(s, "C498 D498 E498");
  s.RemoveNote(2);
  ASSERT_EQ(s.NoteCount(), 2);
  EXPECT_EQ(s.icv[2].note, "E498");
  s.RemoveNote(0);  // the template is never removed
  s.RemoveNote(7);
  EXPECT_EQ(s.NoteCount(), 2);
  EXPECT_EQ(s.icv[0].left, 120);
}

TEST(Paint, OnlyNotesInViewRebuildTheirTokens) {
  Staff s;
  std::string line = "0008";
  for (int i = 1; i < 30; ++i) line += " 0008";
  ChangeKestra(s, line);
  RepaintInView(s);
  EXPECT_EQ(s.icv[1].note, "C408");
  EXPECT_EQ(s.icv[24].note, "C408");   // Left 944, the last bar in view
  EXPECT_EQ(s.icv[25].note, "0008");   // Left 992, out of view until scrolled to
  SetMSBValue(s, 144);
  RepaintInView(s);
  EXPECT_EQ(s.icv[25].note, "C408");
  EXPECT_EQ(s.icv[0].note, "C494") << "the hidden template is never painted";
}
