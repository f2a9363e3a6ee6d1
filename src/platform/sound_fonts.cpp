#include "platform/sound_fonts.h"

#include <cstdlib>
#include <filesystem>

namespace lirenza {

namespace {

// Debian's fluid-soundfont-gm and fluid-soundfont-gs. The GS file holds only what the
// GM file lacks (sound-effect variations and one drum kit), so the two never compete.
const char* const kDefaultFonts[] = {
    "/usr/share/sounds/sf2/FluidR3_GM.sf2",
    "/usr/share/sounds/sf2/FluidR3_GS.sf2",
};

bool IsReadableFile(const std::string& path) {
  std::error_code ec;
  return std::filesystem::is_regular_file(path, ec);
}

}  // namespace

SoundFontList SoundFontsFor(const char* envValue) {
  SoundFontList list;
  std::vector<std::string> named;
  if (envValue && *envValue) {
    list.fromEnvironment = true;
    std::string value(envValue);
    std::size_t start = 0;
    while (start <= value.size()) {
      std::size_t end = value.find(':', start);
      if (end == std::string::npos) end = value.size();
      if (end > start) named.push_back(value.substr(start, end - start));
      start = end + 1;
    }
  } else {
    named.assign(std::begin(kDefaultFonts), std::end(kDefaultFonts));
  }
  for (auto& file : named) (IsReadableFile(file) ? list.files : list.missing).push_back(file);
  return list;
}

SoundFontList FindSoundFonts() { return SoundFontsFor(std::getenv(kSoundFontEnv)); }

std::string NoSoundFontMessage(const SoundFontList& list) {
  if (list.fromEnvironment) {
    std::string names;
    for (const auto& m : list.missing) names += (names.empty() ? "" : ", ") + m;
    return std::string("no SoundFont could be loaded from ") + kSoundFontEnv + " (" +
           (names.empty() ? std::string("no file named") : "not found: " + names) +
           "); point it at .sf2 files or unset it to use " + kSoundFontPackages;
  }
  return std::string("no SoundFont installed: install the Debian packages ") + kSoundFontPackages +
         " (or set " + kSoundFontEnv + " to .sf2 files)";
}

}  // namespace lirenza
