#include "files/file_io.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <mutex>

namespace lirenza {

namespace {

std::string Reason(const std::string& what, const std::string& path, int err) {
  return what + " " + path + ": " + std::strerror(err);
}

// ---- Temporary files that a signal must not leave behind ------------------------
//
// The handler may run at any moment on any thread, so it reads only fixed buffers and
// lock-free flags, and calls nothing but unlink, signal and raise.

enum SlotState : int { kFree = 0, kFilling = 1, kLive = 2 };
struct TemporarySlot {
  std::atomic<int> state{kFree};
  char path[PATH_MAX];
};
constexpr int kTemporarySlots = 16;
TemporarySlot g_temporaries[kTemporarySlots];
constexpr int kCleanedSignals[] = {SIGINT, SIGTERM, SIGHUP};

extern "C" void RemoveTemporariesAndEnd(int signal) {
  for (auto& slot : g_temporaries)
    if (slot.state.load() == kLive) ::unlink(slot.path);
  // End the way the signal would have ended us, so the parent sees it.
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void InstallSignalCleanup() {
  static std::once_flag once;
  std::call_once(once, [] {
    for (int signal : kCleanedSignals) {
      struct sigaction current {};
      if (::sigaction(signal, nullptr, &current) != 0) continue;
      // A program that handles or ignores the signal itself keeps doing so.
      if ((current.sa_flags & SA_SIGINFO) || current.sa_handler != SIG_DFL) continue;
      struct sigaction cleanup {};
      cleanup.sa_handler = RemoveTemporariesAndEnd;
      sigemptyset(&cleanup.sa_mask);
      for (int other : kCleanedSignals) sigaddset(&cleanup.sa_mask, other);
      ::sigaction(signal, &cleanup, nullptr);
    }
  });
}

// The slot that now names path, or -1 when all are taken (the file is then only
// removed by Abort, as before signals were handled).
int RegisterTemporary(const std::string& path) {
  if (path.size() >= PATH_MAX) return -1;
  InstallSignalCleanup();
  for (int i = 0; i < kTemporarySlots; ++i) {
    int expected = kFree;
    if (!g_temporaries[i].state.compare_exchange_strong(expected, kFilling)) continue;
    std::memcpy(g_temporaries[i].path, path.c_str(), path.size() + 1);
    g_temporaries[i].state.store(kLive);
    return i;
  }
  return -1;
}

void ForgetTemporary(int slot) {
  if (slot >= 0) g_temporaries[slot].state.store(kFree);
}

std::atomic<bool> g_simulateFullDisk{false};

// ---- Where a write lands --------------------------------------------------------

// The process's umask, read without changing it: setting it to read it back would race
// with every other thread that creates a file meanwhile.
mode_t CurrentUmask() {
  int fd = ::open("/proc/self/status", O_RDONLY | O_CLOEXEC);
  if (fd < 0) return 022;
  char text[4096];
  ssize_t got = ::read(fd, text, sizeof text - 1);
  ::close(fd);
  if (got <= 0) return 022;
  text[got] = '\0';
  const char* line = std::strstr(text, "\nUmask:");
  if (!line) return 022;
  char* end = nullptr;
  const unsigned long mask = std::strtoul(line + 7, &end, 8);
  return end == line + 7 ? 022 : static_cast<mode_t>(mask & 0777);
}

// Follows symbolic links to the name that finally holds the bytes, which need not
// exist yet (a link to a file still to be made).
bool ResolveLinks(const std::string& path, std::string* resolved, std::string* error) {
  namespace fs = std::filesystem;
  fs::path current(path);
  for (int hops = 0; hops < 40; ++hops) {
    struct stat st {};
    if (::lstat(current.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) {
      *resolved = current.string();
      return true;
    }
    char target[PATH_MAX];
    const ssize_t n = ::readlink(current.c_str(), target, sizeof target - 1);
    if (n < 0) {
      if (error) *error = Reason("cannot follow the link", path, errno);
      return false;
    }
    target[n] = '\0';
    fs::path next(target);
    current = next.is_absolute() ? next : current.parent_path() / next;
  }
  if (error) *error = Reason("cannot follow the link", path, ELOOP) + "; mend or remove the link.";
  return false;
}

bool WriteAllTo(int fd, const char* data, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t n = ::write(fd, data + done, size - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    done += static_cast<std::size_t>(n);
  }
  return true;
}

// A scratch file no one can see, for a writer that seeks in front of a target that
// cannot: it disappears with its descriptor whatever ends the process.
int OpenScratchFile() {
  const std::string dir = std::filesystem::temp_directory_path().string();
  int fd = ::open(dir.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (fd >= 0) return fd;
  std::string tmpl = dir + "/.lirenza-scratch.XXXXXX";
  fd = ::mkostemp(tmpl.data(), O_CLOEXEC);
  if (fd >= 0) ::unlink(tmpl.c_str());
  return fd;
}

}  // namespace

// ---- AtomicFile -------------------------------------------------------------------

AtomicFile::~AtomicFile() { Abort(); }

// Called straight after the call that failed, so errno still tells why.
bool AtomicFile::Fail(const std::string& reason, std::string* error) {
  errorNumber_ = errno;
  if (error) *error = reason;
  Abort();
  return false;
}

bool AtomicFile::Open(const std::string& path, std::string* error, bool seekable) {
  namespace fs = std::filesystem;
  Abort();
  errorNumber_ = 0;
  shownPath_ = path;
  int inPlaceFd = -1;
  if (path == "-") {
    inPlaceFd = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (inPlaceFd < 0) return Fail(Reason("cannot write", "to standard output", errno), error);
  } else {
    if (!ResolveLinks(path, &targetPath_, error)) {
      errorNumber_ = ELOOP;
      return false;
    }
    struct stat st {};
    const bool exists = ::stat(targetPath_.c_str(), &st) == 0;
    if (exists && S_ISDIR(st.st_mode)) {
      if (error) *error = "cannot write " + path + ": it is a folder; give a file name.";
      errorNumber_ = EISDIR;
      return false;
    }
    if (exists && !S_ISREG(st.st_mode)) {
      // A device or a FIFO is written as it is; replacing it would destroy it.
      inPlaceFd = ::open(targetPath_.c_str(), O_WRONLY | O_CLOEXEC);
      if (inPlaceFd < 0) return Fail(Reason("cannot write", path, errno), error);
    } else {
      fs::path dir = fs::path(targetPath_).parent_path();
      if (dir.empty()) dir = ".";
      std::string tmpl = (dir / ("." + fs::path(targetPath_).filename().string() + ".XXXXXX")).string();
      fd_ = ::mkostemp(tmpl.data(), O_CLOEXEC);
      if (fd_ < 0)
        return Fail(Reason("cannot write in", dir.string(), errno) + "; choose a folder that exists and that you may write in.",
                    error);
      tempPath_ = tmpl;
      kind_ = Kind::Replace;
      registrySlot_ = RegisterTemporary(tempPath_);
      // The replacement keeps the old file's mode (and owner, where we may set it); a
      // new file gets what any file the user creates would get.
      if (exists) {
        ::fchmod(fd_, st.st_mode & 07777);
        if ((st.st_uid != ::geteuid() || st.st_gid != ::getegid()) && ::fchown(fd_, st.st_uid, st.st_gid) != 0) {
          // Not ours to give away: the file becomes the writer's, as any new file would.
        }
      } else {
        ::fchmod(fd_, 0666 & ~CurrentUmask());
      }
      // Swapped only after the mode is set: the mode belongs to the temporary file.
      if (g_simulateFullDisk.load()) {
        const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
        if (full >= 0) {
          ::dup3(full, fd_, O_CLOEXEC);
          ::close(full);
        }
      }
      return true;
    }
  }
  if (seekable && ::lseek(inPlaceFd, 0, SEEK_CUR) < 0) {
    fd_ = OpenScratchFile();
    if (fd_ < 0) {
      const int err = errno;
      ::close(inPlaceFd);
      errno = err;
      return Fail(Reason("cannot make a scratch file in", fs::temp_directory_path().string(), err), error);
    }
    targetFd_ = inPlaceFd;
    kind_ = Kind::Spool;
  } else {
    fd_ = inPlaceFd;
    kind_ = Kind::InPlace;
  }
  return true;
}

bool AtomicFile::WriteAll(std::string_view bytes, std::string* error) {
  if (fd_ < 0) return false;
  if (!WriteAllTo(fd_, bytes.data(), bytes.size())) return Fail(Reason("cannot write", shownPath_, errno), error);
  return true;
}

bool AtomicFile::Commit(std::string* error) {
  if (fd_ < 0) return false;
  switch (kind_) {
    case Kind::Replace: {
      if (::fsync(fd_) != 0) return Fail(Reason("cannot write", shownPath_, errno), error);
      const int closed = ::close(fd_);
      fd_ = -1;
      if (closed != 0) return Fail(Reason("cannot write", shownPath_, errno), error);
      if (::rename(tempPath_.c_str(), targetPath_.c_str()) != 0)
        return Fail(Reason("cannot write", shownPath_, errno), error);
      // Forgotten only now: a signal before the rename must still remove it.
      ForgetTemporary(registrySlot_);
      registrySlot_ = -1;
      tempPath_.clear();
      break;
    }
    case Kind::Spool: {
      if (::lseek(fd_, 0, SEEK_SET) != 0) return Fail(Reason("cannot write", shownPath_, errno), error);
      char buffer[65536];
      for (;;) {
        const ssize_t got = ::read(fd_, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return Fail(Reason("cannot write", shownPath_, errno), error);
        if (got == 0) break;
        if (!WriteAllTo(targetFd_, buffer, static_cast<std::size_t>(got)))
          return Fail(Reason("cannot write", shownPath_, errno), error);
      }
      const int closed = ::close(targetFd_);
      targetFd_ = -1;
      if (closed != 0) return Fail(Reason("cannot write", shownPath_, errno), error);
      ::close(fd_);
      fd_ = -1;
      break;
    }
    case Kind::InPlace: {
      const int closed = ::close(fd_);
      fd_ = -1;
      if (closed != 0) return Fail(Reason("cannot write", shownPath_, errno), error);
      break;
    }
    case Kind::None:
      return false;
  }
  kind_ = Kind::None;
  return true;
}

void AtomicFile::Abort() {
  if (fd_ >= 0) ::close(fd_);
  if (targetFd_ >= 0) ::close(targetFd_);
  fd_ = targetFd_ = -1;
  if (!tempPath_.empty()) ::unlink(tempPath_.c_str());
  ForgetTemporary(registrySlot_);
  registrySlot_ = -1;
  tempPath_.clear();
  kind_ = Kind::None;
}

// ---- Whole files ----------------------------------------------------------------

std::optional<std::string> ReadWholeFile(const std::string& path, std::string* error, std::size_t maxBytes) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) {
    if (error) *error = Reason("cannot read", path, EISDIR);
    return std::nullopt;
  }
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    if (error) *error = Reason("cannot open", path, errno);
    return std::nullopt;
  }
  std::string data;
  char buffer[65536];
  for (;;) {
    const ssize_t got = ::read(fd, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      const int err = errno;
      ::close(fd);
      if (error) *error = Reason("cannot read", path, err);
      return std::nullopt;
    }
    if (got == 0) break;
    if (data.size() + static_cast<std::size_t>(got) > maxBytes) {
      ::close(fd);
      const std::string limit = maxBytes >= (std::size_t{1} << 20) ? std::to_string(maxBytes >> 20) + " MB"
                                                                    : std::to_string(maxBytes) + " bytes";
      if (error) *error = path + " is larger than " + limit + ", far more than any score; give a score file instead.";
      return std::nullopt;
    }
    data.append(buffer, static_cast<std::size_t>(got));
  }
  ::close(fd);
  return data;
}

bool WriteFileAtomically(const std::string& path, std::string_view bytes, std::string* error, int* errorNumber) {
  AtomicFile file;
  const bool written = file.Open(path, error) && file.WriteAll(bytes, error) && file.Commit(error);
  if (errorNumber) *errorNumber = written ? 0 : file.ErrorNumber();
  return written;
}

bool WriteFileAtomically(const std::string& path, const std::vector<std::uint8_t>& bytes, std::string* error,
                         int* errorNumber) {
  return WriteFileAtomically(
      path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()), error, errorNumber);
}

void SimulateFullDisk(bool on) { g_simulateFullDisk.store(on); }

bool IsSameFile(const std::string& a, const std::string& b) {
  struct stat first {}, second {};
  if (::stat(a.c_str(), &first) != 0 || ::stat(b.c_str(), &second) != 0) return false;
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace lirenza
