#include "platform/sound_level.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace lirenza {

namespace {

struct MeasuredLevel {
  int instrument;
  double peakDb;
};

// Written by bench/sound_level_table.cpp: each instrument's peak over its reference
// score at synthesizer gain 1, reverb and chorus on.
constexpr MeasuredLevel kMeasuredLevels[] = {
#include "platform/instrument_levels.inc"
};

// Back to full gain within 80 ms of the last loud peak: slow enough not to pump on a
// sustained chord, quick enough not to duck the next phrase.
float ReleasePerFrame(double sampleRate) { return static_cast<float>(1.0 / (0.08 * sampleRate)); }

float Amplitude(double db) { return static_cast<float>(std::pow(10.0, db / 20)); }

}  // namespace

double MeasuredPeakDb(int instrument) {
  for (const auto& level : kMeasuredLevels)
    if (level.instrument == instrument) return level.peakDb;
  return std::numeric_limits<double>::quiet_NaN();
}

double InstrumentAttenuationCb(int instrument) {
  double peak = MeasuredPeakDb(instrument);
  if (std::isnan(peak)) {
    // A number outside the menus: the typical instrument's level, not full gain.
    static const double typical = [] {
      std::vector<double> peaks;
      for (const auto& level : kMeasuredLevels) peaks.push_back(level.peakDb);
      std::nth_element(peaks.begin(), peaks.begin() + peaks.size() / 2, peaks.end());
      return peaks[peaks.size() / 2];
    }();
    peak = typical;
  }
  const double excessDb = peak + 20 * std::log10(kMasterGain) - kTargetPeakDb;
  return std::max(0.0, 10 * excessDb);
}

PeakLimiter::PeakLimiter(double ceilingDb, double sampleRate)
    : ceiling_(Amplitude(ceilingDb)),
      releasePerFrame_(ReleasePerFrame(sampleRate)),
      delay_(2 * (kLookahead + 1), 0.0f),
      need_(kLookahead + 1, 1.0f) {}

void PeakLimiter::Push(float left, float right, std::vector<float>* out) {
  constexpr int kRing = kLookahead + 1;
  const int in = static_cast<int>(seen_ % kRing);
  const float level = std::max(std::fabs(left), std::fabs(right));
  if (need_[in] < 1.0f) --limitedHeld_;  // limitedHeld_ counts held frames that need less than full gain
  need_[in] = level > ceiling_ ? ceiling_ / level : 1.0f;
  if (need_[in] < 1.0f) ++limitedHeld_;
  delay_[2 * in] = left;
  delay_[2 * in + 1] = right;
  ++seen_;
  if (seen_ <= kLookahead) return;
  // The oldest held frame leaves now. Its gain is the lowest that any peak ahead
  // demands, each demand ramped linearly over the look-ahead so the gain glides down
  // to a peak instead of stepping.
  const int first = static_cast<int>(seen_ % kRing);
  float target = 1.0f;
  if (limitedHeld_ > 0) {
    for (int k = 0; k < kRing; ++k) {
      const float need = need_[(first + k) % kRing];
      if (need < 1.0f) target = std::min(target, need + (1.0f - need) * k / kLookahead);
    }
  }
  gain_ = std::min(target, gain_ + releasePerFrame_);
  if (gain_ < 1.0f) largestReductionDb_ = std::max(largestReductionDb_, -20.0 * std::log10(gain_));
  out->push_back(delay_[2 * first] * gain_);
  out->push_back(delay_[2 * first + 1] * gain_);
}

void PeakLimiter::Process(const float* interleaved, int frames, std::vector<float>* out) {
  out->clear();
  for (int i = 0; i < frames; ++i) Push(interleaved[2 * i], interleaved[2 * i + 1], out);
}

void PeakLimiter::Flush(std::vector<float>* out) {
  out->clear();
  const long long given = seen_;
  for (int i = 0; i < kLookahead; ++i) Push(0.0f, 0.0f, out);
  // Fewer frames than the look-ahead were given: drop what the padding produced.
  out->resize(2 * std::min<long long>(given, out->size() / 2));
}

LiveLimiter::LiveLimiter(double ceilingDb, double sampleRate)
    : ceiling_(Amplitude(ceilingDb)),
      releasePerFrame_(ReleasePerFrame(sampleRate)),
      // Longer than one wave of a bass note, so a held tone's gain does not rise and fall
      // between its crests: that would be heard as distortion.
      holdFrames_(static_cast<int>(0.03 * sampleRate)),
      gains_(8192) {}

void LiveLimiter::Process(float* left, float* right, int frames) {
  if (frames <= 0) return;
  if (static_cast<int>(gains_.size()) < frames) gains_.resize(frames);
  // Backwards: the most gain each frame may have so that it and every peak after it in
  // the block stay under the ceiling, rising at most 1 / kAttackFrames per frame away
  // from a peak. What follows the block is unknown and asks for nothing.
  float allowed = 1.0f;
  for (int i = frames - 1; i >= 0; --i) {
    const float level = std::max(std::fabs(left[i]), std::fabs(right[i]));
    allowed = std::min(1.0f, allowed + 1.0f / kAttackFrames);
    if (level > ceiling_) allowed = std::min(allowed, ceiling_ / level);
    gains_[i] = allowed;
  }
  // Forwards: down at once to what is allowed, up only after the hold and then slowly.
  float smallest = gain_;
  for (int i = 0; i < frames; ++i) {
    if (gains_[i] <= gain_) {
      gain_ = gains_[i];
      heldFor_ = 0;
    } else if (heldFor_ < holdFrames_) {
      ++heldFor_;
    } else {
      gain_ = std::min(gains_[i], gain_ + releasePerFrame_);
    }
    smallest = std::min(smallest, gain_);
    if (gain_ < 1.0f) {
      left[i] *= gain_;
      right[i] *= gain_;
    }
  }
  if (smallest < 1.0f) largestReductionDb_ = std::max(largestReductionDb_, -20.0 * std::log10(smallest));
}

}  // namespace lirenza
