#pragma once
// One FluidSynth synthesizer with a channel for each of the seven note players. It
// turns the program's instrument numbers into presets (with the fallback a GS sound
// module uses when a variation is missing) and its fixed-point pitches into notes
// tuned key by key, so every note sounds exactly the pitch it was given.
#include <array>
#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "platform/sound_level.h"
#include "ports/note_player.h"

typedef struct _fluid_hashtable_t fluid_settings_t;
typedef struct _fluid_synth_t fluid_synth_t;

namespace lirenza {

struct SynthOptions {
  double sampleRate = 44100.0;
  bool effects = true;               // reverb and chorus, as the player hears it
  bool dynamicSampleLoading = true;  // samples load when a preset is chosen
  int polyphony = 256;
  double gain = kMasterGain;
  bool levelInstruments = true;      // attenuate each channel by its instrument's level
};

// What an instrument number selects, and what actually sounds for it.
struct PresetChoice {
  int number = 0;
  int bank = 0, program = 0;  // asked for: bank (n - 1) / 128, program (n - 1) mod 128
  bool drums = false;         // a drum kit (bank 128)
  bool found = false;         // some preset sounds (false only without fonts)
  bool exact = false;         // the asked-for preset itself sounds
  int fontId = -1;
  int soundingBank = 0, soundingProgram = 0;
  std::string presetName;
};

// Told after every note a synthesizer is given, on the thread that gave it: what
// renders only while something sounds wakes on it.
class SynthActivity {
 public:
  virtual ~SynthActivity() = default;
  virtual void NoteGiven() = 0;
};

class Synth {
 public:
  explicit Synth(const SynthOptions& options = {});
  ~Synth();
  Synth(const Synth&) = delete;
  Synth& operator=(const Synth&) = delete;

  // Loads the files, bottom of the stack first. Any thread; notes may be played
  // meanwhile (they are silent until the fonts are there). False when no file
  // loaded. Each file skipped gets one line in *error saying which and why, whether or
  // not others loaded.
  bool LoadFonts(const std::vector<std::string>& files, std::string* error);
  bool HasFonts() const { return fontsLoaded_.load(); }
  int FontCount() const;

  PresetChoice Resolve(int number) const;

  // The player's instrument. Before the fonts are loaded it is remembered and
  // selected when they arrive.
  void SelectInstrument(int channel, int number);
  int InstrumentOf(int channel) const;
  // The preset that sounds on a channel now ("" when none).
  PresetChoice ChannelPreset(int channel) const;

  // pitch in 1/256 semitone; velocity 0 ends the note started with that pitch.
  void PlayNote(int channel, int pitch, int velocity);
  void AllNotesOff();

  // Interleaved stereo float frames; call only from the thread that renders.
  void Render(float* interleaved, int frames);
  // Who hears of each note from now on; nullptr for nobody. Once this returns, the
  // one it replaced is told nothing more.
  void SetActivity(SynthActivity* activity);
  int ActiveVoices() const;
  double SampleRate() const { return sampleRate_; }

  fluid_synth_t* Raw() const { return synth_; }
  fluid_settings_t* Settings() const { return settings_; }

 private:
  void ApplyInstrument(int channel, int number);
  void TellActivity();

  fluid_settings_t* settings_ = nullptr;
  fluid_synth_t* synth_ = nullptr;
  double sampleRate_;
  std::atomic<bool> fontsLoaded_{false};
  mutable std::mutex mutex_;  // guards wanted_ against the loading thread
  std::array<int, kNotePlayers> wanted_{};
  std::array<std::atomic<bool>, kNotePlayers> drums_{};
  bool levelInstruments_;
  std::mutex activityMutex_;  // a note being told holds it, so SetActivity can wait for it
  SynthActivity* activity_ = nullptr;
};

// The key a pitch sounds on: the nearest one, within MIDI's 0 to 127.
int KeyOfPitch(int pitch);
// Cents handed to the synthesizer for a pitch. FluidSynth floors a tuning to the whole
// cent, so half a cent is added to make that a rounding.
double TuningCents(int pitch);

}  // namespace lirenza

namespace lirenza {
// FluidSynth reports problems on stderr by default; the program speaks for itself in
// one line instead. Installed once by the first synthesizer; the last error is kept.
void QuietFluidLog();
std::string LastFluidError();
}  // namespace lirenza
