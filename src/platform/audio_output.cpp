#include "platform/audio_output.h"

#include <fluidsynth.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

LiveSound::LiveSound(Synth& synth) : synth_(synth), limiter_(kCeilingDb, synth.SampleRate()) {}

bool LiveSound::Render(float* left, float* right, int frames) {
  // The synthesizer adds to what the buffers hold; reverb and chorus go into the same
  // pair as the dry sound, as a listener hears them.
  std::fill(left, left + frames, 0.0f);
  std::fill(right, right + frames, 0.0f);
  float* dry[2] = {left, right};
  float* effects[4] = {left, right, left, right};
  if (fluid_synth_process(synth_.Raw(), frames, 4, effects, 2, dry) != FLUID_OK) return false;
  limiter_.Process(left, right, frames);
  return true;
}

namespace {

// Live sound as a sound card takes it: 16-bit samples, rounded and clamped,
// interleaved little-endian.
void AppendS16(const float* left, const float* right, int frames, std::vector<unsigned char>* bytes) {
  auto append = [bytes](float sample) {
    const auto value = static_cast<std::int16_t>(std::lrint(std::clamp(sample, -1.0f, 1.0f) * 32767.0f));
    const auto bits = static_cast<std::uint16_t>(value);
    bytes->push_back(static_cast<unsigned char>(bits & 0xff));
    bytes->push_back(static_cast<unsigned char>(bits >> 8));
  };
  for (int i = 0; i < frames; ++i) {
    append(left[i]);
    append(right[i]);
  }
}

// What a driver's thread calls for each period it plays.
int RenderForDriver(void* live, int frames, int, float*[], int outputs, float* out[]) {
  if (outputs < 2) return FLUID_FAILED;
  return static_cast<LiveSound*>(live)->Render(out[0], out[1], frames) ? FLUID_OK : FLUID_FAILED;
}

}  // namespace

// Plays live sound a period at a time at the pace of a card, with nobody listening.
// Without a capture file it renders only from the moment a note is given until no
// voice sounds, then sleeps until the next note, so an idle program without sound
// wakes nobody. With one it writes every period, sounding or not, so the file's
// timeline is the real one and it holds exactly what a card would have been given.
class PacedSink : public SynthActivity {
 public:
  PacedSink(Synth& synth, const AudioSettings& settings, std::FILE* capture)
      : synth_(synth),
        live_(synth),
        capture_(capture),
        frames_(settings.periodSize),
        period_(std::chrono::duration<double>(settings.periodSize / synth.SampleRate())) {
    thread_ = std::thread([this] { Run(); });
    synth_.SetActivity(this);
  }

  ~PacedSink() override {
    synth_.SetActivity(nullptr);
    {
      std::lock_guard<std::mutex> lock(mutex_);
      stop_ = true;
    }
    woken_.notify_one();
    thread_.join();
    if (capture_) std::fclose(capture_);
  }

  // Told at every call to the synthesizer: a sweep of hundreds of note-offs wakes the
  // thread once, not at every one.
  void NoteGiven() override {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      if (std::exchange(noteGiven_, true)) return;
    }
    woken_.notify_one();
  }

 private:
  void Run() {
    std::vector<float> left(frames_), right(frames_);
    std::vector<unsigned char> bytes;
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
      woken_.wait(lock, [this] { return capture_ || noteGiven_ || stop_; });
      if (stop_) return;
      auto next = std::chrono::steady_clock::now();
      // A note given while a period renders keeps the sink going for one more.
      while (!stop_ && (capture_ || std::exchange(noteGiven_, false) || synth_.ActiveVoices() > 0)) {
        lock.unlock();
        live_.Render(left.data(), right.data(), frames_);
        if (capture_) {
          bytes.clear();
          AppendS16(left.data(), right.data(), frames_, &bytes);
          // Flushed each period: whoever reads the file meanwhile hears it up to now.
          std::fwrite(bytes.data(), 1, bytes.size(), capture_);
          std::fflush(capture_);
        }
        // Late periods are caught up at once, so the sound keeps to the clock.
        next += std::chrono::duration_cast<std::chrono::steady_clock::duration>(period_);
        lock.lock();
        woken_.wait_until(lock, next, [this] { return stop_; });
      }
    }
  }

  Synth& synth_;
  LiveSound live_;
  std::FILE* const capture_;
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
  // The driver's thread renders through live_: it stops first.
  if (handle_) delete_fluid_audio_driver(handle_);
  handle_ = nullptr;
  live_.reset();
  paced_.reset();
  audible_ = false;
}

bool AudioOutput::TryDriver(Synth& synth, const AudioSettings& wanted, std::string* failure) {
  const AudioSettings s = Completed(wanted);
  if (s.driver == "file") {
    // FluidSynth's own file driver cannot take a callback, so it could only keep the
    // unlimited sound: the program paces the file itself.
    std::FILE* capture = nullptr;
    if (const char* name = std::getenv(kAudioCaptureEnv); name && *name) {
      capture = std::fopen(name, "wb");
      if (!capture) {
        *failure = std::string("cannot write ") + name + ": " + std::strerror(errno);
        return false;
      }
    }
    paced_ = std::make_unique<PacedSink>(synth, s, capture);
  } else {
    fluid_settings_t* fs = synth.Settings();
    fluid_settings_setstr(fs, "audio.driver", s.driver.c_str());
    fluid_settings_setint(fs, "audio.period-size", s.periodSize);
    fluid_settings_setint(fs, "audio.periods", s.periods);
    live_ = std::make_unique<LiveSound>(synth);
    handle_ = new_fluid_audio_driver2(fs, RenderForDriver, live_.get());
    if (!handle_) {
      // Some drivers (SDL2 among them) cannot call back: they play the synthesizer
      // unlimited rather than not at all.
      live_.reset();
      handle_ = new_fluid_audio_driver(fs, synth.Raw());
    }
    if (!handle_) {
      *failure = LastFluidError();
      std::replace(failure->begin(), failure->end(), '\n', ' ');
      return false;
    }
  }
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
    if (TryDriver(synth, s, &failure)) {
      audible_ = name != "file";
      problem_.clear();
      return;
    }
    tried.push_back(name);
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
  paced_ = std::make_unique<PacedSink>(synth, settings_, nullptr);
}

}  // namespace lirenza
