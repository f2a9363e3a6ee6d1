#include "platform/audio_analysis.h"

#include <algorithm>
#include <cmath>

namespace lirenza::testing {

std::vector<float> Mono(const std::vector<float>& interleaved) {
  std::vector<float> mono(interleaved.size() / 2);
  for (std::size_t i = 0; i < mono.size(); ++i) mono[i] = 0.5f * (interleaved[2 * i] + interleaved[2 * i + 1]);
  return mono;
}

double ZeroCrossingFrequency(const std::vector<float>& mono, double sampleRate, long first, long count) {
  const long end = std::min<long>(static_cast<long>(mono.size()), first + count);
  double firstCrossing = -1, lastCrossing = -1;
  long crossings = 0;
  for (long i = std::max(1L, first); i < end; ++i) {
    const double a = mono[i - 1], b = mono[i];
    if (a < 0 && b >= 0) {
      const double t = (i - 1) + (-a) / (b - a);
      if (firstCrossing < 0) firstCrossing = t;
      lastCrossing = t;
      ++crossings;
    }
  }
  if (crossings < 2) return 0;
  return (crossings - 1) * sampleRate / (lastCrossing - firstCrossing);
}

std::vector<long> Onsets(const std::vector<float>& mono, double threshold, long quietFrames) {
  float peak = 0;
  for (float s : mono) peak = std::max(peak, std::fabs(s));
  const float level = static_cast<float>(threshold * peak);
  std::vector<long> onsets;
  long quiet = quietFrames;  // the start of the file counts as silence
  for (long i = 0; i < static_cast<long>(mono.size()); ++i) {
    if (std::fabs(mono[i]) > level) {
      if (quiet >= quietFrames) onsets.push_back(i);
      quiet = 0;
    } else {
      ++quiet;
    }
  }
  return onsets;
}

double CentsBetween(double f, double reference) { return 1200.0 * std::log2(f / reference); }

}  // namespace lirenza::testing
