// Saving never destroys the old file: a write either lands whole or not at all, and what
// the name stands for (a link, a device, a FIFO, standard output) stays what it was.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <thread>

#include "files/file_io.h"

using namespace lirenza;
namespace fs = std::filesystem;

namespace {
struct TempDir {
  fs::path path;
  TempDir() {
    char tmpl[] = "/tmp/lirenza-io-XXXXXX";
    path = ::mkdtemp(tmpl);
  }
  ~TempDir() {
    std::error_code ec;
    fs::permissions(path, fs::perms::owner_all, ec);
    fs::remove_all(path, ec);
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(path)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
};

std::string Slurp(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

mode_t ModeOf(const fs::path& path) {
  struct stat st {};
  EXPECT_EQ(::stat(path.c_str(), &st), 0) << path;
  return st.st_mode & 07777;
}

// Reads a FIFO to its end on another thread, as the program at the other end would.
struct FifoReader {
  std::string got;
  std::thread thread;
  explicit FifoReader(const fs::path& fifo)
      : thread([this, fifo] {
          const int fd = ::open(fifo.c_str(), O_RDONLY);
          char buffer[4096];
          ssize_t n;
          while ((n = ::read(fd, buffer, sizeof buffer)) > 0) got.append(buffer, n);
          ::close(fd);
        }) {}
  std::string Wait() {
    thread.join();
    return got;
  }
};
}  // namespace

TEST(FileIo, ReplacesARegularFileKeepingItsModeAndLeavesNoTemporary) {
  TempDir dir;
  const fs::path file = dir.path / "score.note";
  std::string error;
  for (mode_t mode : {0600, 0640, 0755}) {
    std::ofstream(file) << "old";
    ::chmod(file.c_str(), mode);
    ASSERT_TRUE(WriteFileAtomically(file.string(), std::string_view("new, longer"), &error)) << error;
    EXPECT_EQ(Slurp(file), "new, longer");
    EXPECT_EQ(ModeOf(file), mode) << std::oct << mode;
  }
  EXPECT_EQ(dir.Names(), std::vector<std::string>{"score.note"}) << "no temporary file is left behind";

  // A new file takes the umask in force, whatever it is, and the umask is left as it was.
  const mode_t before = ::umask(027);
  ASSERT_TRUE(WriteFileAtomically((dir.path / "fresh.mid").string(), std::vector<std::uint8_t>{1, 2}, &error));
  EXPECT_EQ(::umask(before), 027);
  EXPECT_EQ(ModeOf(dir.path / "fresh.mid"), 0640u);
}

TEST(FileIo, WritesThroughLinksAndInPlaceOnDevicesFifosAndStandardOutput) {
  TempDir dir;
  std::string error;
  struct Row {
    const char* name;
    std::function<std::string()> prepare;  // returns the path to write
    std::function<void(const std::string& written)> check;
  };
  std::unique_ptr<FifoReader> reader;
  const Row rows[] = {
      {"link to an existing file",
       [&] {
         std::ofstream(dir.path / "real.mid") << "old";
         ::chmod((dir.path / "real.mid").c_str(), 0600);
         fs::create_symlink("real.mid", dir.path / "link.mid");
         return (dir.path / "link.mid").string();
       },
       [&](const std::string& written) {
         EXPECT_TRUE(fs::is_symlink(dir.path / "link.mid"));
         EXPECT_EQ(Slurp(dir.path / "real.mid"), written);
         EXPECT_EQ(ModeOf(dir.path / "real.mid"), 0600u);
       }},
      {"chain of links, one absolute, to a file still to be made",
       [&] {
         fs::create_directory(dir.path / "sub");
         fs::create_symlink(dir.path / "sub" / "hop.mid", dir.path / "first.mid");
         fs::create_symlink("made.mid", dir.path / "sub" / "hop.mid");
         return (dir.path / "first.mid").string();
       },
       [&](const std::string& written) {
         EXPECT_TRUE(fs::is_symlink(dir.path / "first.mid"));
         EXPECT_TRUE(fs::is_symlink(dir.path / "sub" / "hop.mid"));
         EXPECT_EQ(Slurp(dir.path / "sub" / "made.mid"), written);
       }},
      {"/dev/null", [] { return std::string("/dev/null"); },
       [](const std::string&) { EXPECT_TRUE(fs::is_character_file("/dev/null")); }},
      {"FIFO",
       [&] {
         ::mkfifo((dir.path / "pipe.mid").c_str(), 0600);
         reader = std::make_unique<FifoReader>(dir.path / "pipe.mid");
         return (dir.path / "pipe.mid").string();
       },
       [&](const std::string& written) {
         EXPECT_EQ(reader->Wait(), written);
         EXPECT_TRUE(fs::is_fifo(dir.path / "pipe.mid"));
       }},
  };
  for (const Row& row : rows) {
    const std::string path = row.prepare();
    const std::string bytes = std::string("bytes for ") + row.name;
    EXPECT_TRUE(WriteFileAtomically(path, bytes, &error)) << row.name << ": " << error;
    row.check(bytes);
    for (const auto& name : dir.Names()) EXPECT_NE(name[0], '.') << row.name << " left " << name;
  }

  // "-" is standard output, which is not closed by the write.
  const fs::path captured = dir.path / "stdout";
  std::fflush(stdout);
  const int saved = ::dup(STDOUT_FILENO);
  const int sink = ::open(captured.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  ::dup2(sink, STDOUT_FILENO);
  const bool wrote = WriteFileAtomically("-", std::string_view("to stdout"), &error);
  const bool stillOpen = ::write(STDOUT_FILENO, "!", 1) == 1;
  ::dup2(saved, STDOUT_FILENO);
  ::close(saved);
  ::close(sink);
  EXPECT_TRUE(wrote) << error;
  EXPECT_TRUE(stillOpen);
  EXPECT_EQ(Slurp(captured), "to stdout!");
  EXPECT_FALSE(fs::exists("-"));
}

TEST(FileIo, ASeekingWriterReachesAFifoWholeOnCommitAndNotAtAllOnAbort) {
  TempDir dir;
  const fs::path fifo = dir.path / "sound.wav";
  ::mkfifo(fifo.c_str(), 0600);
  std::string error;
  for (bool commit : {true, false}) {
    FifoReader reader(fifo);
    {
      AtomicFile file;
      ASSERT_TRUE(file.Open(fifo.string(), &error, /*seekable=*/true)) << error;
      ASSERT_TRUE(file.WriteAll("size=? body", &error));
      ASSERT_EQ(::lseek(file.fd(), 5, SEEK_SET), 5) << "the writer can go back to its header";
      ASSERT_TRUE(file.WriteAll("11", &error));
      if (commit) {
        EXPECT_TRUE(file.Commit(&error)) << error;
      }
    }
    EXPECT_EQ(reader.Wait(), commit ? "size=11body" : "");
  }
}

TEST(FileIo, AnAbandonedWriteLeavesTheOldFileAndNoTemporary) {
  TempDir dir;
  const fs::path file = dir.path / "keep.wav";
  std::ofstream(file) << "precious";
  std::string error;
  {
    AtomicFile out;
    ASSERT_TRUE(out.Open(file.string(), &error));
    ASSERT_TRUE(out.WriteAll("half", &error));
    EXPECT_EQ(dir.Names().size(), 2u) << "the temporary file sits beside the target";
  }
  EXPECT_EQ(Slurp(file), "precious");
  EXPECT_EQ(dir.Names(), std::vector<std::string>{"keep.wav"});
}

TEST(FileIo, FailuresSayWhyAndLeaveTheOldFile) {
  TempDir dir;
  const std::string file = (dir.path / "keep.note").string();
  std::string error;
  ASSERT_TRUE(WriteFileAtomically(file, std::string_view("precious"), &error));

  EXPECT_FALSE(WriteFileAtomically((dir.path / "no" / "such" / "x.note").string(), std::string_view("x"), &error));
  EXPECT_NE(error.find("cannot write in"), std::string::npos) << error;

  if (::geteuid() != 0) {  // root may write anywhere
    fs::permissions(dir.path, fs::perms::owner_read | fs::perms::owner_exec);
    error.clear();
    EXPECT_FALSE(WriteFileAtomically(file, std::string_view("replacement"), &error));
    EXPECT_FALSE(error.empty());
    fs::permissions(dir.path, fs::perms::owner_all);
  }
  // Writing over a folder, or through a link that loops, fails and changes nothing.
  fs::create_directory(dir.path / "folder");
  fs::create_symlink("loop.mid", dir.path / "loop.mid");
  for (const char* name : {"folder", "loop.mid"}) {
    error.clear();
    EXPECT_FALSE(WriteFileAtomically((dir.path / name).string(), std::string_view("x"), &error)) << name;
    EXPECT_NE(error.find(name), std::string::npos) << error;
  }
  EXPECT_TRUE(fs::is_directory(dir.path / "folder"));
  EXPECT_EQ(*ReadWholeFile(file, &error), "precious");
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"folder", "keep.note", "loop.mid"}));

  EXPECT_FALSE(ReadWholeFile((dir.path / "missing.note").string(), &error));
  EXPECT_NE(error.find("missing.note"), std::string::npos);
  EXPECT_FALSE(ReadWholeFile(dir.path.string(), &error));
}

TEST(FileIo, ReadingStopsAtTheSizeLimit) {
  TempDir dir;
  const fs::path file = dir.path / "score.note";
  std::ofstream(file) << std::string(100, 'x');
  std::string error;
  EXPECT_TRUE(ReadWholeFile(file.string(), &error, 100));
  EXPECT_FALSE(ReadWholeFile(file.string(), &error, 99));
  EXPECT_NE(error.find("larger than 99 bytes"), std::string::npos) << error;

  // An endless input is refused instead of filling the memory.
  error.clear();
  EXPECT_FALSE(ReadWholeFile("/dev/zero", &error));
  EXPECT_EQ(error, "/dev/zero is larger than 256 MB, far more than any score; give a score file instead.");
}

TEST(FileIo, IsSameFileComparesTheFileNotTheName) {
  TempDir dir;
  const fs::path a = dir.path / "a.note", b = dir.path / "b.note";
  std::ofstream(a) << "same text";
  std::ofstream(b) << "same text";
  fs::create_symlink("a.note", dir.path / "link.note");
  fs::create_hard_link(a, dir.path / "hard.note");
  struct Row {
    fs::path first, second;
    bool same;
  } rows[] = {
      {a, dir.path / "link.note", true},
      {a, dir.path / "hard.note", true},
      {a, b, false},
      {a, dir.path / "missing.note", false},
      {dir.path / "missing.note", dir.path / "missing.note", false},
  };
  for (const Row& r : rows)
    EXPECT_EQ(IsSameFile(r.first.string(), r.second.string()), r.same) << r.first << " " << r.second;
}
