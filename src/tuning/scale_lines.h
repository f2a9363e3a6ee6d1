#pragma once
// The scale menu: 36 practice scales on the tonic C, each a line of note tokens that
// rises an octave in eighths, holds, rests, falls and rests again.
#include <array>
#include <string>
#include <string_view>

namespace lirenza {

struct ScaleLine {
  std::string_view caption;
  std::string_view line;
};

inline constexpr int kScaleCount = 36;
extern const std::array<ScaleLine, kScaleCount> kScaleLines;

// The three separators of the menu and the index of the first scale each one heads.
struct ScaleSection {
  std::string_view caption;
  int firstIndex;
};
extern const std::array<ScaleSection, 3> kScaleSections;

// The title a chosen scale gives the score: its caption and "スケール".
std::string ScaleTitle(int index);

}  // namespace lirenza
