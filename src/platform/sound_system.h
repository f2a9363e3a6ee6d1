#pragma once
// The program's sound: one synthesizer, its seven note players and the live output.
// Starting returns at once; fonts load and the output opens on a thread of their own,
// so the window can appear before the sounds are ready. Until then the players take
// every call and stay silent; the instrument chosen meanwhile is selected on arrival.
#include <array>
#include <functional>
#include <future>
#include <memory>
#include <string>

#include "platform/audio_output.h"
#include "platform/fluid_note_player.h"
#include "platform/sound_fonts.h"
#include "platform/synth.h"

namespace lirenza {

struct SoundStatus {
  bool fontsLoaded = false;
  bool audible = false;
  std::string driver;         // the output in use ("file" for the silent sink)
  AudioSettings audio;        // period size and count in use
  std::vector<std::string> fonts;
  int exact = 0, fallback = 0;  // of the instrument menus' numbers
  std::string message;        // one line saying why there is no sound; empty if there is
};

class SoundSystem {
 public:
  // report receives the one line of trouble, once, from the loading thread (the
  // default writes it to stderr), and before it one line for each font skipped while
  // others loaded. Nothing is reported when all is well. With loadNow false nothing
  // loads until StartLoading, so a window can paint before the fonts take the CPU.
  explicit SoundSystem(AudioSettings audio = {}, SynthOptions options = {},
                       std::function<void(const std::string&)> report = {}, bool loadNow = true);
  ~SoundSystem();

  // Starts the loading thread; calls after the first do nothing.
  void StartLoading();

  NotePlayer& Player(int index) { return *players_.at(index); }
  Synth& synth() { return synth_; }

  bool Ready() const;
  // Starts loading if nothing started it yet and waits for the loading thread (tests,
  // the command line); the window never calls it.
  const SoundStatus& WaitReady();

 private:
  SoundStatus Load(AudioSettings audio, std::function<void(const std::string&)> report);

  Synth synth_;
  AudioOutput output_;
  std::array<std::unique_ptr<FluidNotePlayer>, kNotePlayers> players_;
  AudioSettings audio_;
  std::function<void(const std::string&)> report_;
  std::shared_future<SoundStatus> loaded_;
};

// The settings the user gave through the environment: LIRENZA_AUDIO_DRIVER, and
// LIRENZA_AUDIO_PERIOD_SIZE / LIRENZA_AUDIO_PERIODS.
AudioSettings AudioSettingsFromEnvironment();

// How many of the instrument menus' numbers the loaded fonts hold exactly.
struct CoverageCount {
  int exact = 0, fallback = 0;
};
CoverageCount CountCoverage(const Synth& synth);

}  // namespace lirenza
