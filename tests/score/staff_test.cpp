// The staff: kestra lines, clearing, scrolling, and the grid rules entry relies on.
#include <gtest/gtest.h>

#include <string>

#include "score/note_tables.h"
#include "score/staff.h"

using namespace lirenza;

namespace {
std::string Repeat(const std::string& token, int n) {
  std::string line = token;
  for (int i = 1; i < n; ++i) line += " " + token;
  return line;
}
}  // namespace

TEST(LoadKestraLine, PlacesFourTokensABarAndDrawsThemByTheKestraRule) {
  Staff s;
  s.keySignature = 9;
  s.title = "練習";
  // C6 high (u), A5 (n at 78), C4 (n), G3 (u), E1 (n), a rest: the fifth token opens bar 2.
  LoadKestraLine(s, "C694 A594 C494 G394 E194 0008");
  const char* expected[] = {"128 72 u4", "160 78 n4", "192 114 n4", "224 123 u4", "272 171 n4", "304 106 r8"};
  ASSERT_EQ(s.NoteCount(), 6);
  for (int i = 1; i <= 6; ++i) {
    const Note& n = s.notes[i];
    EXPECT_EQ(std::to_string(n.left) + " " + std::to_string(n.top) + " " + n.picture, expected[i - 1]);
    EXPECT_FALSE(n.stemDown) << "kestra notes keep position false";
  }
  EXPECT_EQ(s.entryLeft, 304 + 32);
  EXPECT_TRUE(s.notes[0] == Note()) << "the hidden template at the origin of time is untouched";
  EXPECT_EQ(s.keySignaturePicture, "S0") << "the key is reset";
  EXPECT_EQ(s.title, "練習") << "the texts are kept";
  LoadKestraLine(s, Repeat("C498", 200));
  ASSERT_EQ(s.NoteCount(), 192) << "tokens past the last place are dropped";
  EXPECT_EQ(s.notes[192].left, 6992);
}

TEST(Staff, ScrollingCutsToWholeBarsMovesEverythingAndClearingScrollsBack) {
  Staff s;
  LoadKestraLine(s, "C498 D498 E498 F498 G498");
  s.selectedBar = 3;
  ScrollTo(s, 150);
  EXPECT_EQ(std::tuple(s.scrollValue, s.notes[0].left, s.notes[1].left, s.entryLeft), std::tuple(144, -24, -16, 160));
  EXPECT_EQ(std::pair(s.selectedBar, s.copiedBar), std::pair(2, -1)) << "the bars follow the view";
  ScrollTo(s, s.scrollValue + 840);  // a page turn is cut to five bars
  EXPECT_EQ(s.notes[5].left, 272 - 864);
  ScrollTo(s, 0);
  EXPECT_EQ(std::tuple(s.notes[5].left, s.entryLeft, s.selectedBar), std::tuple(272, 304, 3));
  ScrollTo(s, 99999);
  EXPECT_EQ(s.scrollValue, kScrollMaximum);
  ScrollTo(s, -5);
  EXPECT_EQ(s.notes[1].left, 128);
  // Only the view reads the tokens: notes out of it keep theirs until scrolled to.
  LoadKestraLine(s, Repeat("0008", 30));
  RespellNotesInView(s);
  EXPECT_EQ(s.notes[24].token + s.notes[25].token, "C4080008");  // 944 is in the last bar in view, 992 not
  ScrollTo(s, 144);
  RespellNotesInView(s);
  EXPECT_EQ(s.notes[25].token + s.notes[0].token, "C408C494") << "the hidden template is never painted";
  // Clearing scrolls back, with the template, and leaves nothing to save.
  s.hasChanges = true;
  ClearStaff(s);
  EXPECT_EQ(std::tuple(s.notes[0].left, s.scrollValue, s.entryLeft, s.NoteCount(), s.hasChanges),
            std::tuple(120, 0, 136, 0, false));
  s.keySignaturePicture = "S3";
  ClearScore(s);
  EXPECT_EQ(s.keySignaturePicture + s.timeSignaturePicture + s.sheetPicture, "S0T4Sheet1");
}

TEST(Staff, ChangedFromTheFifthNoteOrANewText) {
  Staff s;
  for (int count : {4, 5}) {
    LoadKestraLine(s, Repeat("C498", count));
    UpdateChangedFlag(s);
    EXPECT_EQ(s.hasChanges, count == 5) << count;
  }
  SetComment(s, "x");
  s.hasChanges = false;
  SetComment(s, "x");
  EXPECT_FALSE(s.hasChanges) << "setting the same text is no change";
  SetTitle(s, "y");
  EXPECT_TRUE(s.hasChanges);
}

TEST(Grid, ClicksSnapToColumnsClearOfBarLines) {
  EXPECT_EQ(ClickColumn(20), 136);
  EXPECT_EQ(ClickColumn(0), 120);  // 14.5 rounds away from zero
  EXPECT_EQ(ClickColumn(-1), 112);
  EXPECT_EQ(ClickRow(79) * 1000 + ClickRow(80), 120123);
  const int snapped[][3] = {{100, 968, 120}, {248, 968, 240}, {256, 968, 264}, {264, 968, 264}, {392, 968, 384},
                            {400, 968, 408}, {960, 968, 960}, {976, 968, 960}, {968, 960, 960}, {1200, 960, 960}};
  for (const auto& c : snapped) EXPECT_EQ(SnapColumn(c[0], c[1]), c[2]) << c[0] << " last " << c[1];
  EXPECT_EQ(ClampNoteTop(10) * 1000 + ClampNoteTop(200), 57162);
  EXPECT_EQ(RestRow(122) * 1000 + RestRow(123), 111147);
  EXPECT_TRUE(InBar(263, 0) && !InBar(264, 0) && InBar(264, 1) && InBar(960, 5));
}

TEST(Grid, ClashSearchWalksTheNotesOnceAndClamps) {
  auto StaffOf = [](std::initializer_list<std::pair<int, int>> leftAndTop) {
    Staff s;
    for (auto [left, top] : leftAndTop) {
      Note& n = s.notes.emplace_back();
      n.left = left;
      n.top = top;
    }
    return s;
  };
  const Staff ba = StaffOf({{200, 106}, {200, 100}}), ab = StaffOf({{200, 100}, {200, 106}, {300, 162}});
  EXPECT_EQ(ClashSearch(ba, -1, 200, 100, false), 106) << "pushed to b by a, the walk does not look back";
  EXPECT_EQ(ClashSearch(ab, -1, 200, 100, false), 112) << "entered the other way round it meets both";
  EXPECT_EQ(ClashSearch(ab, 1, 200, 100, false), 100) << "the note itself is skipped";
  EXPECT_EQ(ClashSearch(ab, -1, 300, 162, false), 162) << "the bottom row stays the bottom row";
  EXPECT_EQ(ClashSearch(ab, -1, 300, 162, true), 180) << "a rest drops 18 pixels";
  EXPECT_EQ(ClashSearch(ab, -1, 120, 117, false), 123) << "the hidden template takes part";
}
