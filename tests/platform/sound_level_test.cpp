// How loud the program sounds: an ordinary score peaks between -6 and -1 dBFS whatever
// the instrument, a render never clips, and live playing is as loud as the render.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>

#include "cli_harness.h"
#include "platform/score_renderer.h"
#include "platform/synth_fixture.h"
#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "tuning/scale_lines.h"
#include "violin/tempo_table.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

double Db(float amplitude) { return 20 * std::log10(std::max(amplitude, 1e-9f)); }

float PeakOf(const std::vector<float>& frames) {
  float peak = 0;
  for (float s : frames) peak = std::max(peak, std::fabs(s));
  return peak;
}

RenderJob ScaleJob(int scale) {
  Staff staff;
  LoadKestraLine(staff, kScaleLines[scale].line);
  RenderJob job;
  job.tempoFactor = TempoForSlider(kTempoSliderStart).tempoFactor;
  job.events = BuildEventList(staff.notes, job.tempoFactor, 0.95);
  TuningTables t;
  TuneToKey(t, staff.keySignature);
  job.pitches = t.pitches;
  return job;
}

std::unique_ptr<Synth> FontsLoaded(bool effects) {
  SynthOptions options;
  options.effects = effects;
  auto synth = std::make_unique<Synth>(options);
  std::string error;
  if (!synth->LoadFonts(FindSoundFonts().files, &error)) return nullptr;
  return synth;
}

std::vector<float> Rendered(Synth& synth, const RenderJob& job, RenderResult* result = nullptr) {
  std::vector<float> all;
  const RenderResult r = RenderEvents(synth, job, [&](const float* f, int n) {
    all.insert(all.end(), f, f + 2 * n);
    return true;
  });
  if (result) *result = r;
  return all;
}

}  // namespace

TEST(SoundLevel, OrdinaryScoresPeakBetweenMinus6AndMinus1WhateverTheInstrument) {
  struct Row {
    int scale, instrument;
    bool effects;
  } rows[] = {
      {0, 41, true}, {7, 1, false}, {20, 57, true}, {35, 74, false}, {12, 25, true}, {3, 16385, false},
  };
  for (const auto& r : rows) {
    auto synth = FontsLoaded(r.effects);
    LIRENZA_REQUIRE_FONTS(synth);
    RenderJob job = ScaleJob(r.scale);
    synth->SelectInstrument(job.channel, r.instrument);
    const double peak = Db(PeakOf(Rendered(*synth, job)));
    EXPECT_GE(peak, -6.0) << "scale " << r.scale << ", instrument " << r.instrument;
    EXPECT_LE(peak, -1.0) << "scale " << r.scale << ", instrument " << r.instrument;
  }
}

TEST(SoundLevel, LivePlayingIsExactlyAsLoudAsTheRender) {
  // Live output is the synthesizer's own blocks; a render of an ordinary score must
  // hand on the very same samples, limiter and all.
  auto live = FontsLoaded(true), render = FontsLoaded(true);
  LIRENZA_REQUIRE_FONTS(live);
  RenderJob job = ScaleJob(5);
  job.limitPeaks = false;
  live->SelectInstrument(job.channel, 1);
  render->SelectInstrument(job.channel, 1);
  const std::vector<float> unlimited = Rendered(*live, job);
  job.limitPeaks = true;
  RenderResult result;
  const std::vector<float> limited = Rendered(*render, job, &result);
  ASSERT_EQ(limited.size(), unlimited.size()) << "the limiter keeps the length";
  EXPECT_EQ(result.limitedDb, 0.0);
  EXPECT_TRUE(limited == unlimited) << "below the ceiling the limiter changes nothing";
}

TEST(SoundLevel, ALoudDenseChordNeverClipsAndKeepsItsTiming) {
  for (int instrument : {1, 57, 16385}) {
    RenderJob job;
    job.events.resize(1);
    // Twelve keys struck as hard as MIDI allows at 0.5 s, held a second.
    for (int key = 48; key < 84; key += 3) {
      job.events.push_back({0, 500000.0, key, 127});
      job.pitches[key] = key * 256;
    }
    for (int key = 48; key < 84; key += 3) job.events.push_back({0, 1500000.0, key, 0});
    // A fresh synthesizer for each render, so no reverb of the first rings in the second.
    auto render = [&](bool limit, RenderResult* result) {
      auto synth = FontsLoaded(true);
      synth->SelectInstrument(job.channel, instrument);
      job.limitPeaks = limit;
      return Rendered(*synth, job, result);
    };
    if (!FontsLoaded(true)) GTEST_SKIP() << "the SoundFonts are not installed";
    RenderResult result;
    ASSERT_GT(PeakOf(render(false, &result)), 1.0f) << "instrument " << instrument << ": the chord must overload";
    const std::vector<float> limited = render(true, &result);
    EXPECT_LE(Db(PeakOf(limited)), kCeilingDb + 0.01) << "instrument " << instrument;
    EXPECT_GT(result.limitedDb, 0.0);
    // The chord starts on its own frame: the look-ahead moves the sound neither way.
    const long chordFrame = EventFrame(500000.0, 1.0, 44100.0);
    long firstSound = 0;
    while (2 * firstSound < static_cast<long>(limited.size()) && std::fabs(limited[2 * firstSound]) < 1e-3f)
      ++firstSound;
    EXPECT_GE(firstSound, chordFrame) << "instrument " << instrument;
    EXPECT_LT(firstSound, chordFrame + 32) << "instrument " << instrument;
  }
}

namespace {

class SoundFontCli : public lirenza::test::CliTest {};

}  // namespace

TEST_F(SoundFontCli, ACutShortFontIsSkippedWithOneLineAndTheGoodOnePlays) {
  const std::string good = "/usr/share/sounds/sf2/FluidR3_GS.sf2";
  if (!std::filesystem::exists(good)) GTEST_SKIP() << "FluidR3_GS.sf2 is not installed";
  {
    std::ifstream in(good, std::ios::binary);
    std::string head(400000, '\0');
    in.read(head.data(), head.size());
    Write("cut.sf2", head);
  }
  ASSERT_EQ(Run({"kestra", "C498 E498 G492", "-o", S("t.note"), "--title", "t"}).exit, 0);
  // The GS font holds no violin: a kit plays, so the render has something to sound.
  const auto run = Run({"render", S("t.note"), "-o", S("t.wav"), "--instrument", "16385"},
                       {"LIRENZA_SOUNDFONT=" + good + ":" + S("cut.sf2")});
  EXPECT_EQ(run.exit, 0) << run.err;
  EXPECT_EQ(lirenza::test::Lines(run.err), 1) << run.err;
  EXPECT_NE(run.err.find(S("cut.sf2")), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("cut short"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("CRITICAL"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("rendering ["), std::string::npos) << "no progress bar when stderr is no terminal";

  // With only bad fonts, one line names every one and why, and nothing is written.
  Write("text.sf2", "not a font at all");
  const auto none = Run({"render", S("t.note"), "-o", S("u.wav")},
                        {"LIRENZA_SOUNDFONT=" + S("cut.sf2") + ":" + S("text.sf2")});
  EXPECT_EQ(none.exit, 1);
  EXPECT_TRUE(lirenza::test::OneLine(none.err)) << none.err;
  EXPECT_NE(none.err.find("cut short"), std::string::npos) << none.err;
  EXPECT_NE(none.err.find("not a SoundFont"), std::string::npos) << none.err;
  EXPECT_FALSE(std::filesystem::exists(P("u.wav")));
}

TEST_F(SoundFontCli, ProgressIsDrawnOnlyOnATerminalAndOnlyForALongRender) {
  if (std::system("command -v script >/dev/null 2>&1") != 0) GTEST_SKIP() << "script(1) gives no terminal here";
  std::string line;
  for (int i = 0; i < 64; ++i) line += std::string(i ? " " : "") + (i % 2 ? "G4F0" : "C4F0");
  ASSERT_EQ(Run({"kestra", line, "-o", S("long.note")}).exit, 0);
  const std::string cli = std::getenv("LIRENZA_CLI");
  const std::string render = cli + " render " + S("long.note") + " --tempo 0 -o " + S("long.wav");
  // Under script(1) stdout and stderr are a terminal; "2>" makes stderr a file again.
  // The terminal row shows the bar can be seen at all, so the file row's silence counts.
  struct Row {
    const char* name;
    std::string command;
    bool terminal;
  } rows[] = {
      {"stderr on a terminal", render, true},
      {"stderr into a file", render + " 2>" + S("err.txt"), false},
  };
  for (const auto& r : rows) {
    const auto started = std::chrono::steady_clock::now();
    const auto run = Run({"-qec", r.command, "/dev/null"}, {}, "script");
    const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    ASSERT_EQ(run.exit, 0) << r.name << ": " << run.out;
    const bool drawn = run.out.find("rendering [") != std::string::npos ||
                       lirenza::test::Slurp(P("err.txt")).find("rendering [") != std::string::npos;
    if (!r.terminal)
      EXPECT_FALSE(drawn) << r.name;
    else if (took > 2.0)  // how long a render takes depends on the machine
      EXPECT_TRUE(drawn) << r.name << ", " << took << " s";
    else if (took < 1.0)
      EXPECT_FALSE(drawn) << r.name << ": a render over at once draws nothing";
  }
}
