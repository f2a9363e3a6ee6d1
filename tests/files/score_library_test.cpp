#include "files/score_library.h"

#include <gtest/gtest.h>

namespace lirenza {
namespace {

TEST(ScoreLibraryNames, ScoresAndTheirTitles) {
  struct Case {
    std::string fileName;
    bool isScore;
    std::string title;
  };
  const Case cases[] = {
      {"Ave Maria.note", true, "Ave Maria"},
      {"LOUD.NOTE", true, "LOUD"},
      {"a.note.note", true, "a.note"},   // only the ending goes
      {"keynote", false, "keynote"},     // ends in "note" without the dot
      {".note", false, ".note"},         // an ending with no title
      {"score.note.bak", false, "score.note.bak"},
      {"メヌエット.Note", true, "メヌエット"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsScoreFileName(c.fileName), c.isScore) << c.fileName;
    EXPECT_EQ(ScoreTitle(c.fileName), c.title) << c.fileName;
  }
}

TEST(ScoreLibraryNames, RowNumbersKeepTwoCharacters) {
  const std::pair<int, std::string> cases[] = {{0, " 1"}, {8, " 9"}, {9, "10"}, {98, "99"}, {99, "00"}, {104, "05"}};
  for (const auto& [row, text] : cases) EXPECT_EQ(RowNumberText(row), text) << row;
}

// The copying itself is checked on real folders with the window; here only what a hand
// may do to the record between two starts.
TEST(ScoreLibraryInstall, ReceivedRecordReadsAfterHandEditing) {
  const std::set<std::string> names = {"Score00/A b.note", "Score09/曲.note"};
  EXPECT_EQ(ParseReceivedList("Score00/A b.note\r\n\n\nScore09/曲.note"), names);
}

}  // namespace
}  // namespace lirenza
