#pragma once
// The live audio output of the synthesizer. A playing instrument wants a short
// buffer: 2 to 4 periods of 64 to 256 frames, where Debian's FluidSynth would ask for
// 16 periods of 64. Every block played passes the live limiter, so held chords never
// clip. Without any output (no sound card, no sound server) the synth is driven in real
// time into nothing while a note sounds, so every player keeps taking its calls, and
// sleeps while nothing sounds.
#include <memory>
#include <string>
#include <vector>

#include "platform/sound_level.h"

typedef struct _fluid_audio_driver_t fluid_audio_driver_t;

namespace lirenza {

class Synth;

inline constexpr const char* kAudioDriverEnv = "LIRENZA_AUDIO_DRIVER";
// With the "file" driver: where to keep what a listener would have heard, as raw
// interleaved 16-bit little-endian stereo at the synthesizer's rate, in real time.
inline constexpr const char* kAudioCaptureEnv = "LIRENZA_AUDIO_CAPTURE";

struct AudioSettings {
  std::string driver;   // "" picks the first sound server or card that is there
  int periodSize = 0;   // frames; 0 takes the driver's default below
  int periods = 0;      // 0 takes the driver's default below
};

// Period size and count that suit a driver: short enough to play, long enough not to
// crackle on a busy desktop.
AudioSettings DefaultAudioSettings(const std::string& driver);
// Fills what was left at 0.
AudioSettings Completed(const AudioSettings& settings);

// The drivers worth trying on this computer, best first, without opening any: a
// sound server whose socket exists, then ALSA when a PCM device exists.
std::vector<std::string> AudioDriverCandidates();

// Milliseconds of sound that the driver's buffer holds.
double BufferMilliseconds(const AudioSettings& settings, double sampleRate);

// What every live output plays: the synthesizer's next block, reverb and chorus mixed
// in, through the live limiter. One thread renders at a time.
class LiveSound {
 public:
  explicit LiveSound(Synth& synth);
  // Fills `frames` frames of planar stereo; false when the synthesizer failed.
  bool Render(float* left, float* right, int frames);
  double LargestReductionDb() const { return limiter_.LargestReductionDb(); }

 private:
  Synth& synth_;
  LiveLimiter limiter_;
};

class PacedSink;

// The name Driver() gives the silent sink.
inline constexpr const char* kSilentDriver = "silent";

class AudioOutput {
 public:
  AudioOutput();
  ~AudioOutput();
  AudioOutput(const AudioOutput&) = delete;
  AudioOutput& operator=(const AudioOutput&) = delete;

  // Opens the settings' driver, or the candidates in turn; when none opens, the
  // silent real-time sink. Slow drivers make this slow: call it off the UI thread.
  void Open(Synth& synth, const AudioSettings& settings);
  void Close();

  bool Audible() const { return audible_; }
  const std::string& Driver() const { return driver_; }
  const AudioSettings& Settings() const { return settings_; }
  // Why there is no sound, in one line; empty when there is.
  const std::string& Problem() const { return problem_; }

 private:
  bool TryDriver(Synth& synth, const AudioSettings& settings, std::string* failure);

  fluid_audio_driver_t* handle_ = nullptr;
  std::unique_ptr<LiveSound> live_;  // what handle_ plays, when the driver takes a callback
  std::unique_ptr<PacedSink> paced_;
  bool audible_ = false;
  std::string driver_;
  std::string problem_;
  AudioSettings settings_;
};

// libasound writes its own complaints to stderr when there is no card; the program
// says once what matters instead.
void SilenceAlsaErrors();

}  // namespace lirenza
