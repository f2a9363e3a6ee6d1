#include "platform/audio_output.h"

#include <fluidsynth.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "platform/synth.h"

#ifdef LIRENZA_HAVE_ALSA
#include <alsa/asoundlib.h>
#endif

namespace lirenza {

namespace {

bool Exists(const std::filesystem::path& path) {
  std::error_code ec;
  return std::filesystem::exists(path, ec);
}

bool HasPulseServer() {
  if (const char* server = std::getenv("PULSE_SERVER"); server && *server) return true;
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  return runtime && *runtime && Exists(std::filesystem::path(runtime) / "pulse" / "native");
}

bool HasAlsaPcm() {
  std::error_code ec;
  std::filesystem::directory_iterator it("/dev/snd", ec), end;
  for (; !ec && it != end; it.increment(ec))
    if (it->path().filename().string().rfind("pcmC", 0) == 0) return true;
  return false;
}

#ifdef LIRENZA_HAVE_ALSA
void IgnoreAlsaError(const char*, int, const char*, int, const char*, ...) {}
#endif

}  // namespace

void SilenceAlsaErrors() {
#ifdef LIRENZA_HAVE_ALSA
  snd_lib_error_set_handler(IgnoreAlsaError);
#endif
}

AudioSettings DefaultAudioSettings(const std::string& driver) {
  AudioSettings s;
  s.driver = driver;
  if (driver == "pulseaudio" || driver == "sdl2") {
    // The server adds a buffer of its own; two of ours keep the sum short.
    s.periodSize = 256;
    s.periods = 2;
  } else if (driver == "file") {
    // Nobody listens: long periods only save wake-ups.
    s.periodSize = 512;
    s.periods = 2;
  } else {
    // ALSA, OSS, JACK: 3 × 128 frames, under 9 ms at 44.1 kHz, and a spare period
    // against a scheduler hiccup.
    s.periodSize = 128;
    s.periods = 3;
  }
  return s;
}

AudioSettings Completed(const AudioSettings& settings) {
  AudioSettings d = DefaultAudioSettings(settings.driver);
  if (settings.periodSize > 0) d.periodSize = settings.periodSize;
  if (settings.periods > 0) d.periods = settings.periods;
  return d;
}

std::vector<std::string> AudioDriverCandidates() {
  std::vector<std::string> drivers;
  if (HasPulseServer()) drivers.push_back("pulseaudio");
  if (HasAlsaPcm()) drivers.push_back("alsa");
  return drivers;
}

double BufferMilliseconds(const AudioSettings& settings, double sampleRate) {
  return 1000.0 * settings.periodSize * settings.periods / sampleRate;
}

AudioOutput::~AudioOutput() { Close(); }

void AudioOutput::Close() {
  if (handle_) delete_fluid_audio_driver(handle_);
  handle_ = nullptr;
  audible_ = false;
}

bool AudioOutput::TryDriver(Synth& synth, const AudioSettings& wanted) {
  const AudioSettings s = Completed(wanted);
  fluid_settings_t* fs = synth.Settings();
  fluid_settings_setstr(fs, "audio.driver", s.driver.c_str());
  fluid_settings_setint(fs, "audio.period-size", s.periodSize);
  fluid_settings_setint(fs, "audio.periods", s.periods);
  if (s.driver == "file") {
    fluid_settings_setstr(fs, "audio.file.name", "/dev/null");
    fluid_settings_setstr(fs, "audio.file.type", "raw");
  }
  handle_ = new_fluid_audio_driver(fs, synth.Raw());
  if (!handle_) return false;
  settings_ = s;
  driver_ = s.driver;
  return true;
}

void AudioOutput::Open(Synth& synth, const AudioSettings& settings) {
  Close();
  SilenceAlsaErrors();
  std::vector<std::string> tried;
  std::vector<std::string> drivers =
      settings.driver.empty() ? AudioDriverCandidates() : std::vector<std::string>{settings.driver};
  std::string failure;
  for (const auto& name : drivers) {
    AudioSettings s = settings;
    s.driver = name;
    if (TryDriver(synth, s)) {
      audible_ = name != "file";
      problem_.clear();
      return;
    }
    tried.push_back(name);
    failure = LastFluidError();
    std::replace(failure.begin(), failure.end(), '\n', ' ');
  }
  if (tried.empty()) {
    problem_ = "no sound: this computer has no sound card or sound server, so Lirenza plays silently";
  } else {
    std::string names;
    for (const auto& t : tried) names += (names.empty() ? "" : ", ") + t;
    problem_ = "no sound: the audio output could not be opened (" + names + (failure.empty() ? "" : ": " + failure) +
               "), so Lirenza plays silently";
  }
  // Driven in real time into /dev/null: the players still take every call at the
  // pace of a real card, and nothing spins.
  TryDriver(synth, AudioSettings{"file", 0, 0});
}

}  // namespace lirenza
