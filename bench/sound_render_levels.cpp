// The peak of every practice scale rendered by three contrasting instruments, with
// reverb and chorus and without, at the program's own level. Target: every peak
// between -6 and -1 dBFS; the limiter's largest reduction is printed beside it.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "bench/sound_level_common.h"
#include "tuning/scale_lines.h"

using namespace lirenza;
using namespace lirenza::bench;

int main(int argc, char** argv) {
  const bool shortRun = argc > 1 && std::strcmp(argv[1], "--short") == 0;
  const SoundFontList fonts = FindSoundFonts();
  if (fonts.files.empty()) {
    std::printf("sound_render_levels: %s; nothing measured\n", NoSoundFontMessage(fonts).c_str());
    return 0;
  }
  struct Instrument {
    int number;
    const char* name;
  } const instruments[] = {{41, "violin"}, {1, "piano"}, {57, "trumpet"}};
  int outside = 0, renders = 0;
  for (bool effects : {true, false}) {
    double lo = 0, hi = -200;
    for (const auto& inst : instruments) {
      for (int s = 0; s < kScaleCount; s += shortRun ? 12 : 1) {
        SynthOptions options;
        options.effects = effects;
        const LevelRender r = RenderLevel(std::string(kScaleLines[s].line), inst.number, options, true, fonts.files);
        const bool ok = r.peakDb >= -6 && r.peakDb <= -1;
        outside += !ok;
        ++renders;
        lo = std::min(lo, r.peakDb);
        hi = std::max(hi, r.peakDb);
        std::printf("%-4s %-8s scale %2d   peak %6.2f dBFS   limiter %4.2f dB   target -6..-1   %s\n",
                    effects ? "wet" : "dry", inst.name, s + 1, r.peakDb, r.limitedDb, ok ? "ok" : "OUTSIDE");
      }
    }
    std::printf("%s: peaks from %.2f to %.2f dBFS\n", effects ? "reverb and chorus" : "dry", lo, hi);
  }
  std::printf("%d of %d renders outside -6..-1 dBFS   %s\n", outside, renders, outside ? "FAIL" : "ok");
  return 0;
}
