// Saving never destroys the old file: a write lands whole or not at all, and what the
// name stands for (a link, a device, a FIFO, standard output) stays what it was.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <thread>

#include "files/file_io.h"

using namespace lirenza;
namespace fs = std::filesystem;

class FileIo : public ::testing::Test {
 protected:
  std::string pattern = "/tmp/lirenza-io-XXXXXX";
  const std::string dir = ::mkdtemp(pattern.data());
  std::string error;
  ~FileIo() override { fs::remove_all(dir); }
  std::string P(const std::string& name) const { return dir + "/" + name; }
  bool Write(const std::string& path, std::string_view bytes) { return WriteFileAtomically(path, bytes, &error); }
  std::string Slurp(const std::string& name) { return ReadWholeFile(P(name), &error).value_or("(unread)"); }
  mode_t ModeOf(const std::string& name) const {
    struct stat st {};
    return ::stat(P(name).c_str(), &st) == 0 ? st.st_mode & 07777 : 0;
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(dir)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
  // Reads a FIFO to its end on another thread, as the program at the other end would.
  static std::string ReadFifoWhile(const std::string& fifo, const std::function<void()>& write) {
    std::string got;
    std::thread reader([&] {
      const int fd = ::open(fifo.c_str(), O_RDONLY);
      char buffer[4096];
      for (ssize_t n; (n = ::read(fd, buffer, sizeof buffer)) > 0;) got.append(buffer, n);
      ::close(fd);
    });
    write();
    reader.join();
    return got;
  }
};

TEST_F(FileIo, ReplacesAFileKeepingItsModeAndANewFileTakesTheUmask) {
  for (mode_t mode : {0600, 0640, 0755}) {
    std::ofstream(P("score.note")) << "old";
    ::chmod(P("score.note").c_str(), mode);
    ASSERT_TRUE(Write(P("score.note"), "new, longer")) << error;
    EXPECT_EQ(Slurp("score.note"), "new, longer");
    EXPECT_EQ(ModeOf("score.note"), mode) << std::oct << mode;
  }
  const mode_t before = ::umask(027);
  ASSERT_TRUE(WriteFileAtomically(P("fresh.mid"), std::vector<std::uint8_t>{1, 2}, &error));
  EXPECT_EQ(::umask(before), 027) << "the umask is left as it was";
  EXPECT_EQ(ModeOf("fresh.mid"), 0640u);
  EXPECT_EQ(Names(), (std::vector<std::string>{"fresh.mid", "score.note"})) << "no temporary is left";
}

TEST_F(FileIo, WritesThroughALinkAndInPlaceOnADeviceAFifoAndStandardOutput) {
  std::ofstream(P("real.mid")) << "old";
  ::chmod(P("real.mid").c_str(), 0600);
  fs::create_symlink("real.mid", P("link.mid"));
  EXPECT_TRUE(Write(P("link.mid"), "linked")) << error;
  EXPECT_TRUE(fs::is_symlink(P("link.mid")));
  EXPECT_EQ(Slurp("real.mid"), "linked");
  EXPECT_EQ(ModeOf("real.mid"), 0600u);
  EXPECT_TRUE(Write("/dev/null", "gone")) << error;
  EXPECT_TRUE(fs::is_character_file("/dev/null"));

  // A FIFO gets the bytes whole, even from a writer that goes back to patch its header,
  // and nothing at all from a write that is abandoned.
  const std::string fifo = P("pipe.wav");
  ::mkfifo(fifo.c_str(), 0600);
  EXPECT_EQ(ReadFifoWhile(fifo, [&] { Write(fifo, "p"); }), "p");
  for (bool commit : {true, false}) {
    EXPECT_EQ(ReadFifoWhile(fifo, [&] {
      AtomicFile file;
      ASSERT_TRUE(file.Open(fifo, &error, /*seekable=*/true)) << error;
      ASSERT_TRUE(file.WriteAll("size=? body", &error));
      ASSERT_EQ(::lseek(file.fd(), 5, SEEK_SET), 5);
      ASSERT_TRUE(file.WriteAll("11", &error));
      if (commit) { EXPECT_TRUE(file.Commit(&error)) << error; }
    }), commit ? "size=11body" : "");
  }
  EXPECT_TRUE(fs::is_fifo(fifo));
  EXPECT_EQ(Names(), (std::vector<std::string>{"link.mid", "pipe.wav", "real.mid"}));

  // "-" is standard output, which the write leaves open.
  std::fflush(stdout);
  const int saved = ::dup(STDOUT_FILENO);
  const int sink = ::open(P("out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  ::dup2(sink, STDOUT_FILENO);
  const bool wrote = Write("-", "to stdout");
  const bool stillOpen = ::write(STDOUT_FILENO, "!", 1) == 1;
  ::dup2(saved, STDOUT_FILENO);
  ::close(saved);
  ::close(sink);
  EXPECT_TRUE(wrote && stillOpen) << error;
  EXPECT_EQ(Slurp("out"), "to stdout!");
  EXPECT_FALSE(fs::exists("-"));
}

TEST_F(FileIo, AFailedOrAbandonedWriteSaysWhyAndLeavesTheOldFile) {
  ASSERT_TRUE(Write(P("keep.note"), "precious"));
  {
    AtomicFile out;
    ASSERT_TRUE(out.Open(P("keep.note"), &error));
    ASSERT_TRUE(out.WriteAll("half", &error));
  }
  int errorNumber = 0;
  EXPECT_FALSE(WriteFileAtomically(P("no/x.note"), "x", &error, &errorNumber));
  EXPECT_NE(error.find("cannot write in"), std::string::npos) << error;
  EXPECT_EQ(errorNumber, ENOENT);
  // A full disk refuses the bytes after the temporary file was made; it goes again.
  SimulateFullDisk(true);
  const bool writtenToFullDisk = WriteFileAtomically(P("keep.note"), "longer and newer", &error, &errorNumber);
  SimulateFullDisk(false);
  EXPECT_FALSE(writtenToFullDisk);
  EXPECT_EQ(errorNumber, ENOSPC) << error;
  fs::create_directory(P("folder"));
  fs::create_symlink("loop.mid", P("loop.mid"));
  for (const char* name : {"folder", "loop.mid"}) {
    EXPECT_FALSE(Write(P(name), "x")) << name;
    EXPECT_NE(error.find(name), std::string::npos) << error;
  }
  EXPECT_EQ(Slurp("keep.note"), "precious");
  EXPECT_EQ(Names(), (std::vector<std::string>{"folder", "keep.note", "loop.mid"}));
}

TEST_F(FileIo, ReadingStopsAtTheSizeLimit) {
  std::ofstream(P("score.note")) << std::string(100, 'x');
  EXPECT_TRUE(ReadWholeFile(P("score.note"), &error, 100));
  EXPECT_FALSE(ReadWholeFile(P("score.note"), &error, 99));
  EXPECT_NE(error.find("larger than 99 bytes"), std::string::npos) << error;
  EXPECT_FALSE(ReadWholeFile("/dev/zero", &error)) << "an endless input would fill the memory";
}

TEST_F(FileIo, IsSameFileComparesTheFileNotTheName) {
  std::ofstream(P("a")) << "same text";
  std::ofstream(P("b")) << "same text";
  fs::create_symlink("a", P("link"));
  fs::create_hard_link(P("a"), P("hard"));
  EXPECT_TRUE(IsSameFile(P("a"), P("link")) && IsSameFile(P("a"), P("hard")));
  EXPECT_FALSE(IsSameFile(P("a"), P("b")) || IsSameFile(P("a"), P("gone")) || IsSameFile(P("gone"), P("gone")));
}
