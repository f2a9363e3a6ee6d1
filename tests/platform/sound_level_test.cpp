// How loud the program sounds: an ordinary score peaks between -6 and -1 dBFS whatever
// the instrument, a render never clips, and live playing is as loud as the render.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "cli_harness.h"
#include "platform/synth_fixture.h"
#include "tuning/scale_lines.h"
#include "violin/tempo_table.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

// A fresh synthesizer for each render, so no reverb of one rings in the next.
std::vector<float> Rendered(int instrument, bool effects, const RenderJob& job, RenderResult* result = nullptr) {
  SynthOptions options;
  options.effects = effects;
  Synth synth(options);
  std::string error;
  if (!synth.LoadFonts(FindSoundFonts().files, &error)) return {};
  synth.SelectInstrument(job.channel, instrument);
  std::vector<float> all;
  const RenderResult r = RenderEvents(synth, job, [&](const float* f, int n) {
    all.insert(all.end(), f, f + 2 * n);
    return true;
  });
  if (result) *result = r;
  return all;
}

}  // namespace

TEST(SoundLevel, OrdinaryScoresPeakBetweenMinus6AndMinus1AndPassTheLimiterUntouched) {
  LIRENZA_REQUIRE_FONTS(DrySynth());
  const std::tuple<int, int, bool> rows[] = {
      {0, 41, true}, {7, 1, false}, {20, 57, true}, {35, 74, false}, {12, 25, true}, {3, 16385, false},
  };
  for (auto [scale, instrument, effects] : rows) {
    RenderJob job = JobFor(kScaleLines[scale].line, TempoForSlider(kTempoSliderStart).tempoFactor, 0.95);
    RenderResult result;
    const std::vector<float> rendered = Rendered(instrument, effects, job, &result);
    const std::string row = "scale " + std::to_string(scale) + ", instrument " + std::to_string(instrument);
    EXPECT_GE(PeakDb(rendered), -6.0) << row;
    EXPECT_LE(PeakDb(rendered), -1.0) << row;
    // Live playing hears the synthesizer's own blocks: below the ceiling the render's
    // limiter must hand on the very same samples, so both are equally loud.
    EXPECT_EQ(result.limitedDb, 0.0) << row;
    job.limitPeaks = false;
    EXPECT_TRUE(Rendered(instrument, effects, job) == rendered) << row;
  }
}

TEST(SoundLevel, ALoudDenseChordNeverClips) {
  LIRENZA_REQUIRE_FONTS(DrySynth());
  // Twelve keys struck as hard as MIDI allows at 0.5 s, held a second.
  RenderJob job;
  job.events.resize(1);
  for (int key = 48; key < 84; key += 3) {
    job.events.push_back({0, 500000.0, key, 127});
    job.pitches[key] = key * 256;
  }
  for (int key = 48; key < 84; key += 3) job.events.push_back({0, 1500000.0, key, 0});
  for (int instrument : {1, 57, 16385}) {
    RenderResult result;
    job.limitPeaks = false;
    ASSERT_GT(PeakDb(Rendered(instrument, true, job)), 0.0) << "instrument " << instrument << " must overload";
    job.limitPeaks = true;
    const std::vector<float> limited = Rendered(instrument, true, job, &result);
    EXPECT_LE(PeakDb(limited), kCeilingDb + 0.01) << "instrument " << instrument;
    EXPECT_GT(result.limitedDb, 0.0);
  }
}

using SoundFontCli = lirenza::test::CliTest;

TEST_F(SoundFontCli, ACutShortFontIsSkippedWithOneLineAndTheGoodOnePlays) {
  const std::string good = "/usr/share/sounds/sf2/FluidR3_GS.sf2";
  if (!std::filesystem::exists(good)) GTEST_SKIP() << "FluidR3_GS.sf2 is not installed";
  std::string head(400000, '\0');
  std::ifstream(good, std::ios::binary).read(head.data(), head.size());
  Write("cut.sf2", head);
  Write("text.sf2", "not a font at all");
  ASSERT_EQ(Run({"kestra", "C498 E498 G492", "-o", S("t.note")}).exit, 0);
  // The GS font holds no violin: a kit plays, so the render has something to sound.
  const auto run = Run({"render", S("t.note"), "-o", S("t.wav"), "--instrument", "16385"},
                       {"LIRENZA_SOUNDFONT=" + good + ":" + S("cut.sf2")});
  EXPECT_EQ(run.exit, 0) << run.err;
  EXPECT_TRUE(lirenza::test::OneLine(run.err)) << run.err;
  EXPECT_NE(run.err.find(S("cut.sf2")), std::string::npos) << run.err;
  EXPECT_TRUE(std::filesystem::exists(P("t.wav")));
  // With only bad fonts, one line names every one and why, and nothing is written.
  const auto none = Run({"render", S("t.note"), "-o", S("u.wav")},
                        {"LIRENZA_SOUNDFONT=" + S("cut.sf2") + ":" + S("text.sf2")});
  EXPECT_EQ(none.exit, 1);
  EXPECT_TRUE(lirenza::test::OneLine(none.err)) << none.err;
  EXPECT_NE(none.err.find("cut short"), std::string::npos) << none.err;
  EXPECT_NE(none.err.find("not a SoundFont"), std::string::npos) << none.err;
  EXPECT_FALSE(std::filesystem::exists(P("u.wav")));
}
