// Measures how loud every instrument of the menus plays a reference tune at
// synthesizer gain 1 with reverb and chorus, the figure the program levels each
// instrument by. `--write FILE` writes the table src/platform/instrument_levels.inc;
// without it (and with --short, as CTest runs it) a few instruments are measured and
// compared with the table in use, so a changed font or synthesizer shows up.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "bench/sound_level_common.h"
#include "platform/sound_level.h"
#include "violin/instrument_table.h"

using namespace lirenza;
using namespace lirenza::bench;

namespace {

// A tune in the octave above middle C, where most scores for the violin live, with
// leaps, steps and held notes; not one of the practice scales the level is checked on.
constexpr const char* kReferencePhrase =
    "C498 E498 G498 E498 F498 A498 G492 0008 E498 G498 C598 B498 A498 F498 D492 0008 "
    "D498 F498 A498 G498 E498 C498 D492 0008 G398 C498 E498 D498 B398 D498 C492 0008";

double MeasureRaw(int instrument, const std::vector<std::string>& fonts) {
  SynthOptions raw;
  raw.gain = 1.0;
  raw.levelInstruments = false;
  return RenderLevel(kReferencePhrase, instrument, raw, false, fonts).peakDb;
}

}  // namespace

int main(int argc, char** argv) {
  const SoundFontList fonts = FindSoundFonts();
  if (fonts.files.empty()) {
    std::printf("sound_level_table: %s; nothing measured\n", NoSoundFontMessage(fonts).c_str());
    return 0;
  }
  if (argc > 2 && std::strcmp(argv[1], "--write") == 0) {
    std::ofstream out(argv[2]);
    out << "// Peak in dBFS of each instrument playing bench/sound_level_table.cpp's reference\n"
           "// tune at synthesizer gain 1, reverb and chorus on, FluidR3 GM + GS. Made by\n"
           "// `sound_level_table --write`; do not edit by hand.\n";
    for (const auto& entry : AllInstruments()) {
      const double peak = MeasureRaw(entry.number, fonts.files);
      char line[64];
      std::snprintf(line, sizeof line, "{%d, %.2f},\n", entry.number, peak);
      out << line;
    }
    std::printf("wrote %s\n", argv[2]);
    return 0;
  }
  double worst = 0;
  for (int instrument : {kViolin, 1, 74, 57, 16385}) {
    const double now = MeasureRaw(instrument, fonts.files), table = MeasuredPeakDb(instrument);
    worst = std::max(worst, std::fabs(now - table));
    std::printf("instrument %5d   measured %7.2f dBFS   table %7.2f dBFS\n", instrument, now, table);
  }
  std::printf("largest difference from the table %.2f dB   target <= 0.5 dB   %s\n", worst,
              worst <= 0.5 ? "ok" : "REMEASURE");
  return 0;
}
