#include "platform/audio_output.h"

#include <fluidsynth.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

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
  } else if (driver == "file" || driver == kSilentDriver) {
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

// Renders into nothing, a period at a time at the pace of a card, from the moment a
// note is given until no voice sounds; then it sleeps until the next note, so an idle
// program without sound wakes nobody.
class SilentSink : public SynthActivity {
 public:
  SilentSink(Synth& synth, const AudioSettings& settings)
      : synth_(synth),
        frames_(settings.periodSize),
        period_(std::chrono::duration<double>(settings.periodSize / synth.SampleRate())) {
    thread_ = std::thread([this] { Run(); });
    synth_.SetActivity(this);
  }

  ~SilentSink() override {
    synth_.SetActivity(nullptr);
    {
      std::lock_guard<std::mutex> lock(mutex_);
      stop_ = true;
    }
    woken_.notify_one();
    thread_.join();
  }

  void NoteGiven() override {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      noteGiven_ = true;
    }
    woken_.notify_one();
  }

 private:
  void Run() {
    std::vector<float> frames(2 * static_cast<std::size_t>(frames_));
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
      woken_.wait(lock, [this] { return noteGiven_ || stop_; });
      if (stop_) return;
      auto next = std::chrono::steady_clock::now();
      // A note given while a period renders keeps the sink going for one more.
      while (!stop_ && (std::exchange(noteGiven_, false) || synth_.ActiveVoices() > 0)) {
        lock.unlock();
        synth_.Render(frames.data(), frames_);
        next += std::chrono::duration_cast<std::chrono::steady_clock::duration>(period_);
        std::this_thread::sleep_until(next);
        lock.lock();
      }
    }
  }

  Synth& synth_;
  const int frames_;
  const std::chrono::duration<double> period_;
  std::mutex mutex_;
  std::condition_variable woken_;
  bool noteGiven_ = false;
  bool stop_ = false;
  std::thread thread_;
};

AudioOutput::AudioOutput() = default;
AudioOutput::~AudioOutput() { Close(); }

void AudioOutput::Close() {
  if (handle_) delete_fluid_audio_driver(handle_);
  handle_ = nullptr;
  silent_.reset();
  audible_ = false;
}

bool AudioOutput::TryDriver(Synth& synth, const AudioSettings& wanted) {
  const AudioSettings s = Completed(wanted);
  fluid_settings_t* fs = synth.Settings();
  fluid_settings_setstr(fs, "audio.driver", s.driver.c_str());
  fluid_settings_setint(fs, "audio.period-size", s.periodSize);
  fluid_settings_setint(fs, "audio.periods", s.periods);
  if (s.driver == "file") {
    // LIRENZA_AUDIO_CAPTURE=FILE keeps what the file driver plays: raw 16-bit stereo.
    const char* capture = std::getenv("LIRENZA_AUDIO_CAPTURE");
    fluid_settings_setstr(fs, "audio.file.name", capture && *capture ? capture : "/dev/null");
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
  // Driven in real time into nothing while a note sounds: the players still take
  // every call at the pace of a real card, and nothing spins or ticks.
  settings_ = Completed(AudioSettings{kSilentDriver, 0, 0});
  driver_ = kSilentDriver;
  silent_ = std::make_unique<SilentSink>(synth, settings_);
}

}  // namespace lirenza
