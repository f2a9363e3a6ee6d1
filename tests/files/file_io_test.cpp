// Saving never destroys the old file: a write either lands whole or not at all.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

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
  std::size_t Entries() const { return std::distance(fs::directory_iterator(path), fs::directory_iterator()); }
};
}  // namespace

TEST(FileIo, WritesReplacesAndReadsBack) {
  TempDir dir;
  const std::string file = (dir.path / "score.note").string();
  std::string error;
  ASSERT_TRUE(WriteFileAtomically(file, std::string_view("first"), &error)) << error;
  ASSERT_TRUE(WriteFileAtomically(file, std::string_view("second, longer"), &error)) << error;
  auto back = ReadWholeFile(file, &error);
  ASSERT_TRUE(back);
  EXPECT_EQ(*back, "second, longer");
  EXPECT_EQ(dir.Entries(), 1u) << "no temporary file is left behind";
  struct stat st {};
  ASSERT_EQ(::stat(file.c_str(), &st), 0);
  EXPECT_TRUE(st.st_mode & S_IRUSR);
  EXPECT_TRUE(st.st_mode & S_IWUSR);
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
  // Writing over a folder fails and leaves the folder and the old file alone.
  fs::create_directory(dir.path / "folder");
  error.clear();
  EXPECT_FALSE(WriteFileAtomically((dir.path / "folder").string(), std::string_view("x"), &error));
  EXPECT_FALSE(error.empty());
  EXPECT_TRUE(fs::is_directory(dir.path / "folder"));
  EXPECT_EQ(*ReadWholeFile(file, &error), "precious");
  EXPECT_EQ(dir.Entries(), 2u);

  EXPECT_FALSE(ReadWholeFile((dir.path / "missing.note").string(), &error));
  EXPECT_NE(error.find("missing.note"), std::string::npos);
  EXPECT_FALSE(ReadWholeFile(dir.path.string(), &error));
}
