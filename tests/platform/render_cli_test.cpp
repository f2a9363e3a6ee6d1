// lirenza-cli render and instruments as a user runs them: every failure is one clear
// line with a non-zero status, and no half-written sound file is ever left behind.
#include <gtest/gtest.h>

#include "cli_harness.h"

using namespace std::string_literals;
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
  // Everything in the folder but the score: a failed render must leave nothing.
  std::vector<std::string> Leftovers() const {
    auto names = Entries();
    std::erase(names, "tune.note");
    return names;
  }
  std::string score_;
};

}  // namespace

TEST_F(RenderCli, FailuresAreOneLineAndLeaveNoFile) {
  Write("garbage.note", "\x7f" "ELF this is not a score at all\x01\x02");
  struct Row {
    std::string name;
    std::vector<std::string> args, env;
    int status;
    std::string says;
  } rows[] = {
      {"no fonts", {"render", score_, "-o", S("a.wav")}, {"LIRENZA_SOUNDFONT=/nowhere/FluidR3_GM.sf2"}, 1,
       "/nowhere/FluidR3_GM.sf2"},
      {"a file that is no SoundFont", {"render", score_, "-o", S("a.wav")}, {"LIRENZA_SOUNDFONT=" + score_}, 1,
       "is not a SoundFont"},
      {"folder that cannot be written", {"render", score_, "-o", "/nonexistent-lirenza-dir/a.wav"}, {}, 1,
       "/nonexistent-lirenza-dir"},
      {"output is a folder", {"render", score_, "-o", S("sub.wav")}, {}, 1, "sub.wav"},
      {"garbage score", {"render", S("garbage.note"), "-o", S("b.flac")}, {}, 1, "garbage.note"},
      {"missing score", {"render", S("none.note"), "-o", S("c.wav")}, {}, 1, "none.note"},
      {"unknown type", {"render", score_, "-o", S("d.mp3")}, {}, 2, ".wav or .flac"},
      {"bad tempo", {"render", score_, "-o", S("e.wav"), "--tempo", "16"}, {}, 2, "--tempo"},
  };
  fs::create_directories(P("sub.wav"));
  for (const auto& r : rows) {
    const CliResult run = Run(r.args, r.env);
    EXPECT_EQ(run.exit, r.status) << r.name << ": " << run.err;
    EXPECT_TRUE(OneLine(run.err)) << r.name << ": \"" << run.err << "\"";
    EXPECT_NE(run.err.find(r.says), std::string::npos) << r.name << ": " << run.err;
    std::vector<std::string> left = Leftovers();
    std::erase(left, "garbage.note");
    std::erase(left, "sub.wav");
    EXPECT_TRUE(left.empty()) << r.name << " left " << left.front();
  }
}

TEST_F(RenderCli, WritesWavAndFlacInPlaceAndNothingElse) {
  for (const char* name : {"tune.wav", "tune.FLAC"}) {
    const fs::path out = P(name);
    const CliResult run = Run({"render", score_, "-o", out.string(), "--tempo", "7", "--instrument", "41"});
    ASSERT_EQ(run.exit, 0) << run.err;
    EXPECT_TRUE(run.err.empty()) << "no progress bar when stderr is not a terminal: " << run.err;
    EXPECT_NE(run.out.find("instrument 41"), std::string::npos) << run.out;
    const std::string bytes = Slurp(out);
    if (name == "tune.wav"s) {
      ASSERT_GT(bytes.size(), 44u);
      EXPECT_EQ(bytes.substr(0, 4), "RIFF");
      EXPECT_EQ(bytes.substr(8, 4), "WAVE");
      // Five notes from 0.48 s: 4 × 480 ms + a half note, then the release.
      const double seconds = (bytes.size() - 44) / 4.0 / 44100;
      EXPECT_GT(seconds, 0.48 + 4 * 0.48 + 0.95 * 0.96);
      EXPECT_LT(seconds, 0.48 + 4 * 0.48 + 0.96 + 4.0);
    } else {
      EXPECT_EQ(bytes.substr(0, 4), "fLaC");
    }
    fs::remove(out);
  }
  const CliResult quiet = Run({"render", score_, "-o", S("q.wav"), "--quiet"});
  EXPECT_EQ(quiet.exit, 0);
  EXPECT_TRUE(quiet.out.empty() && quiet.err.empty()) << quiet.out << quiet.err;
  fs::remove(P("q.wav"));
  EXPECT_TRUE(Leftovers().empty()) << "a temporary file was left: " << Leftovers().front();
}

TEST_F(RenderCli, AScoreThatNamesNoInstrumentPlaysTheViolinAsItsMidiFileDoes) {
  Write("bare.note", "136,117,0,60,60,0,0,0,9,4,C494 ;;\n");
  const CliResult run = Run({"render", S("bare.note"), "-o", S("bare.wav")});
  ASSERT_EQ(run.exit, 0) << run.err;
  EXPECT_NE(run.out.find("instrument 41"), std::string::npos) << run.out;
}

TEST_F(RenderCli, AFailedRenderKeepsTheOldFile) {
  Write("keep.wav", "old");
  const CliResult run = Run({"render", score_, "-o", S("keep.wav")}, {"LIRENZA_SOUNDFONT=/nowhere.sf2"});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(Slurp(P("keep.wav")), "old");
}

TEST_F(RenderCli, InstrumentsListsAllAndReportsTheFallbacks) {
  const CliResult run = Run({"instruments"});
  ASSERT_EQ(run.exit, 0) << run.err;
  std::istringstream lines(run.out);
  std::string line, last;
  int rows = 0, exact = 0, fallback = 0;
  std::getline(lines, line);  // header
  while (std::getline(lines, line)) {
    if (line.find('\t') == std::string::npos) {
      last = line;
      continue;
    }
    ++rows;
    exact += line.find("\texact\t") != std::string::npos;
    fallback += line.find("\tfallback 0:") != std::string::npos;
  }
  EXPECT_EQ(rows, 235);
  EXPECT_EQ(exact + fallback, 235);
  EXPECT_NE(last.find(std::to_string(exact) + " of 235 instruments exact"), std::string::npos) << last;
  EXPECT_NE(run.out.find("\n5\t0\t41\t0\t40\texact\tバイオリン\n"), std::string::npos);
  EXPECT_NE(run.out.find("\n17\t0\t16385\t128\t0\texact\t"), std::string::npos);

  const CliResult json = Run({"instruments", "--json"});
  ASSERT_EQ(json.exit, 0);
  EXPECT_NE(json.out.find("\"total\":235,\"exact\":" + std::to_string(exact)), std::string::npos);

  const CliResult none = Run({"instruments"}, {"LIRENZA_SOUNDFONT=/nowhere.sf2"});
  EXPECT_EQ(none.exit, 1);
  EXPECT_TRUE(OneLine(none.err)) << none.err;
}
