#include "files/file_io.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace lirenza {

namespace {
std::string Reason(const std::string& what, const std::string& path, int err) {
  return what + " " + path + ": " + std::strerror(err);
}
}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path, std::string* error) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) {
    if (error) *error = Reason("cannot read", path, EISDIR);
    return std::nullopt;
  }
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) {
    if (error) *error = Reason("cannot open", path, errno);
    return std::nullopt;
  }
  std::string data;
  char buf[65536];
  std::size_t got;
  while ((got = std::fread(buf, 1, sizeof buf, f)) > 0) data.append(buf, got);
  const bool failed = std::ferror(f);
  const int err = errno;
  std::fclose(f);
  if (failed) {
    if (error) *error = Reason("cannot read", path, err);
    return std::nullopt;
  }
  return data;
}

bool WriteFileAtomically(const std::string& path, std::string_view bytes, std::string* error) {
  namespace fs = std::filesystem;
  const fs::path target(path);
  fs::path dir = target.parent_path();
  if (dir.empty()) dir = ".";
  std::string tmpl = (dir / ("." + target.filename().string() + ".XXXXXX")).string();
  int fd = ::mkstemp(tmpl.data());
  if (fd < 0) {
    if (error) *error = Reason("cannot write in", dir.string(), errno);
    return false;
  }
  auto fail = [&](const char* what, const std::string& name) {
    const int err = errno;
    ::close(fd);
    ::unlink(tmpl.c_str());
    if (error) *error = Reason(what, name, err);
    return false;
  };
  std::size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      return fail("cannot write", path);
    }
    done += static_cast<std::size_t>(n);
  }
  // A new file gets the permissions any file the user creates would get.
  mode_t mask = ::umask(0);
  ::umask(mask);
  ::fchmod(fd, 0666 & ~mask);
  if (::fsync(fd) != 0) return fail("cannot write", path);
  if (::close(fd) != 0) {
    const int err = errno;
    ::unlink(tmpl.c_str());
    if (error) *error = Reason("cannot write", path, err);
    return false;
  }
  if (std::rename(tmpl.c_str(), path.c_str()) != 0) {
    const int err = errno;
    ::unlink(tmpl.c_str());
    if (error) *error = Reason("cannot write", path, err);
    return false;
  }
  return true;
}

bool WriteFileAtomically(const std::string& path, const std::vector<std::uint8_t>& bytes,
                         std::string* error) {
  return WriteFileAtomically(
      path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()), error);
}

}  // namespace lirenza
