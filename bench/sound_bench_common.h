#pragma once
// What the sound benchmarks share: a three-minute score and a stopwatch.
#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "score/staff.h"

namespace lirenza::bench {

// 188 half notes up and down the violin's range: three minutes at the middle tempo.
inline Staff ThreeMinuteScore() {
  const char* names[] = {"G3", "A3", "B3", "C4", "D4", "E4", "F4", "G4", "A4", "B4", "C5", "D5",
                         "E5", "F5", "G5", "A5", "B5", "C6", "B5", "A5", "G5", "F5", "E5", "D5"};
  std::string line;
  for (int i = 0; i < 188; ++i) line += std::string(i ? " " : "") + names[i % std::size(names)] + "C2";
  Staff staff;
  LoadKestraLine(staff, line);
  return staff;
}

inline double Seconds(const std::function<void()>& work) {
  const auto t0 = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

inline double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v.empty() ? 0 : v[v.size() / 2];
}

}  // namespace lirenza::bench
