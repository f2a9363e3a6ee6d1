// A sound file being written: cut short by Ctrl+C or SIGTERM it leaves nothing behind,
// and a WAV is plain RIFF/WAVE while small and RF64 once its sizes outgrow 32 bits.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sndfile.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/sound_file_writer.h"

namespace fs = std::filesystem;
extern char** environ;

namespace {

struct ScratchDir {
  fs::path path;
  ScratchDir() {
    char tmpl[] = "/tmp/lirenza-interrupt-XXXXXX";
    path = ::mkdtemp(tmpl);
  }
  ~ScratchDir() { fs::remove_all(path); }
  // The temporary files of unfinished writes start with a dot.
  std::vector<fs::path> Hidden() const {
    std::vector<fs::path> found;
    for (const auto& e : fs::directory_iterator(path))
      if (e.path().filename().string()[0] == '.') found.push_back(e.path());
    return found;
  }
};

// Runs lirenza-cli with its output thrown away and returns its process id.
pid_t Start(const std::string& cli, std::vector<std::string> args) {
  args.insert(args.begin(), cli);
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  // A test runner started in the background may ignore SIGINT, and the child would
  // inherit that: start it with the signals' default actions, as a terminal does.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t defaults;
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGINT);
  sigaddset(&defaults, SIGTERM);
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  pid_t pid = -1;
  const int failed = posix_spawn(&pid, cli.c_str(), &actions, &attributes, argv.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return failed ? -1 : pid;
}

int WaitFor(pid_t pid) {
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

}  // namespace

TEST(SoundFileWriting, ARenderEndedBySignalLeavesNoTemporaryFile) {
  const char* cli = std::getenv("LIRENZA_CLI");
  if (!cli) GTEST_SKIP() << "LIRENZA_CLI is not set";
  ScratchDir dir;
  const std::string score = (dir.path / "long.note").string();
  std::string tokens;
  for (int i = 0; i < 500; ++i) tokens += "C5C1 D5C1 E5C1 G4C1 ";
  const pid_t maker = Start(cli, {"kestra", tokens, "-o", score});
  ASSERT_GT(maker, 0);
  const int made = WaitFor(maker);
  ASSERT_TRUE(WIFEXITED(made) && WEXITSTATUS(made) == 0);

  for (int signal : {SIGINT, SIGTERM}) {
    const fs::path out = dir.path / "long.wav";
    const pid_t render = Start(cli, {"render", score, "-o", out.string(), "--tempo", "0", "--quiet"});
    ASSERT_GT(render, 0);
    // Wait until the render is well into its temporary file (ten minutes of sound
    // take seconds), then interrupt it.
    bool writing = false;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!writing && std::chrono::steady_clock::now() < deadline) {
      for (const auto& temp : dir.Hidden()) {
        std::error_code ec;
        if (fs::file_size(temp, ec) > (1u << 20)) writing = true;
      }
      if (!writing) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ASSERT_TRUE(writing) << "the render never started writing";
    ::kill(render, signal);
    const int status = WaitFor(render);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal)
        << strsignal(signal) << ": the render must end by the signal, status " << status;
    EXPECT_TRUE(dir.Hidden().empty()) << strsignal(signal) << " left " << dir.Hidden().front();
    EXPECT_FALSE(fs::exists(out)) << "an interrupted render puts no file in place";
  }
}

namespace {
// Writes seconds of silence (or a soft tone) and reads back what libsndfile sees.
struct WrittenWav {
  int majorFormat = 0;
  sf_count_t frames = 0;
};

WrittenWav WriteAndReadBack(const fs::path& path, long frames) {
  lirenza::SoundFileWriter writer;
  std::string error;
  EXPECT_TRUE(writer.Open(path.string(), lirenza::SoundFileType::Wav, 44100, &error)) << error;
  constexpr long kBlock = 1 << 16;
  std::vector<float> block(2 * kBlock);
  for (long i = 0; i < kBlock; ++i) block[2 * i] = block[2 * i + 1] = (i % 100) / 200.0f;
  for (long done = 0; done < frames; done += kBlock)
    if (!writer.Write(block.data(), std::min(kBlock, frames - done), &error)) {
      ADD_FAILURE() << error;
      return {};
    }
  EXPECT_TRUE(writer.Commit(&error)) << error;
  SF_INFO info{};
  SNDFILE* back = sf_open(path.c_str(), SFM_READ, &info);
  if (!back) {
    ADD_FAILURE() << "libsndfile cannot read " << path << ": " << sf_strerror(nullptr);
    return {};
  }
  sf_close(back);
  return {info.format & SF_FORMAT_TYPEMASK, info.frames};
}
}  // namespace

TEST(SoundFileWriting, ASmallWavIsPlainRiffWave) {
  ScratchDir dir;
  const fs::path path = dir.path / "small.wav";
  const WrittenWav wav = WriteAndReadBack(path, 100000);
  EXPECT_EQ(wav.majorFormat, SF_FORMAT_WAV);
  EXPECT_EQ(wav.frames, 100000);
  std::FILE* f = std::fopen(path.c_str(), "rb");
  ASSERT_TRUE(f);
  char header[22] = {};
  ASSERT_EQ(std::fread(header, 1, sizeof header, f), sizeof header);
  std::fclose(f);
  EXPECT_EQ(std::string(header, 4), "RIFF");
  EXPECT_EQ(std::string(header + 8, 8), "WAVEfmt ");
  // Format tag 1, plain PCM: the simplest readers know no other.
  EXPECT_EQ(std::string(header + 20, 2), std::string("\x01\x00", 2));
}

// Writes more than 4 GiB, so it runs only when asked for:
//   LIRENZA_LARGE_WAV_DIR=/somewhere/with/5GB/free ./test_platform --gtest_filter='*4GB*'
TEST(SoundFileWriting, AWavPast4GBKeepsItsLengthAsRf64) {
  const char* where = std::getenv("LIRENZA_LARGE_WAV_DIR");
  if (!where) GTEST_SKIP() << "set LIRENZA_LARGE_WAV_DIR to write a 4.3 GB file";
  const fs::path path = fs::path(where) / "past-4GB.wav";
  const long frames = (4L << 30) / 4 + 44100L * 60;  // a minute past the 32-bit limit
  const WrittenWav wav = WriteAndReadBack(path, frames);
  fs::remove(path);
  EXPECT_EQ(wav.majorFormat, SF_FORMAT_RF64);
  EXPECT_EQ(wav.frames, frames);
}
