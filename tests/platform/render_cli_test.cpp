// lirenza-cli render and instruments as a user runs them: every failure is one clear
// line with a non-zero status, and no half-written sound file is ever left behind.
#include <gtest/gtest.h>

#include <chrono>

#include "cli_harness.h"

using namespace lirenza::test;

namespace {

class RenderCli : public CliTest {
 protected:
  void SetUp() override {
    CliTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    score_ = S("tune.note");
    ASSERT_EQ(Run({"kestra", "A4C4 B4C4 C5C8 D5C8 E5C2", "-o", score_}).exit, 0);
  }
  std::string score_;
};

}  // namespace

TEST_F(RenderCli, FailuresAreOneLineAndLeaveNoFile) {
  Write("garbage.note", "\x7f" "ELF this is not a score at all\x01\x02");
  Write("keep.wav", "old");
  fs::create_directories(P("sub.wav"));
  const std::vector<std::string> before = Entries();
  struct Row {
    std::vector<std::string> args, env;
    int status;
    std::string says;
  } rows[] = {
      {{"render", score_, "-o", S("a.wav")}, {"LIRENZA_SOUNDFONT=/nowhere/FluidR3_GM.sf2"}, 1, "/nowhere/FluidR3_GM.sf2"},
      {{"render", score_, "-o", S("keep.wav")}, {"LIRENZA_SOUNDFONT=" + score_}, 1, "is not a SoundFont"},
      {{"render", score_, "-o", "/nonexistent-lirenza-dir/a.wav"}, {}, 1, "/nonexistent-lirenza-dir"},
      {{"render", score_, "-o", S("sub.wav")}, {}, 1, "sub.wav"},
      {{"render", S("garbage.note"), "-o", S("b.flac")}, {}, 1, "garbage.note"},
      {{"render", S("none.note"), "-o", S("c.wav")}, {}, 1, "none.note"},
      {{"render", score_, "-o", S("d.mp3")}, {}, 2, ".wav or .flac"},
      {{"render", score_, "-o", S("e.wav"), "--tempo", "16"}, {}, 2, "--tempo"},
      {{"instruments"}, {"LIRENZA_SOUNDFONT=/nowhere.sf2"}, 1, "/nowhere.sf2"},
  };
  for (const auto& r : rows) {
    const CliResult run = Run(r.args, r.env);
    const std::string what = r.args.back() + ": " + run.err;
    EXPECT_EQ(run.exit, r.status) << what;
    EXPECT_TRUE(OneLine(run.err)) << what;
    EXPECT_NE(run.err.find(r.says), std::string::npos) << what;
    EXPECT_EQ(Entries(), before) << what;
  }
  EXPECT_EQ(Slurp(P("keep.wav")), "old") << "a failed render keeps the old file";
}

TEST_F(RenderCli, WritesWavAndFlacInPlaceAndNothingElse) {
  for (const std::string name : {"tune.wav", "tune.FLAC"}) {
    const CliResult run = Run({"render", score_, "-o", S(name), "--tempo", "7", "--instrument", "41"});
    EXPECT_EQ(run.exit, 0) << run.err;
    EXPECT_EQ(run.err, "") << "no progress bar when stderr is not a terminal";
    EXPECT_NE(run.out.find("instrument 41"), std::string::npos) << run.out;
  }
  EXPECT_EQ(Slurp(P("tune.FLAC")).substr(0, 4), "fLaC");
  const std::string wav = Slurp(P("tune.wav"));
  EXPECT_EQ(wav.substr(0, 4) + wav.substr(8, 4), "RIFFWAVE");
  // Five notes from 0.48 s: 4 × 480 ms + a half note, then the release.
  const double seconds = (wav.size() - 44) / 4.0 / 44100;
  EXPECT_GT(seconds, 0.48 + 4 * 0.48 + 0.95 * 0.96);
  EXPECT_LT(seconds, 0.48 + 4 * 0.48 + 0.96 + 4.0);
  // A score that names no instrument plays the violin, as its MIDI file does.
  Write("bare.note", "136,117,0,60,60,0,0,0,9,4,C494 ;;\n");
  const CliResult bare = Run({"render", S("bare.note"), "-o", S("bare.wav")});
  EXPECT_NE(bare.out.find("instrument 41"), std::string::npos) << bare.out << bare.err;
  const CliResult quiet = Run({"render", score_, "-o", S("q.wav"), "--quiet"});
  EXPECT_EQ(quiet.exit, 0);
  EXPECT_EQ(quiet.out + quiet.err, "");
  EXPECT_EQ(Entries(), (std::vector<std::string>{"bare.note", "bare.wav", "q.wav", "tune.FLAC", "tune.note", "tune.wav"}))
      << "no temporary file is left";
}

TEST_F(RenderCli, InstrumentsListsEveryNumberAsExactOrItsFallback) {
  const std::string out = Run({"instruments"}).out;
  int exact = 0, fallback = 0;
  for (std::size_t at = out.find("\texact\t"); at != std::string::npos; at = out.find("\texact\t", at + 1)) ++exact;
  for (std::size_t at = out.find("\tfallback 0:"); at != std::string::npos; at = out.find("\tfallback 0:", at + 1)) ++fallback;
  EXPECT_EQ(exact + fallback, 235);
  EXPECT_NE(out.find("\n" + std::to_string(exact) + " of 235 instruments exact"), std::string::npos) << out;
  EXPECT_NE(out.find("\n5\t0\t41\t0\t40\texact\tバイオリン\n"), std::string::npos);
  EXPECT_NE(out.find("\n17\t0\t16385\t128\t0\texact\t"), std::string::npos);
  EXPECT_NE(Run({"instruments", "--json"}).out.find("\"total\":235,\"exact\":" + std::to_string(exact)), std::string::npos);
}

// The progress bar is for a person watching a long render: only on a terminal (script(1)
// gives one), never into a file. How long the render takes depends on the machine.
TEST_F(RenderCli, ProgressIsDrawnOnlyOnATerminal) {
  if (std::system("command -v script >/dev/null 2>&1") != 0) GTEST_SKIP() << "script(1) is not installed";
  std::string tokens;
  for (int i = 0; i < 48; ++i) tokens += "C5C1 D5C1 E5C1 G4C1 ";
  ASSERT_EQ(Run({"kestra", tokens, "-o", S("long.note")}).exit, 0);
  const std::string render = std::string(std::getenv("LIRENZA_CLI")) + " render " + S("long.note") + " --tempo 0 -o " + S("long.wav");
  for (bool terminal : {true, false}) {
    const auto started = std::chrono::steady_clock::now();
    const auto run = Run({"-qec", render + (terminal ? "" : " 2>" + S("err.txt")), "/dev/null"}, {}, "script");
    const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    ASSERT_EQ(run.exit, 0) << run.out;
    const bool drawn = (run.out + Slurp(P("err.txt"))).find("rendering [") != std::string::npos;
    if (!terminal) EXPECT_FALSE(drawn);
    else if (took > 2.0) EXPECT_TRUE(drawn) << took << " s";
  }
}
