// A sound file being written: cut short by Ctrl+C or SIGTERM it leaves nothing behind,
// and a WAV is plain RIFF/WAVE while small and RF64 once its sizes outgrow 32 bits.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sndfile.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "cli_harness.h"
#include "platform/sound_file_writer.h"

namespace fs = std::filesystem;

namespace {

// Size of the largest temporary file (unfinished writes start with a dot), -1 if none.
long long LargestTemporary(const fs::path& dir) {
  long long largest = -1;
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(dir))
    if (e.path().filename().string()[0] == '.') largest = std::max(largest, static_cast<long long>(e.file_size(ec)));
  return largest;
}

// Starts lirenza-cli with its output thrown away and SIGINT and SIGTERM at their default
// actions, as a terminal starts it (a runner in the background may ignore SIGINT).
pid_t Start(std::vector<std::string> args) {
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::signal(SIGINT, SIG_DFL);
    ::signal(SIGTERM, SIG_DFL);
    const int null = ::open("/dev/null", O_WRONLY);
    ::dup2(null, STDOUT_FILENO);
    ::dup2(null, STDERR_FILENO);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  return pid;
}

// Writes a soft tone and returns the major format and length libsndfile reads back.
std::pair<int, sf_count_t> WriteAndReadBack(const fs::path& path, long frames) {
  lirenza::SoundFileWriter writer;
  std::string error;
  EXPECT_TRUE(writer.Open(path.string(), lirenza::SoundFileType::Wav, 44100, &error)) << error;
  constexpr long kBlock = 1 << 16;
  std::vector<float> block(2 * kBlock);
  for (long i = 0; i < 2 * kBlock; ++i) block[i] = (i / 2 % 100) / 200.0f;
  for (long done = 0; done < frames; done += kBlock)
    if (!writer.Write(block.data(), std::min(kBlock, frames - done), &error)) return {0, -1};
  EXPECT_TRUE(writer.Commit(&error)) << error;
  SF_INFO info{};
  SNDFILE* back = sf_open(path.c_str(), SFM_READ, &info);
  if (!back) return {0, -1};
  sf_close(back);
  return {info.format & SF_FORMAT_TYPEMASK, info.frames};
}

}  // namespace

using SoundFileWriting = lirenza::test::CliTest;

TEST_F(SoundFileWriting, ARenderEndedBySignalLeavesNoTemporaryFile) {
  std::string tokens;
  for (int i = 0; i < 500; ++i) tokens += "C5C1 D5C1 E5C1 G4C1 ";
  ASSERT_EQ(Run({"kestra", tokens, "-o", S("long.note")}).exit, 0);
  for (int signal : {SIGINT, SIGTERM}) {
    const pid_t render = Start({std::getenv("LIRENZA_CLI"), "render", S("long.note"), "-o", S("long.wav"), "--tempo", "0", "--quiet"});
    ASSERT_GT(render, 0);
    // Interrupt once the render is well into its temporary file (ten minutes of sound take seconds).
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (LargestTemporary(dir) < (1 << 20) && std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    ASSERT_GE(LargestTemporary(dir), 1 << 20) << "the render never started writing";
    ::kill(render, signal);
    int status = 0;
    while (::waitpid(render, &status, 0) < 0 && errno == EINTR) {
    }
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << strsignal(signal) << ", status " << status;
    EXPECT_EQ(LargestTemporary(dir), -1) << strsignal(signal) << " left a temporary file";
    EXPECT_FALSE(fs::exists(P("long.wav"))) << "an interrupted render puts no file in place";
  }
}

TEST(SoundFileSize, ASmallWavIsPlainRiffWave) {
  const fs::path path = fs::temp_directory_path() / ("lirenza-small-" + std::to_string(::getpid()) + ".wav");
  const auto [format, frames] = WriteAndReadBack(path, 100000);
  const std::string header = lirenza::test::Slurp(path).substr(0, 22);
  fs::remove(path);
  EXPECT_EQ(format, SF_FORMAT_WAV);
  EXPECT_EQ(frames, 100000);
  // Format tag 1, plain PCM: the simplest readers know no other.
  EXPECT_EQ(header.substr(0, 4) + header.substr(8, 8) + header.substr(20), std::string("RIFFWAVEfmt \x01\x00", 14));
}

// Writes more than 4 GiB, so it runs only when asked for:
//   LIRENZA_LARGE_WAV_DIR=/somewhere/with/5GB/free ./test_platform --gtest_filter='*4GB*'
TEST(SoundFileSize, AWavPast4GBKeepsItsLengthAsRf64) {
  const char* where = std::getenv("LIRENZA_LARGE_WAV_DIR");
  if (!where) GTEST_SKIP() << "set LIRENZA_LARGE_WAV_DIR to write a 4.3 GB file";
  const fs::path path = fs::path(where) / "past-4GB.wav";
  const long frames = (4L << 30) / 4 + 44100L * 60;  // a minute past the 32-bit limit
  const auto [format, length] = WriteAndReadBack(path, frames);
  fs::remove(path);
  EXPECT_EQ(format, SF_FORMAT_RF64);
  EXPECT_EQ(length, frames);
}
