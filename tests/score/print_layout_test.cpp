// Where notes land on paper: five bars to a line, ten lines to a sheet, and the sheets a
// score needs, however the staff is scrolled.
#include <gtest/gtest.h>

#include "score/print_layout.h"

namespace lirenza {
namespace {

TEST(PrintLayout, NotesLandFiveBarsToALineAndTenLinesToASheet) {
  struct Case {
    int left, top;
    PaperPlace expected;
  };
  const Case cases[] = {
      {120, 117, {0, 75, 107}},                   // the first column of all
      {136, 117, {0, 91, 107}},                   // where a new score's first note goes
      {840, 117, {0, 75, 215}},                   // five bars on: the second line
      {839, 60, {0, 794, 50}},                    // the last column of the first line
      {120 + 720 * 9, 162, {0, 75, 1124}},        // the tenth line, the lowest row
      {120 + 720 * 10, 117, {1, 75, 107}},        // the eleventh line opens the next sheet
      {120 + 720 * 25 + 300, 90, {2, 375, 620}},  // sheet 3, line 6
      {100, 117, {0, 75, 107}},                   // left of the first bar: kept on the first line
  };
  for (const Case& c : cases) EXPECT_EQ(PlaceOnPaper(c.left, c.top), c.expected) << c.left << "," << c.top;
}

TEST(PrintLayout, TheSheetsFollowTheWholeScoreWhereverTheStaffIsScrolled) {
  Staff staff;
  EXPECT_EQ(SheetCount(NotesOnPaper(staff)), 1);  // an empty score still prints its sheet
  LoadKestraLine(staff, "C594 D594");
  const int firstLeft = staff.notes[1].left;
  staff.notes[2].left = 120 + 720 * 10 + 16;  // sheet 2
  staff.notes[2].accidentalSign = 2;
  ScrollTo(staff, 3 * kBarWidth);
  const auto notes = NotesOnPaper(staff);
  ASSERT_EQ(notes.size(), 2u);
  EXPECT_EQ(notes[0].place, (PaperPlace{0, firstLeft - 120 + 75, staff.notes[1].top - 10}));
  EXPECT_EQ(notes[1].place.sheet, 1);
  EXPECT_EQ(notes[1].signPicture, "Fl");
  EXPECT_EQ(notes[0].picture, staff.notes[1].picture);
  EXPECT_EQ(SheetCount(notes), 2);

  // A note a damaged file put millions of bars away is left out, not printed after
  // thousands of empty sheets.
  staff.notes[2].left = 2000000000;
  int leftOut = 0;
  EXPECT_EQ(SheetCount(NotesOnPaper(staff, &leftOut)), 1);
  EXPECT_EQ(leftOut, 1);
}

}  // namespace
}  // namespace lirenza
