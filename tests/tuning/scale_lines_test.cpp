// The 36 scales of the menu: each must load as a playable line of the same plan.
#include <gtest/gtest.h>

#include <climits>
#include <set>

#include "score/note.h"
#include "score/staff.h"
#include "score/text_fields.h"
#include "tuning/scale_lines.h"

using namespace lirenza;

TEST(ScaleLines, EveryLineRisesAnOctaveAndFallsBackWithRests) {
  for (int i = 0; i < kScaleCount; ++i) {
    SCOPED_TRACE(i);
    const auto tokens = SplitFields(kScaleLines[i].line, " ");
    ASSERT_GE(tokens.size(), 12u);
    EXPECT_LT(tokens.size(), static_cast<std::size_t>(kMaxKestraTokens));
    EXPECT_EQ(tokens.front(), "C498");
    EXPECT_EQ(tokens.back(), "0008");
    std::size_t top = 0;
    while (top < tokens.size() && tokens[top] != "C592") ++top;
    ASSERT_LT(top + 2, tokens.size());
    EXPECT_EQ(tokens[top + 1], "0008");
    EXPECT_EQ(tokens[top + 2], "C598");
    EXPECT_EQ(tokens[tokens.size() - 2], "C492");
    // Strictly rising to the top, strictly falling from it, every running note an eighth.
    int last = 0;
    for (std::size_t k = 0; k <= top; ++k) {
      Note n;
      FillFromToken(n, tokens[k]);
      EXPECT_GT(n.pitch, last) << tokens[k];
      last = n.pitch;
      if (k < top) {
        EXPECT_EQ(n.durationDigit, "8");
      }
      EXPECT_EQ(n.velocityDigit, "9");
    }
    last = 1000;
    for (std::size_t k = top + 2; k + 1 < tokens.size(); ++k) {
      Note n;
      FillFromToken(n, tokens[k]);
      EXPECT_LT(n.pitch, last) << tokens[k];
      last = n.pitch;
    }
  }
}

TEST(ScaleLines, OnlyTheKnownRowsShareALine) {
  std::set<std::pair<int, int>> same;
  for (int a = 0; a < kScaleCount; ++a)
    for (int b = a + 1; b < kScaleCount; ++b)
      if (kScaleLines[a].line == kScaleLines[b].line) same.insert({a, b});
  const std::set<std::pair<int, int>> expected = {{9, 24}, {10, 20}, {29, 32}, {29, 35}, {32, 35}};
  EXPECT_EQ(same, expected);
  std::set<std::string_view> captions;
  for (const auto& s : kScaleLines) captions.insert(s.caption);
  EXPECT_EQ(captions.size(), 36u);
}

TEST(ScaleLines, TitlesAndMenuSections) {
  EXPECT_EQ(ScaleTitle(35), "ハンガリアンスケール");
  for (int index : {-1, 36, INT_MIN, INT_MAX}) EXPECT_EQ(ScaleTitle(index), "") << index;
  // The sections head the menu in order, the first at its top, each over some scales.
  EXPECT_EQ(kScaleSections[0].firstIndex, 0);
  for (std::size_t k = 1; k < kScaleSections.size(); ++k) {
    EXPECT_GT(kScaleSections[k].firstIndex, kScaleSections[k - 1].firstIndex);
    EXPECT_LT(kScaleSections[k].firstIndex, kScaleCount);
  }
  // The separators are spaced with ideographic spaces.
  for (const auto& s : kScaleSections) EXPECT_NE(s.caption.find("\u3000"), std::string_view::npos);
}

TEST(ScaleLines, LoadOntoTheStaffAsEighthsEndingInARest) {
  Staff staff;
  LoadKestraLine(staff, kScaleLines[16].line);
  EXPECT_EQ(staff.NoteCount(), 20);
  EXPECT_TRUE(staff.notes.back().IsRest());
  EXPECT_EQ(staff.notes.back().picture, "r8");
}
