#pragma once
// Writes a rendered sound to WAV or FLAC (16-bit stereo) through AtomicFile: a failed
// or interrupted render leaves no half-written file and never destroys an old one. A
// WAV that outgrows 4 GB becomes RF64 instead of wrapping its 32-bit sizes; a smaller
// one stays plain RIFF/WAVE.
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
  SNDFILE* file_ = nullptr;
  AtomicFile out_;
  std::string path_;
};

}  // namespace lirenza
