#include "files/score_library.h"

#include <algorithm>
#include <cctype>

namespace lirenza {

std::string GenreFolderName(int genre) { return "Score0" + std::to_string(genre); }

bool IsScoreFileName(std::string_view fileName) {
  if (fileName.size() <= kScoreExtension.size()) return false;
  const std::string_view ending = fileName.substr(fileName.size() - kScoreExtension.size());
  return std::equal(ending.begin(), ending.end(), kScoreExtension.begin(), [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == b;
  });
}

std::string ScoreTitle(std::string_view fileName) {
  if (!IsScoreFileName(fileName)) return std::string(fileName);
  return std::string(fileName.substr(0, fileName.size() - kScoreExtension.size()));
}

std::string RowNumberText(int row) {
  const std::string shown = " " + std::to_string(row + 1);
  return shown.substr(shown.size() - 2);
}

std::vector<std::string> ScoresToInstall(const std::vector<std::string>& installed,
                                         const std::set<std::string>& present,
                                         const std::set<std::string>& receivedBefore) {
  std::vector<std::string> copies;
  for (const std::string& name : installed)
    if (!present.count(name) && !receivedBefore.count(name)) copies.push_back(name);
  return copies;
}

std::set<std::string> ParseReceivedList(std::string_view text) {
  std::set<std::string> names;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    while (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (!line.empty()) names.emplace(line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return names;
}

std::string FormatReceivedList(const std::set<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += name + '\n';
  return text;
}

}  // namespace lirenza
