#pragma once
// The score library's rules that need no toolkit: which files of a genre folder are
// scores, the title and row number a score shows in the list, and which installed
// scores a start copies into the user's library.
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace lirenza {

inline constexpr int kGenreCount = 10;
inline constexpr std::string_view kScoreExtension = ".note";

// The folder of genre 0..9 inside the library: "Score00" .. "Score09".
std::string GenreFolderName(int genre);

// A file is a score when its name ends in ".note", in any case, and has a title before it.
bool IsScoreFileName(std::string_view fileName);
// The title the list shows: the file name without its ending ".note".
std::string ScoreTitle(std::string_view fileName);
// The number column of row (counting from 0): two characters, the row counted from 1,
// right-aligned with a blank; past 99 only the last two digits remain.
std::string RowNumberText(int row);

// Scores are named by their place in the library, "Score03/Title.note".
//
// What a start copies from the installed scores: each one the library does not hold and
// never received before. A score the user removed was received, so it stays removed;
// a score a newer release adds is copied once.
std::vector<std::string> ScoresToInstall(const std::vector<std::string>& installed,
                                         const std::set<std::string>& present,
                                         const std::set<std::string>& receivedBefore);

// The record of scores the library has received, one name to a line. Reading ignores
// blank lines and carriage returns, so a file edited by hand still reads.
std::set<std::string> ParseReceivedList(std::string_view text);
std::string FormatReceivedList(const std::set<std::string>& names);

}  // namespace lirenza
