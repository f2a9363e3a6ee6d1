// lirenza-cli render and instruments as a user runs them: every failure is one clear
// line with a non-zero status, and no half-written sound file is ever left behind.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

using namespace std::string_literals;
namespace fs = std::filesystem;

namespace {

struct CliRun {
  int status;
  std::string out, err;
};

std::string Slurp(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

class RenderCli : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* cli = std::getenv("LIRENZA_CLI");
    if (!cli) GTEST_SKIP() << "LIRENZA_CLI is not set";
    cli_ = cli;
    dir_ = fs::temp_directory_path() / ("lirenza-render-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
    score_ = (dir_ / "tune.note").string();
    ASSERT_EQ(Cli("kestra \"A4C4 B4C4 C5C8 D5C8 E5C2\" -o " + score_).status, 0);
  }
  void TearDown() override {
    if (!dir_.empty()) fs::remove_all(dir_);
  }
  CliRun Cli(const std::string& args, const std::string& env = "") {
    const fs::path out = dir_ / "stdout", err = dir_ / "stderr";
    const std::string command = env + " '" + cli_ + "' " + args + " >" + out.string() + " 2>" + err.string();
    const int raw = std::system(command.c_str());
    CliRun run{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, Slurp(out), Slurp(err)};
    fs::remove(out);
    fs::remove(err);
    return run;
  }
  // Everything in the folder but the score: a failed render must leave nothing.
  std::vector<std::string> Leftovers() {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(dir_))
      if (e.path().filename() != "tune.note") names.push_back(e.path().filename().string());
    return names;
  }
  std::string cli_, score_;
  fs::path dir_;
};

bool OneLine(const std::string& text) {
  return !text.empty() && text.find('\n') == text.size() - 1;
}

}  // namespace

TEST_F(RenderCli, FailuresAreOneLineAndLeaveNoFile) {
  std::ofstream(dir_ / "garbage.note") << "\x7f" "ELF this is not a score at all\x01\x02";
  struct Row {
    std::string name, args, env;
    int status;
    std::string says;
  } rows[] = {
      {"no fonts", "render " + score_ + " -o " + (dir_ / "a.wav").string(),
       "LIRENZA_SOUNDFONT=/nowhere/FluidR3_GM.sf2", 1, "/nowhere/FluidR3_GM.sf2"},
      {"a file that is no SoundFont", "render " + score_ + " -o " + (dir_ / "a.wav").string(),
       "LIRENZA_SOUNDFONT=" + score_, 1, "is not a SoundFont"},
      {"folder that cannot be written", "render " + score_ + " -o /nonexistent-lirenza-dir/a.wav", "", 1,
       "/nonexistent-lirenza-dir"},
      {"output is a folder", "render " + score_ + " -o " + dir_.string() + "/sub.wav", "", 1, "sub.wav"},
      {"garbage score", "render " + (dir_ / "garbage.note").string() + " -o " + (dir_ / "b.flac").string(), "", 1,
       "garbage.note"},
      {"missing score", "render " + (dir_ / "none.note").string() + " -o " + (dir_ / "c.wav").string(), "", 1,
       "none.note"},
      {"unknown type", "render " + score_ + " -o " + (dir_ / "d.mp3").string(), "", 2, ".wav or .flac"},
      {"bad tempo", "render " + score_ + " -o " + (dir_ / "e.wav").string() + " --tempo 16", "", 2, "--tempo"},
  };
  fs::create_directories(dir_ / "sub.wav");
  for (const auto& r : rows) {
    const CliRun run = Cli(r.args, r.env);
    EXPECT_EQ(run.status, r.status) << r.name << ": " << run.err;
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
    const fs::path out = dir_ / name;
    const CliRun run = Cli("render " + score_ + " -o " + out.string() + " --tempo 7 --instrument 41");
    ASSERT_EQ(run.status, 0) << run.err;
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
  const CliRun quiet = Cli("render " + score_ + " -o " + (dir_ / "q.wav").string() + " --quiet");
  EXPECT_EQ(quiet.status, 0);
  EXPECT_TRUE(quiet.out.empty() && quiet.err.empty()) << quiet.out << quiet.err;
  fs::remove(dir_ / "q.wav");
  EXPECT_TRUE(Leftovers().empty()) << "a temporary file was left: " << Leftovers().front();
}

TEST_F(RenderCli, AScoreThatNamesNoInstrumentPlaysTheViolinAsItsMidiFileDoes) {
  const fs::path bare = dir_ / "bare.note";
  std::ofstream(bare) << "136,117,0,60,60,0,0,0,9,4,C494 ;;\n";
  const CliRun run = Cli("render " + bare.string() + " -o " + (dir_ / "bare.wav").string());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("instrument 41"), std::string::npos) << run.out;
  fs::remove(dir_ / "bare.wav");
  fs::remove(bare);
}

TEST_F(RenderCli, AFailedRenderKeepsTheOldFile) {
  const fs::path out = dir_ / "keep.wav";
  std::ofstream(out) << "old";
  const CliRun run = Cli("render " + score_ + " -o " + out.string(), "LIRENZA_SOUNDFONT=/nowhere.sf2");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Slurp(out), "old");
}

TEST_F(RenderCli, InstrumentsListsAllAndReportsTheFallbacks) {
  const CliRun run = Cli("instruments");
  ASSERT_EQ(run.status, 0) << run.err;
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

  const CliRun json = Cli("instruments --json");
  ASSERT_EQ(json.status, 0);
  EXPECT_NE(json.out.find("\"total\":235,\"exact\":" + std::to_string(exact)), std::string::npos);

  const CliRun none = Cli("instruments", "LIRENZA_SOUNDFONT=/nowhere.sf2");
  EXPECT_EQ(none.status, 1);
  EXPECT_TRUE(OneLine(none.err)) << none.err;
}
