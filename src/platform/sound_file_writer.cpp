#include "platform/sound_file_writer.h"

#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace lirenza {

bool SoundFileTypeOf(const std::string& path, SoundFileType* type) {
  std::string ext = std::filesystem::path(path).extension().string();
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
  if (ext == ".wav") *type = SoundFileType::Wav;
  else if (ext == ".flac") *type = SoundFileType::Flac;
  else return false;
  return true;
}

SoundFileWriter::~SoundFileWriter() { Abort(); }

bool SoundFileWriter::Open(const std::string& path, SoundFileType type, int sampleRate, std::string* error) {
  namespace fs = std::filesystem;
  Abort();
  const fs::path target(path);
  std::error_code ec;
  if (fs::is_directory(target, ec)) {
    if (error) *error = "cannot write " + path + ": it is a folder";
    return false;
  }
  fs::path dir = target.parent_path();
  if (dir.empty()) dir = ".";
  std::string tmpl = (dir / ("." + target.filename().string() + ".XXXXXX")).string();
  int fd = ::mkstemp(tmpl.data());
  if (fd < 0) {
    if (error) *error = "cannot write in " + dir.string() + ": " + std::strerror(errno);
    return false;
  }
  // A new file gets the permissions any file the user creates would get.
  mode_t mask = ::umask(0);
  ::umask(mask);
  ::fchmod(fd, 0666 & ~mask);
  SF_INFO info{};
  info.samplerate = sampleRate;
  info.channels = 2;
  info.format = (type == SoundFileType::Flac ? SF_FORMAT_FLAC : SF_FORMAT_WAV) | SF_FORMAT_PCM_16;
  file_ = sf_open_fd(fd, SFM_WRITE, &info, SF_TRUE);
  if (!file_) {
    if (error) *error = "cannot write " + path + ": " + sf_strerror(nullptr);
    ::close(fd);
    ::unlink(tmpl.c_str());
    return false;
  }
  sf_command(file_, SFC_SET_CLIPPING, nullptr, SF_TRUE);
  path_ = path;
  temp_ = tmpl;
  return true;
}

bool SoundFileWriter::Write(const float* interleaved, long frames, std::string* error) {
  if (!file_) return false;
  if (sf_writef_float(file_, interleaved, frames) != frames) {
    if (error) *error = "cannot write " + path_ + ": " + sf_strerror(file_);
    Abort();
    return false;
  }
  return true;
}

bool SoundFileWriter::Commit(std::string* error) {
  if (!file_) return false;
  sf_write_sync(file_);
  const int closed = sf_close(file_);
  file_ = nullptr;
  if (closed != 0 || std::rename(temp_.c_str(), path_.c_str()) != 0) {
    if (error) *error = "cannot write " + path_ + ": " + std::strerror(errno);
    ::unlink(temp_.c_str());
    temp_.clear();
    return false;
  }
  temp_.clear();
  return true;
}

void SoundFileWriter::Abort() {
  if (file_) sf_close(file_);
  file_ = nullptr;
  if (!temp_.empty()) ::unlink(temp_.c_str());
  temp_.clear();
}

}  // namespace lirenza
