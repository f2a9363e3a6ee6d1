#pragma once
// A synthesizer with the default fonts, dry (no reverb, no chorus) so a tone can be
// measured, and helpers that render into memory.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/sound_fonts.h"
#include "platform/synth.h"

namespace lirenza::testing {

// FluidR3's "Sine Wave": bank 8, program 80. A steady tone, ideal to measure.
inline constexpr int kSineWave = 8 * 128 + 80 + 1;

inline std::unique_ptr<Synth> DrySynth() {
  SynthOptions options;
  options.effects = false;
  auto synth = std::make_unique<Synth>(options);
  std::string error;
  if (!synth->LoadFonts(FindSoundFonts().files, &error)) return nullptr;
  return synth;
}

inline std::vector<float> RenderFrames(Synth& synth, long frames) {
  std::vector<float> out(2 * frames);
  for (long done = 0; done < frames;) {
    const int n = static_cast<int>(std::min<long>(4096, frames - done));
    synth.Render(out.data() + 2 * done, n);
    done += n;
  }
  return out;
}

// Lets every voice die away so the next measurement starts from silence.
inline void RenderUntilSilent(Synth& synth) {
  for (int i = 0; i < 200 && synth.ActiveVoices() > 0; ++i) RenderFrames(synth, 1024);
}

}  // namespace lirenza::testing

#define LIRENZA_REQUIRE_FONTS(synth) \
  if (!(synth)) GTEST_SKIP() << "the SoundFonts are not installed (scripts/install-deps.sh installs them)"
