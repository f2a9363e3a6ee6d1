// A rendered score sounds each note where playback would: at the event's time × d.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/synth_fixture.h"

using namespace lirenza;
using namespace lirenza::testing;

constexpr double kRate = 44100.0, kThreshold = 0.02;
constexpr long kQuiet = static_cast<long>(0.03 * kRate);

TEST(EventFrames, NeverMoreThanHalfABlockFromTheExactInstant) {
  for (double d : {1.5, 1.0, 0.6})
    for (double t = 0; t < 3e8; t += 123457.0)
      EXPECT_LE(std::fabs(EventFrame(t, d, 48000) - t * d * 48000 / 1e6), kSynthBlock / 2.0) << t << " at " << d;
}

TEST(RenderTiming, OnsetsFallWithin2msOfTheEventTimesAndTheRenderEndsOnceFaded) {
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  synth->SelectInstrument(kScorePlayer, kSineWave);
  // The preset's attack up to the threshold is the same for every note: measure it once.
  synth->PlayNote(kScorePlayer, 69 * 256, 100);
  const auto lone = Onsets(RenderMono(*synth, 8192), kThreshold, kQuiet);
  synth->PlayNote(kScorePlayer, 69 * 256, 0);
  RenderUntilSilent(*synth);
  ASSERT_EQ(lone.size(), 1u);
  const double attack = lone.front() / kRate;
  for (double d : {1.5, 1.0, 0.6}) {
    // Notes of several lengths, each followed by a rest: every onset starts from silence.
    const RenderJob job = JobFor("A4C4 0004 E5C8 0008 C5C4 0004 G4C2 0002 D5C6 0006 F4C9 0009 A4C4 0004", d, 0.85);
    std::vector<double> expected;
    for (std::size_t i = 1; i < job.events.size(); ++i)
      if (job.events[i].velocity > 0) expected.push_back(job.events[i].time * d / 1e6);
    std::vector<float> mono;
    const RenderResult result = RenderEvents(*synth, job, [&](const float* f, int n) {
      for (int i = 0; i < n; ++i) mono.push_back(0.5f * (f[2 * i] + f[2 * i + 1]));
      return true;
    });
    const auto onsets = Onsets(mono, kThreshold, kQuiet);
    ASSERT_EQ(onsets.size(), 7u) << "d " << d;
    ASSERT_EQ(expected.size(), 7u);
    for (std::size_t k = 0; k < onsets.size(); ++k) {
      const double error = onsets[k] / kRate - attack - expected[k];
      EXPECT_NEAR(error, 0.0, 0.002) << "note " << k << " at d " << d;
    }
    EXPECT_EQ(result.frames, static_cast<long long>(mono.size()));
    EXPECT_EQ(synth->ActiveVoices(), 0) << "d " << d;
    EXPECT_GE(result.frames, result.lastEventFrame + static_cast<long long>(0.3 * kRate) - kSynthBlock);
    EXPECT_LT(result.frames, result.lastEventFrame + static_cast<long long>(3.0 * kRate));
  }
}
