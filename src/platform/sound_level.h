#pragma once
// How loud the program sounds. FluidSynth's presets differ by more than 20 dB and its
// default gain leaves a score near -30 dBFS, so a listener turns the volume right up
// and hears hiss. Instead every instrument is brought to one level: the synthesizer
// runs at kMasterGain and each channel is attenuated by what its instrument was
// measured to exceed the target by (bench/sound_level_table.cpp measures it). Live
// playing and rendering share the synthesizer, so a score sounds as loud in both.
// Both pass a peak limiter at kCeilingDb that only acts where the sound would clip:
// rendering a look-ahead one, live output one that adds no delay.
#include <vector>

namespace lirenza {

// Where an ordinary score's peaks are aimed, and the ceiling nothing rendered passes.
inline constexpr double kTargetPeakDb = -4.0;
inline constexpr double kCeilingDb = -1.0;
// The synthesizer's gain: enough for the quietest measured instrument to reach the
// target without attenuation (FluidSynth accepts up to 10).
inline constexpr double kMasterGain = 10.0;

// Attenuation in centibels that brings an instrument to the target at kMasterGain
// (0 when it is too quiet to reach it); a number never measured takes the median's.
double InstrumentAttenuationCb(int instrument);

// The peak of a reference score played by an instrument at synthesizer gain 1, in
// dBFS, as measured; NaN when the instrument was not measured.
double MeasuredPeakDb(int instrument);

// A stereo look-ahead limiter with a fixed ceiling. It delays by kLookahead frames
// internally but hands back exactly as many frames as it was given, aligned with the
// input (the first kLookahead output frames are dropped, Flush returns the last), so
// a render's timing is unchanged. Below the ceiling it passes samples untouched.
class PeakLimiter {
 public:
  static constexpr int kLookahead = 128;
  explicit PeakLimiter(double ceilingDb = kCeilingDb, double sampleRate = 44100.0);
  // Processes interleaved stereo; returns the frames ready in *out (may be fewer than
  // given at the start).
  void Process(const float* interleaved, int frames, std::vector<float>* out);
  // The frames still held back.
  void Flush(std::vector<float>* out);
  double LargestReductionDb() const { return largestReductionDb_; }

 private:
  void Push(float left, float right, std::vector<float>* out);
  float ceiling_;
  float releasePerFrame_;
  std::vector<float> delay_;  // interleaved ring of kLookahead + 1 frames
  std::vector<float> need_;   // the gain each held frame needs
  int limitedHeld_ = 0;  // held frames that need less than full gain
  long long seen_ = 0;
  float gain_ = 1.0f;
  double largestReductionDb_ = 0;
};

// The limiter of sound heard as it is made. It may not wait for what comes next, so it
// adds no delay: each block's gain comes from the block's own peaks. The whole block is
// there before any of it is heard, so within it the gain still glides down to a peak
// over up to kAttackFrames; only a peak at the very start of a block steps the gain.
// After the last loud peak the gain holds a while (a sustained loud tone would
// otherwise be pumped at its own pitch) and then recovers as PeakLimiter's does. Below
// the ceiling it passes samples untouched.
class LiveLimiter {
 public:
  static constexpr int kAttackFrames = 32;
  explicit LiveLimiter(double ceilingDb = kCeilingDb, double sampleRate = 44100.0);
  // Limits one block of planar stereo in place. Allocates nothing once it has seen its
  // largest block, so a sound card's thread may call it.
  void Process(float* left, float* right, int frames);
  double LargestReductionDb() const { return largestReductionDb_; }

 private:
  float ceiling_;
  float releasePerFrame_;
  int holdFrames_;
  int heldFor_ = 0;  // frames since the gain was last pulled down
  float gain_ = 1.0f;
  std::vector<float> gains_;
  double largestReductionDb_ = 0;
};

}  // namespace lirenza
