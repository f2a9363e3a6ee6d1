#pragma once
// Which SoundFont files the synthesizer loads. By default the General MIDI font with
// the GS variations and drum kits stacked on it; LIRENZA_SOUNDFONT (files separated
// by ':') replaces that list. Later files stack on top of earlier ones: a preset they
// hold wins.
#include <string>
#include <vector>

namespace lirenza {

inline constexpr const char* kSoundFontEnv = "LIRENZA_SOUNDFONT";
inline constexpr const char* kSoundFontPackages = "fluid-soundfont-gm and fluid-soundfont-gs";

struct SoundFontList {
  std::vector<std::string> files;    // the files that exist, bottom of the stack first
  std::vector<std::string> missing;  // named (by the variable or the defaults) but absent
  bool fromEnvironment = false;
};

// The fonts named by the environment when it is set and not empty, else the defaults.
SoundFontList FindSoundFonts();
// The same for an explicit value of the variable (nullptr: not set).
SoundFontList SoundFontsFor(const char* envValue);

// One line telling the user what to do when no font could be loaded.
std::string NoSoundFontMessage(const SoundFontList& list);

}  // namespace lirenza
