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

TEST(ScoreLibraryInstall, CopiesOnlyWhatTheLibraryNeverReceived) {
  const std::vector<std::string> installed = {"Score00/A.note", "Score00/B.note", "Score05/C.note"};
  struct Case {
    const char* situation;
    std::set<std::string> present, received;
    std::vector<std::string> copies;
  };
  const Case cases[] = {
      {"first start", {}, {}, installed},
      {"user's own file of the same name is kept", {"Score00/B.note"}, {}, {"Score00/A.note", "Score05/C.note"}},
      {"removed by the user", {"Score00/A.note"}, {"Score00/A.note", "Score00/B.note", "Score05/C.note"}, {}},
      {"a newer release adds one", {"Score00/A.note", "Score00/B.note"}, {"Score00/A.note", "Score00/B.note"},
       {"Score05/C.note"}},
  };
  for (const Case& c : cases) EXPECT_EQ(ScoresToInstall(installed, c.present, c.received), c.copies) << c.situation;
}

TEST(ScoreLibraryInstall, ReceivedListSurvivesARoundTripAndHandEditing) {
  const std::set<std::string> names = {"Score00/A b.note", "Score09/曲.note"};
  EXPECT_EQ(ParseReceivedList(FormatReceivedList(names)), names);
  EXPECT_EQ(ParseReceivedList("Score00/A b.note\r\n\n\nScore09/曲.note"), names);
  EXPECT_TRUE(ParseReceivedList("").empty());
}

}  // namespace
}  // namespace lirenza
