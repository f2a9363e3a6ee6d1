// Resident memory of the sound once the fonts are loaded and all seven players hold
// the violin, with samples loaded on demand (what the program does) and loaded whole.
// Each way runs in a fresh process of this program, so one cannot hide the other.
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "bench/sound_bench_common.h"
#include "platform/sound_fonts.h"
#include "platform/synth.h"
#include "violin/instrument_table.h"

using namespace lirenza;
using namespace lirenza::bench;

namespace {

double ResidentMb() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.rfind("VmRSS:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;
  return 0;
}

// The child: load, select, play a little, and print "<load seconds> <MB>".
int Measure(bool onDemand) {
  SynthOptions options;
  options.dynamicSampleLoading = onDemand;
  double loadSeconds = 0;
  Synth synth(options);
  std::string error;
  loadSeconds = Seconds([&] { synth.LoadFonts(FindSoundFonts().files, &error); });
  for (int ch = 0; ch < kNotePlayers; ++ch) synth.SelectInstrument(ch, kViolin);
  std::vector<float> buffer(2 * 4096);
  for (int ch = 0; ch < kNotePlayers; ++ch) synth.PlayNote(ch, (55 + 3 * ch) * 256, 100);
  synth.Render(buffer.data(), 4096);
  std::printf("%.4f %.1f\n", loadSeconds, ResidentMb());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "--child-on-demand") == 0) return Measure(true);
  if (argc > 1 && std::strcmp(argv[1], "--child-whole") == 0) return Measure(false);
  if (FindSoundFonts().files.empty()) {
    std::printf("sound_memory: no SoundFonts; nothing measured\n");
    return 0;
  }
  const bool shortRun = argc > 1 && std::strcmp(argv[1], "--short") == 0;
  const int runs = shortRun ? 1 : 5;
  for (const char* mode : {"--child-on-demand", "--child-whole"}) {
    std::vector<double> seconds, mb;
    for (int i = 0; i < runs; ++i) {
      const std::string command = "/proc/" + std::to_string(::getpid()) + "/exe " + mode;
      FILE* child = ::popen(command.c_str(), "r");
      double s = 0, m = 0;
      if (child && std::fscanf(child, "%lf %lf", &s, &m) == 2) {
        seconds.push_back(s);
        mb.push_back(m);
      }
      if (child) ::pclose(child);
    }
    const bool onDemand = std::strcmp(mode, "--child-on-demand") == 0;
    std::printf("fonts %-9s, violin on 7 players   load median %6.1f ms   RSS median %6.1f MB   target < 120 MB   %s\n",
                onDemand ? "on demand" : "whole", 1e3 * Median(seconds), Median(mb),
                Median(mb) < 120 ? "ok" : (onDemand ? "OVER" : "(why samples load on demand)"));
  }
  return 0;
}
