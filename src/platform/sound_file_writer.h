#pragma once
// Writes a rendered sound to WAV or FLAC (16-bit stereo) through AtomicFile: a failed
// or interrupted render leaves no half-written file and never destroys an old one. A
// WAV stays plain PCM RIFF/WAVE, which every program reads, until its sizes would no
// longer fit in 32 bits; then it becomes RF64 instead of wrapping.
#include <memory>
#include <string>

#include "files/file_io.h"

typedef struct sf_private_tag SNDFILE;

namespace lirenza {

enum class SoundFileType { Wav, Flac };

// The type a file name asks for (".wav", ".flac", any case); false for others.
bool SoundFileTypeOf(const std::string& path, SoundFileType* type);

class SoundFileWriter {
 public:
  SoundFileWriter() = default;
  ~SoundFileWriter();  // an uncommitted file is removed
  SoundFileWriter(const SoundFileWriter&) = delete;
  SoundFileWriter& operator=(const SoundFileWriter&) = delete;

  // Creates the temporary file. False with a one-sentence reason in *error.
  bool Open(const std::string& path, SoundFileType type, int sampleRate, std::string* error);
  // Interleaved stereo frames, -1 to 1 (louder is clipped, not wrapped).
  bool Write(const float* interleaved, long frames, std::string* error);
  // Closes the file and puts it in place.
  bool Commit(std::string* error);
  void Abort();

 private:
  bool MoveToRf64(std::string* error);

  SNDFILE* file_ = nullptr;
  std::unique_ptr<AtomicFile> out_;
  std::string path_;
  SoundFileType type_ = SoundFileType::Wav;
  int sampleRate_ = 0;
  long long frames_ = 0;
  bool rf64_ = false;
};

}  // namespace lirenza
