#include "platform/synth.h"

#include <fluidsynth.h>
#if LIRENZA_HAVE_GLIB
#include <glib.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cerrno>
#include <cstdint>
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

std::uint32_t LittleEndian32(const unsigned char* p) {
  return p[0] | (p[1] << 8) | (p[2] << 16) | static_cast<std::uint32_t>(p[3]) << 24;
}

// Why a file cannot be a whole SoundFont, or "" when it can. A SoundFont (.sf2, and the
// compressed .sf3) is a RIFF file of form "sfbk" whose chunks (INFO, sample data,
// preset data) each fit in the file. Anything else is turned away before FluidSynth
// sees it: it would hand the file on to other loaders, which print their own
// complaints about a file that was never meant for them.
std::string SoundFontProblem(const std::string& path) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return std::string("cannot be read: ") + std::strerror(errno);
  unsigned char head[12] = {};
  const bool whole = std::fread(head, 1, sizeof head, f) == sizeof head;
  if (!whole || std::memcmp(head, "RIFF", 4) != 0 || std::memcmp(head + 8, "sfbk", 4) != 0) {
    std::fclose(f);
    return "it is not a SoundFont";
  }
  std::fseek(f, 0, SEEK_END);
  const long long size = std::ftell(f);
  const long long declared = 8LL + LittleEndian32(head + 4);
  std::string problem;
  if (declared > size) {
    problem = "it is cut short (" + std::to_string(size) + " of its " + std::to_string(declared) + " bytes)";
  } else {
    bool presets = false;
    for (long long at = 12; at + 8 <= declared && problem.empty();) {
      unsigned char chunk[12] = {};
      std::fseek(f, static_cast<long>(at), SEEK_SET);
      const std::size_t got = std::fread(chunk, 1, sizeof chunk, f);
      const long long length = LittleEndian32(chunk + 4);
      if (got < 8 || at + 8 + length > declared)
        problem = "a chunk runs past its end";
      else if (got == sizeof chunk && std::memcmp(chunk, "LIST", 4) == 0 && std::memcmp(chunk + 8, "pdta", 4) == 0)
        presets = true;
      at += 8 + length + (length & 1);
    }
    if (problem.empty() && !presets) problem = "it holds no presets";
  }
  std::fclose(f);
  return problem;
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
  auto skip = [&](const std::string& file, const std::string& why) {
    problems += (problems.empty() ? "" : "\n") + ("skipped SoundFont " + file + ": " + why);
  };
  for (const auto& file : files) {
    if (const std::string why = SoundFontProblem(file); !why.empty()) {
      skip(file, why);
      continue;
    }
#if LIRENZA_HAVE_GLIB
    // A font that fails FluidSynth's own loader goes on to libinstpatch's, which
    // reports through GLib's log on stderr before we can say anything. Our line says it.
    const GLogFunc previous = g_log_set_default_handler([](const gchar*, GLogLevelFlags, const gchar*, gpointer) {},
                                                        nullptr);
    const int id = fluid_synth_sfload(synth_, file.c_str(), 0);
    g_log_set_default_handler(previous, nullptr);
#else
    const int id = fluid_synth_sfload(synth_, file.c_str(), 0);
#endif
    if (id == FLUID_FAILED) {
      const std::string said = LastFluidError();
      skip(file, said.empty() ? "FluidSynth cannot read it" : "FluidSynth says \"" + said + "\"");
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
  } else {
    if (!drums_[channel]) {
      // apply = 0: a note already sounding on this key keeps its pitch; only the note
      // that starts now takes the new one.
      double cents = TuningCents(pitch);
      fluid_synth_tune_notes(synth_, 0, channel, 1, &key, &cents, 0);
    }
    fluid_synth_noteon(synth_, channel, key, std::min(velocity, 127));
  }
  TellActivity();
}

void Synth::TellActivity() {
  std::lock_guard<std::mutex> lock(activityMutex_);
  if (activity_) activity_->NoteGiven();
}

void Synth::SetActivity(SynthActivity* activity) {
  std::lock_guard<std::mutex> lock(activityMutex_);
  activity_ = activity;
}

void Synth::AllNotesOff() {
  for (int ch = 0; ch < kNotePlayers; ++ch) fluid_synth_all_notes_off(synth_, ch);
  TellActivity();
}

void Synth::Render(float* interleaved, int frames) {
  fluid_synth_write_float(synth_, frames, interleaved, 0, 2, interleaved, 1, 2);
}

int Synth::ActiveVoices() const { return fluid_synth_get_active_voice_count(synth_); }

}  // namespace lirenza
