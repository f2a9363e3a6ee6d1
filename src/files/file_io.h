#pragma once
// Whole-file reading and writing for scores, MIDI and sound files.
//
// Every write goes through AtomicFile. A regular file (or a new name) is written to a
// temporary file beside it and renamed over it only when complete, so a failed or
// interrupted save never destroys the old file or leaves half a new one. What is not a
// regular file is honoured as the user meant it: a symbolic link is written through to
// its target, a device or a FIFO is written in place, and "-" is standard output.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lirenza {

// No score comes anywhere near this; a larger input is a mistake such as /dev/zero.
inline constexpr std::size_t kMaxReadBytes = std::size_t{256} << 20;

// The file's bytes, or nothing with a one-sentence reason in *error. Stops reading
// past maxBytes and refuses the file rather than growing without bound.
std::optional<std::string> ReadWholeFile(const std::string& path, std::string* error,
                                         std::size_t maxBytes = kMaxReadBytes);

// Writes bytes to path through AtomicFile. False with a one-sentence reason in *error
// and, when errorNumber is given, the errno of the failure there, so a window can say
// why in the user's language.
bool WriteFileAtomically(const std::string& path, std::string_view bytes, std::string* error,
                         int* errorNumber = nullptr);
bool WriteFileAtomically(const std::string& path, const std::vector<std::uint8_t>& bytes,
                         std::string* error, int* errorNumber = nullptr);

// For tests of a full disk: while on, the temporary file of every replacement is
// swapped for /dev/full, so its writes fail with ENOSPC through the real write path.
void SimulateFullDisk(bool on);

// True when both names lead to the same file (same device and inode, links
// followed); false when either does not exist.
bool IsSameFile(const std::string& a, const std::string& b);

// One file being written. Open() gives a descriptor to write to; Commit() puts the
// file in place; Abort() or the destructor removes an uncommitted temporary file.
// While a temporary file exists, SIGINT, SIGTERM and SIGHUP remove it before the
// process ends by the signal as it would have without us.
class AtomicFile {
 public:
  AtomicFile() = default;
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // seekable: the writer goes back to patch what it wrote (a sound file's header).
  // A target that cannot seek (a FIFO, a pipe on standard output) then gets the bytes
  // from a scratch file when the write is committed.
  bool Open(const std::string& path, std::string* error, bool seekable = false);
  int fd() const { return fd_; }
  // Writes all of bytes to fd(). False with a reason in *error.
  bool WriteAll(std::string_view bytes, std::string* error);
  bool Commit(std::string* error);
  void Abort();
  // The errno of the last failure; 0 while nothing failed.
  int ErrorNumber() const { return errorNumber_; }

 private:
  enum class Kind { None, Replace, InPlace, Spool };
  bool Fail(const std::string& reason, std::string* error);

  Kind kind_ = Kind::None;
  int fd_ = -1;
  int targetFd_ = -1;       // the device, FIFO or standard output a spool file is copied to
  std::string shownPath_;   // the name the user gave, for messages
  std::string targetPath_;  // where the bytes land, links resolved
  std::string tempPath_;    // the temporary file of a replacement
  int registrySlot_ = -1;
  int errorNumber_ = 0;
};

}  // namespace lirenza
