// The scales of the menu: each must load as a playable line of the same plan.
#include <gtest/gtest.h>

#include <set>

#include "score/note.h"
#include "score/staff.h"
#include "score/text_fields.h"
#include "tuning/scale_lines.h"

using namespace lirenza;

TEST(ScaleLines, EveryLineRisesAnOctaveInEighthsAndFallsBackToARest) {
  for (int i = 0; i < kScaleCount; ++i) {
    const auto tokens = SplitFields(kScaleLines[i].line, " ");
    ASSERT_GE(tokens.size(), 12u) << i;
    EXPECT_LT(tokens.size(), static_cast<std::size_t>(kMaxKestraTokens)) << i;
    EXPECT_EQ(tokens.front(), "C498") << i;
    EXPECT_EQ(tokens[tokens.size() - 2], "C492") << i;
    EXPECT_EQ(tokens.back(), "0008") << i;
    std::size_t top = 0;
    while (top < tokens.size() && tokens[top] != "C592") ++top;
    ASSERT_LT(top + 2, tokens.size()) << i;
    EXPECT_EQ(tokens[top + 1] + tokens[top + 2], "0008C598") << i;
    int last = 0;
    for (std::size_t k = 0; k + 1 < tokens.size(); ++k) {
      if (k == top + 1) {
        last = 1000;
        continue;
      }
      Note n;
      FillFromToken(n, tokens[k]);
      EXPECT_TRUE(k <= top ? n.pitch > last : n.pitch < last) << i << ": " << tokens[k];
      if (k < top) EXPECT_EQ(n.durationDigit, "8") << i << ": " << tokens[k];
      last = n.pitch;
    }
  }
  Staff staff;
  LoadKestraLine(staff, kScaleLines[16].line);
  EXPECT_EQ(staff.NoteCount(), 20);
  EXPECT_EQ(staff.notes.back().picture, "r8");
}

TEST(ScaleLines, OnlyTheKnownRowsShareALineAndNoCaptionRepeats) {
  std::set<std::pair<int, int>> same;
  for (int a = 0; a < kScaleCount; ++a)
    for (int b = a + 1; b < kScaleCount; ++b)
      if (kScaleLines[a].line == kScaleLines[b].line) same.insert({a, b});
  const std::set<std::pair<int, int>> expected = {{9, 24}, {10, 20}, {29, 32}, {29, 35}, {32, 35}};
  EXPECT_EQ(same, expected);
  std::set<std::string_view> captions;
  for (const auto& s : kScaleLines) captions.insert(s.caption);
  EXPECT_EQ(captions.size(), static_cast<std::size_t>(kScaleCount));
  EXPECT_EQ(ScaleTitle(kScaleCount), "");
  EXPECT_EQ(ScaleTitle(-1), "");
}
