#include "platform/sound_file_writer.h"

#include <sndfile.h>

#include <algorithm>
#include <filesystem>
#include <vector>

namespace lirenza {

bool SoundFileTypeOf(const std::string& path, SoundFileType* type) {
  std::string ext = std::filesystem::path(path).extension().string();
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
  if (ext == ".wav") *type = SoundFileType::Wav;
  else if (ext == ".flac") *type = SoundFileType::Flac;
  else return false;
  return true;
}

namespace {
constexpr long long kBytesPerFrame = 4;  // 16-bit stereo
// What a plain WAV's 32-bit sizes can hold, less room for the header.
constexpr long long kPlainWavBytes = 0xFFFFFFFFLL - 4096;

SNDFILE* OpenSound(int fd, int format, int sampleRate, const std::string& path, std::string* error) {
  SF_INFO info{};
  info.samplerate = sampleRate;
  info.channels = 2;
  info.format = format | SF_FORMAT_PCM_16;
  SNDFILE* file = sf_open_fd(fd, SFM_WRITE, &info, SF_FALSE);
  if (!file) {
    if (error) *error = "cannot write " + path + ": " + sf_strerror(nullptr);
    return nullptr;
  }
  sf_command(file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
  return file;
}
}  // namespace

SoundFileWriter::~SoundFileWriter() { Abort(); }

bool SoundFileWriter::Open(const std::string& path, SoundFileType type, int sampleRate, std::string* error) {
  Abort();
  out_ = std::make_unique<AtomicFile>();
  // libsndfile goes back to fill in the header, so the target must seek.
  if (!out_->Open(path, error, /*seekable=*/true)) return false;
  file_ = OpenSound(out_->fd(), type == SoundFileType::Flac ? SF_FORMAT_FLAC : SF_FORMAT_WAV, sampleRate, path,
                    error);
  if (!file_) {
    out_->Abort();
    return false;
  }
  path_ = path;
  type_ = type;
  sampleRate_ = sampleRate;
  frames_ = 0;
  rf64_ = false;
  return true;
}

// Copies the plain WAV written so far into an RF64 file, which carries 64-bit sizes.
// It happens once, past six hours of sound, and costs a copy of 4 GB; every shorter
// render stays a plain WAV.
bool SoundFileWriter::MoveToRf64(std::string* error) {
  sf_close(file_);
  file_ = nullptr;
  auto larger = std::make_unique<AtomicFile>();
  if (!larger->Open(path_, error, /*seekable=*/true)) return false;
  SNDFILE* rf64 = OpenSound(larger->fd(), SF_FORMAT_RF64, sampleRate_, path_, error);
  if (!rf64) return false;
  SF_INFO info{};
  SNDFILE* plain = ::lseek(out_->fd(), 0, SEEK_SET) == 0 ? sf_open_fd(out_->fd(), SFM_READ, &info, SF_FALSE) : nullptr;
  bool copied = plain != nullptr;
  std::vector<short> block(2 * 65536);
  sf_count_t got = 0;
  while (copied && (got = sf_readf_short(plain, block.data(), 65536)) > 0)
    copied = sf_writef_short(rf64, block.data(), got) == got;
  if (plain) sf_close(plain);
  if (!copied || info.frames != frames_) {
    if (error) *error = "cannot write " + path_ + ": the sound outgrew a WAV and could not be moved to RF64; render to .flac instead.";
    sf_close(rf64);
    return false;
  }
  out_ = std::move(larger);  // the plain temporary file goes with the old writer
  file_ = rf64;
  rf64_ = true;
  return true;
}

bool SoundFileWriter::Write(const float* interleaved, long frames, std::string* error) {
  if (!file_) return false;
  if (type_ == SoundFileType::Wav && !rf64_ && (frames_ + frames) * kBytesPerFrame > kPlainWavBytes &&
      !MoveToRf64(error)) {
    Abort();
    return false;
  }
  if (sf_writef_float(file_, interleaved, frames) != frames) {
    if (error) *error = "cannot write " + path_ + ": " + sf_strerror(file_);
    Abort();
    return false;
  }
  frames_ += frames;
  return true;
}

bool SoundFileWriter::Commit(std::string* error) {
  if (!file_) return false;
  const int closed = sf_close(file_);  // writes the final header
  file_ = nullptr;
  if (closed != 0) {
    if (error) *error = "cannot write " + path_ + ": " + sf_error_number(closed);
    out_->Abort();
    return false;
  }
  return out_->Commit(error);
}

void SoundFileWriter::Abort() {
  if (file_) sf_close(file_);
  file_ = nullptr;
  if (out_) out_->Abort();
}

}  // namespace lirenza
