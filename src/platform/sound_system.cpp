#include "platform/sound_system.h"

#include <cstdlib>
#include <iostream>

#include "violin/instrument_table.h"

namespace lirenza {

namespace {

int EnvInt(const char* name) {
  const char* v = std::getenv(name);
  return v ? std::atoi(v) : 0;
}

}  // namespace

AudioSettings AudioSettingsFromEnvironment() {
  AudioSettings s;
  if (const char* d = std::getenv(kAudioDriverEnv)) s.driver = d;
  s.periodSize = EnvInt("LIRENZA_AUDIO_PERIOD_SIZE");
  s.periods = EnvInt("LIRENZA_AUDIO_PERIODS");
  return s;
}

CoverageCount CountCoverage(const Synth& synth) {
  CoverageCount c;
  for (const auto& entry : AllInstruments()) (synth.Resolve(entry.number).exact ? c.exact : c.fallback)++;
  return c;
}

SoundSystem::SoundSystem(AudioSettings audio, SynthOptions options,
                         std::function<void(const std::string&)> report, bool loadNow)
    : synth_(options), audio_(std::move(audio)), report_(std::move(report)) {
  for (int i = 0; i < kNotePlayers; ++i) players_[i] = std::make_unique<FluidNotePlayer>(synth_, i);
  if (!report_) report_ = [](const std::string& line) { std::cerr << "lirenza: " << line << '\n'; };
  if (loadNow) StartLoading();
}

void SoundSystem::StartLoading() {
  if (loaded_.valid()) return;
  loaded_ = std::async(std::launch::async, [this] { return Load(audio_, report_); }).share();
}

SoundSystem::~SoundSystem() {
  if (loaded_.valid()) loaded_.wait();
  output_.Close();
}

SoundStatus SoundSystem::Load(AudioSettings audio, std::function<void(const std::string&)> report) {
  SoundStatus status;
  const SoundFontList fonts = FindSoundFonts();
  std::string fontProblem;
  if (fonts.files.empty()) {
    fontProblem = NoSoundFontMessage(fonts);
  } else if (!synth_.LoadFonts(fonts.files, &fontProblem)) {
    std::string joined;
    for (char c : fontProblem) joined += c == '\n' ? std::string("; ") : std::string(1, c);
    fontProblem = "no sound: " + joined;
  } else {
    // Some fonts loaded: each one skipped is told on its own line, and the sound goes on.
    for (std::size_t start = 0; start < fontProblem.size();) {
      std::size_t end = fontProblem.find('\n', start);
      if (end == std::string::npos) end = fontProblem.size();
      report(fontProblem.substr(start, end - start));
      start = end + 1;
    }
    fontProblem.clear();
  }
  status.fontsLoaded = synth_.HasFonts();
  status.fonts = fonts.files;
  if (status.fontsLoaded) {
    const CoverageCount c = CountCoverage(synth_);
    status.exact = c.exact;
    status.fallback = c.fallback;
  }
  output_.Open(synth_, audio);
  status.audible = output_.Audible();
  status.driver = output_.Driver();
  status.audio = output_.Settings();
  // One line, the most useful one: without fonts nothing would sound on any card.
  // (With no font at all, every file's reason is joined into that line.)
  status.message = !fontProblem.empty() ? fontProblem : output_.Problem();
  if (!status.message.empty()) report(status.message);
  return status;
}

bool SoundSystem::Ready() const {
  return loaded_.valid() && loaded_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

const SoundStatus& SoundSystem::WaitReady() {
  StartLoading();
  return loaded_.get();
}

}  // namespace lirenza
