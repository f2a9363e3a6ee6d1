#include "platform/sound_file_writer.h"

#include <sndfile.h>

#include <algorithm>
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
  Abort();
  // libsndfile goes back to fill in the header, so the target must seek.
  if (!out_.Open(path, error, /*seekable=*/true)) return false;
  SF_INFO info{};
  info.samplerate = sampleRate;
  info.channels = 2;
  info.format = (type == SoundFileType::Flac ? SF_FORMAT_FLAC : SF_FORMAT_RF64) | SF_FORMAT_PCM_16;
  file_ = sf_open_fd(out_.fd(), SFM_WRITE, &info, SF_FALSE);
  if (!file_) {
    if (error) *error = "cannot write " + path + ": " + sf_strerror(nullptr);
    out_.Abort();
    return false;
  }
  // RF64 only when the sizes no longer fit in 32 bits; below that, plain WAV that
  // every program reads.
  if (type == SoundFileType::Wav) sf_command(file_, SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
  sf_command(file_, SFC_SET_CLIPPING, nullptr, SF_TRUE);
  path_ = path;
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
  const int closed = sf_close(file_);  // writes the final header
  file_ = nullptr;
  if (closed != 0) {
    if (error) *error = "cannot write " + path_ + ": " + sf_error_number(closed);
    out_.Abort();
    return false;
  }
  return out_.Commit(error);
}

void SoundFileWriter::Abort() {
  if (file_) sf_close(file_);
  file_ = nullptr;
  out_.Abort();
}

}  // namespace lirenza
