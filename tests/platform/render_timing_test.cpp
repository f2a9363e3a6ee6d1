// A rendered score sounds each note where playback would: at the event's time × d.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/audio_analysis.h"
#include "platform/score_renderer.h"
#include "platform/synth_fixture.h"
#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/event_list.h"
#include "violin/tempo_table.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

constexpr double kRate = 44100.0;
constexpr double kThreshold = 0.02;
constexpr long kQuiet = static_cast<long>(0.03 * kRate);

// Notes of several lengths, each followed by a rest so that every onset starts from
// silence; a chord of two keeps its place as one onset.
constexpr const char* kScore = "A4C4 0004 E5C8 0008 C5C4 0004 G4C2 0002 D5C6 0006 F4C9 0009 A4C4 0004";

RenderJob JobFor(double d) {
  Staff staff;
  LoadKestraLine(staff, kScore);
  RenderJob job;
  job.tempoFactor = d;
  job.events = BuildEventList(staff.notes, d, 0.85);
  TuningTables t;
  TuneToKey(t, staff.keySignature);
  job.pitches = t.pitches;
  job.afterSeconds = 0;
  return job;
}

std::vector<float> Render(Synth& synth, const RenderJob& job) {
  std::vector<float> all;
  RenderEvents(synth, job, [&](const float* f, int n) {
    all.insert(all.end(), f, f + 2 * n);
    return true;
  });
  return Mono(all);
}

// How long the preset takes from its note-on to crossing the threshold: the same for
// every note, and no fault of the scheduling.
double AttackSeconds(Synth& synth) {
  synth.PlayNote(kScorePlayer, 69 * 256, 100);
  const auto frames = Mono(RenderFrames(synth, 8192));
  synth.PlayNote(kScorePlayer, 69 * 256, 0);
  RenderUntilSilent(synth);
  const auto onsets = Onsets(frames, kThreshold, kQuiet);
  return onsets.empty() ? 0 : onsets.front() / kRate;
}

}  // namespace

TEST(RenderTiming, OnsetsFallWithin2msOfTheEventTimesAtEveryTempo) {
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  synth->SelectInstrument(kScorePlayer, kSineWave);
  const double attack = AttackSeconds(*synth);
  double worst = 0;
  for (double d : {1.5, 1.0, 0.6}) {
    const RenderJob job = JobFor(d);
    std::vector<double> expected;
    for (std::size_t i = 1; i < job.events.size(); ++i)
      if (job.events[i].velocity > 0) expected.push_back(job.events[i].time * d / 1e6);
    ASSERT_EQ(expected.size(), 7u);
    const auto onsets = Onsets(Render(*synth, job), kThreshold, kQuiet);
    ASSERT_EQ(onsets.size(), expected.size()) << "d " << d;
    for (std::size_t k = 0; k < onsets.size(); ++k) {
      const double error = onsets[k] / kRate - attack - expected[k];
      worst = std::max(worst, std::fabs(error));
      EXPECT_NEAR(error, 0.0, 0.002) << "note " << k << " at d " << d;
    }
    RenderUntilSilent(*synth);
  }
  std::printf("largest onset error: %.3f ms (attack to threshold %.3f ms)\n", worst * 1e3, attack * 1e3);
}

TEST(RenderTiming, DIsCountedTwiceAsPlaybackCountsIt) {
  const RenderJob job = JobFor(1.5);
  double second = 0;
  for (std::size_t i = 1, ons = 0; i < job.events.size(); ++i)
    if (job.events[i].velocity > 0 && ++ons == 2) second = job.events[i].time;
  ASSERT_GT(second, 0);
  // The template's quarter, a quarter note, a quarter rest: three quarters of 480 ms,
  // stretched by d when the list is built and again when it is stepped.
  EXPECT_NEAR(EventFrame(second, 1.5, kRate) / kRate, 3 * 0.48 * 1.5 * 1.5, 0.001);
}

TEST(RenderTiming, TheRenderEndsAfterTheLastNoteHasFaded) {
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  synth->SelectInstrument(kScorePlayer, kSineWave);
  RenderJob job = JobFor(1.0);
  job.afterSeconds = 0.3;
  long long frames = 0;
  const RenderResult result = RenderEvents(*synth, job, [&](const float*, int n) {
    frames += n;
    return true;
  });
  EXPECT_FALSE(result.stopped);
  EXPECT_EQ(result.frames, frames);
  EXPECT_EQ(synth->ActiveVoices(), 0);
  EXPECT_GE(frames, result.lastEventFrame + static_cast<long long>(0.3 * kRate) - kSynthBlock);
  EXPECT_LT(frames, result.lastEventFrame + static_cast<long long>(3.0 * kRate));
}

TEST(RenderTiming, ASinkThatFailsStopsTheRender) {
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  int calls = 0;
  const RenderResult result = RenderEvents(*synth, JobFor(1.0), [&](const float*, int) { return ++calls < 3; });
  EXPECT_TRUE(result.stopped);
  EXPECT_EQ(calls, 3);
}
