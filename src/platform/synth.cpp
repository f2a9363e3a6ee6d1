#include "platform/synth.h"

#include <fluidsynth.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "violin/instrument_table.h"

namespace lirenza {

namespace {

constexpr int kDrumBank = 128;
constexpr int kFirstDrumKit = 16385;

std::mutex logMutex;
std::string lastError;

void KeepLog(int level, const char* message, void*) {
  if (level > FLUID_WARN || !message) return;
  std::lock_guard<std::mutex> lock(logMutex);
  lastError = message;
}

bool ValidChannel(int channel) { return channel >= 0 && channel < kNotePlayers; }

// A SoundFont (.sf2, and the compressed .sf3) is a RIFF file of form "sfbk". Anything
// else is turned away here: FluidSynth would hand it on to other loaders, which print
// their own complaints about a file that was never meant for them.
bool LooksLikeSoundFont(const std::string& path) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return false;
  char head[12] = {};
  const bool whole = std::fread(head, 1, sizeof head, f) == sizeof head;
  std::fclose(f);
  return whole && std::memcmp(head, "RIFF", 4) == 0 && std::memcmp(head + 8, "sfbk", 4) == 0;
}

}  // namespace

void QuietFluidLog() {
  static std::once_flag once;
  std::call_once(once, [] {
    for (int level : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG})
      fluid_set_log_function(level, KeepLog, nullptr);
  });
}

std::string LastFluidError() {
  std::lock_guard<std::mutex> lock(logMutex);
  return lastError;
}

int KeyOfPitch(int pitch) { return std::clamp((pitch + 128) >> 8, 0, 127); }

double TuningCents(int pitch) { return pitch * 100.0 / 256.0 + 0.5; }

Synth::Synth(const SynthOptions& options)
    : sampleRate_(options.sampleRate), levelInstruments_(options.levelInstruments) {
  QuietFluidLog();
  settings_ = new_fluid_settings();
  fluid_settings_setnum(settings_, "synth.sample-rate", options.sampleRate);
  fluid_settings_setint(settings_, "synth.polyphony", options.polyphony);
  fluid_settings_setnum(settings_, "synth.gain", options.gain);
  fluid_settings_setint(settings_, "synth.reverb.active", options.effects ? 1 : 0);
  fluid_settings_setint(settings_, "synth.chorus.active", options.effects ? 1 : 0);
  fluid_settings_setint(settings_, "synth.dynamic-sample-loading", options.dynamicSampleLoading ? 1 : 0);
  synth_ = new_fluid_synth(settings_);
  // Each player keeps a tuning of its own: retuning a key for one player's next note
  // must not move another player's key.
  for (int ch = 0; ch < kNotePlayers; ++ch) {
    fluid_synth_activate_key_tuning(synth_, 0, ch, "lirenza", nullptr, 0);
    fluid_synth_activate_tuning(synth_, ch, 0, ch, 0);
    wanted_[ch] = 1;  // every player starts on the grand piano
  }
}

Synth::~Synth() {
  if (synth_) delete_fluid_synth(synth_);
  if (settings_) delete_fluid_settings(settings_);
}

bool Synth::LoadFonts(const std::vector<std::string>& files, std::string* error) {
  int loaded = 0;
  std::string problems;
  for (const auto& file : files) {
    if (!LooksLikeSoundFont(file)) {
      problems += (problems.empty() ? "" : "; ") + file + " is not a SoundFont";
      continue;
    }
    if (fluid_synth_sfload(synth_, file.c_str(), 0) == FLUID_FAILED) {
      problems += (problems.empty() ? "" : "; ") + std::string("cannot load SoundFont ") + file;
      continue;
    }
    ++loaded;
  }
  if (error) *error = problems;
  if (loaded == 0) return false;
  std::lock_guard<std::mutex> lock(mutex_);
  fontsLoaded_ = true;
  for (int ch = 0; ch < kNotePlayers; ++ch) ApplyInstrument(ch, wanted_[ch]);
  return true;
}

int Synth::FontCount() const { return fluid_synth_sfcount(synth_); }

PresetChoice Synth::Resolve(int number) const {
  PresetChoice c;
  c.number = number;
  const BankProgram bp = BankProgramOf(number);
  c.bank = bp.bank;
  c.program = bp.program;
  c.drums = number >= kFirstDrumKit;
  // The font loaded last is searched first, as FluidSynth itself does.
  auto find = [&](int bank, int program) {
    const int count = fluid_synth_sfcount(synth_);
    for (int i = 0; i < count; ++i) {
      fluid_sfont_t* font = fluid_synth_get_sfont(synth_, i);
      if (fluid_preset_t* preset = fluid_sfont_get_preset(font, bank, program)) {
        c.found = true;
        c.fontId = fluid_sfont_get_id(font);
        c.soundingBank = bank;
        c.soundingProgram = program;
        c.presetName = fluid_preset_get_name(preset);
        return true;
      }
    }
    return false;
  };
  if (find(c.bank, c.program)) {
    c.exact = true;
    return c;
  }
  // A GS module plays the capital tone of a missing variation, and the standard kit
  // for a missing kit.
  if (c.drums) {
    find(kDrumBank, 0);
  } else if (!find(0, c.program)) {
    find(0, 0);
  }
  return c;
}

void Synth::SelectInstrument(int channel, int number) {
  if (!ValidChannel(channel)) return;
  std::lock_guard<std::mutex> lock(mutex_);
  wanted_[channel] = number;
  if (fontsLoaded_) ApplyInstrument(channel, number);
}

void Synth::ApplyInstrument(int channel, int number) {
  const PresetChoice c = Resolve(number);
  if (!c.found) return;
  // A kit sounds drums on whichever player holds it; a kit has no pitch to tune, so
  // its keys stay as the kit maps them.
  fluid_synth_set_channel_type(synth_, channel, c.drums ? CHANNEL_TYPE_DRUM : CHANNEL_TYPE_MELODIC);
  if (c.drums)
    fluid_synth_deactivate_tuning(synth_, channel, 0);
  else
    fluid_synth_activate_tuning(synth_, channel, 0, channel, 0);
  drums_[channel] = c.drums;
  // Added to every voice the channel starts, in centibels, on top of the preset's own.
  if (levelInstruments_)
    fluid_synth_set_gen(synth_, channel, GEN_ATTENUATION, static_cast<float>(InstrumentAttenuationCb(number)));
  fluid_synth_program_select(synth_, channel, c.fontId, c.soundingBank, c.soundingProgram);
}

int Synth::InstrumentOf(int channel) const {
  if (!ValidChannel(channel)) return 0;
  std::lock_guard<std::mutex> lock(mutex_);
  return wanted_[channel];
}

PresetChoice Synth::ChannelPreset(int channel) const {
  PresetChoice c;
  if (!ValidChannel(channel)) return c;
  fluid_preset_t* preset = fluid_synth_get_channel_preset(synth_, channel);
  if (!preset) return c;
  c.found = true;
  c.soundingBank = fluid_preset_get_banknum(preset);
  c.soundingProgram = fluid_preset_get_num(preset);
  c.presetName = fluid_preset_get_name(preset);
  c.drums = drums_[channel];
  return c;
}

void Synth::PlayNote(int channel, int pitch, int velocity) {
  if (!ValidChannel(channel)) return;
  int key = KeyOfPitch(pitch);
  if (velocity <= 0) {
    fluid_synth_noteoff(synth_, channel, key);
    return;
  }
  if (!drums_[channel]) {
    // apply = 0: a note already sounding on this key keeps its pitch; only the note
    // that starts now takes the new one.
    double cents = TuningCents(pitch);
    fluid_synth_tune_notes(synth_, 0, channel, 1, &key, &cents, 0);
  }
  fluid_synth_noteon(synth_, channel, key, std::min(velocity, 127));
}

void Synth::AllNotesOff() {
  for (int ch = 0; ch < kNotePlayers; ++ch) fluid_synth_all_notes_off(synth_, ch);
}

void Synth::Render(float* interleaved, int frames) {
  fluid_synth_write_float(synth_, frames, interleaved, 0, 2, interleaved, 1, 2);
}

int Synth::ActiveVoices() const { return fluid_synth_get_active_voice_count(synth_); }

}  // namespace lirenza
