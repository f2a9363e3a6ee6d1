#pragma once
// A dry synthesizer (no reverb, no chorus) so a tone can be measured, and measurements
// written for these tests, independent of the code they check.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <memory>
#include <vector>

#include "platform/score_renderer.h"
#include "platform/sound_fonts.h"
#include "platform/synth.h"
#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/event_list.h"

namespace lirenza::testing {

// FluidR3's "Sine Wave": bank 8, program 80. A steady tone, ideal to measure.
inline constexpr int kSineWave = 8 * 128 + 80 + 1;

inline std::unique_ptr<Synth> DrySynth() {
  SynthOptions options;
  options.effects = false;
  auto synth = std::make_unique<Synth>(options);
  std::string error;
  return synth->LoadFonts(FindSoundFonts().files, &error) ? std::move(synth) : nullptr;
}

// A render of a line of score tokens at tempo factor d, tuned to the line's key.
inline RenderJob JobFor(std::string_view line, double d, double gate) {
  Staff staff;
  LoadKestraLine(staff, line);
  return RenderJobFor(staff, d, gate);
}

// Mono mix of `frames` frames rendered in blocks.
inline std::vector<float> RenderMono(Synth& synth, long frames) {
  std::vector<float> stereo(2 * frames), mono(frames);
  for (long done = 0; done < frames; done += 4096) synth.Render(stereo.data() + 2 * done, std::min<long>(4096, frames - done));
  for (long i = 0; i < frames; ++i) mono[i] = 0.5f * (stereo[2 * i] + stereo[2 * i + 1]);
  return mono;
}

// Lets every voice die away so the next measurement starts from silence.
inline void RenderUntilSilent(Synth& synth) {
  for (int i = 0; i < 200 && synth.ActiveVoices() > 0; ++i) RenderMono(synth, 1024);
}

// Fundamental of a steady tone over [first, first + count): the mean period between the
// first and last rising zero crossings, each interpolated to a fraction of a sample.
inline double ZeroCrossingFrequency(const std::vector<float>& mono, double sampleRate, long first, long count) {
  const long end = std::min<long>(mono.size(), first + count);
  double firstCrossing = -1, lastCrossing = -1;
  long crossings = 0;
  for (long i = std::max(1L, first); i < end; ++i)
    if (mono[i - 1] < 0 && mono[i] >= 0) {
      lastCrossing = (i - 1) + mono[i - 1] / (mono[i - 1] - mono[i]);
      if (crossings++ == 0) firstCrossing = lastCrossing;
    }
  return crossings < 2 ? 0 : (crossings - 1) * sampleRate / (lastCrossing - firstCrossing);
}

// Frames where a note begins: the first sample above `threshold` × the peak after at
// least `quietFrames` below it (the start counts as silence).
inline std::vector<long> Onsets(const std::vector<float>& mono, double threshold, long quietFrames) {
  float peak = 0;
  for (float s : mono) peak = std::max(peak, std::fabs(s));
  std::vector<long> onsets;
  for (long i = 0, quiet = quietFrames; i < static_cast<long>(mono.size()); ++i, ++quiet)
    if (std::fabs(mono[i]) > threshold * peak) {
      if (quiet >= quietFrames) onsets.push_back(i);
      quiet = -1;
    }
  return onsets;
}

// Frequency of a note that `press` starts and `release` ends: held 1.3 s and measured
// over a second after its attack, then let die away.
template <class Press, class Release>
double HeldFrequency(Synth& synth, Press press, Release release) {
  const double rate = synth.SampleRate();
  press();
  const auto frames = RenderMono(synth, static_cast<long>(1.3 * rate));
  release();
  RenderUntilSilent(synth);
  return ZeroCrossingFrequency(frames, rate, static_cast<long>(0.25 * rate), static_cast<long>(rate));
}

inline double SoundedFrequency(Synth& synth, int channel, int pitch) {
  return HeldFrequency(synth, [&] { synth.PlayNote(channel, pitch, 100); }, [&] { synth.PlayNote(channel, pitch, 0); });
}

// The preset's own, untuned pitch of each key, measured once on a channel: samples
// are not perfectly in tune, so a tuned note is judged against its key's own sound.
class UntunedKeys {
 public:
  UntunedKeys(Synth& synth, int channel) : synth_(synth), channel_(channel) {}
  double Frequency(int key) {
    auto it = measured_.find(key);
    return it != measured_.end() ? it->second : measured_[key] = SoundedFrequency(synth_, channel_, key * 256);
  }

 private:
  Synth& synth_;
  int channel_;
  std::map<int, double> measured_;
};

// How far above its nearest key a pitch (semitones × 256) lies, in cents.
inline double CentsAboveKey(int pitch) { return (pitch - KeyOfPitch(pitch) * 256) * 100.0 / 256.0; }

inline double PeakDb(const std::vector<float>& samples) {
  float peak = 1e-9f;
  for (float s : samples) peak = std::max(peak, std::fabs(s));
  return 20 * std::log10(peak);
}

inline double CentsBetween(double f, double reference) { return 1200.0 * std::log2(f / reference); }

}  // namespace lirenza::testing

#define LIRENZA_REQUIRE_FONTS(synth) if (!(synth)) GTEST_SKIP() << "the SoundFonts are not installed (scripts/install-deps.sh installs them)"
