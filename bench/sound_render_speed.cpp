// Renders a three-minute score to a WAV file as `lirenza-cli render` does, and the
// same score's MIDI file with the fluidsynth command line and the same fonts. Prints
// the medians beside the targets: 50× real time, and no slower than 1.1× fluidsynth.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "bench/sound_bench_common.h"
#include "files/file_io.h"
#include "files/midi_writer.h"
#include "platform/score_renderer.h"
#include "platform/sound_file_writer.h"
#include "platform/sound_fonts.h"
#include "platform/synth.h"
#include "tuning/pure_scale.h"
#include "violin/event_list.h"
#include "violin/instrument_table.h"
#include "violin/tempo_table.h"

using namespace lirenza;
using namespace lirenza::bench;
namespace fs = std::filesystem;

namespace {

// Fonts loaded, events built, sound rendered and written: the whole of a render.
// Returns the seconds of sound; *renderOnly gets the time spent rendering.
double RenderToWav(const Staff& staff, const std::vector<std::string>& fonts, const std::string& out,
                   double* renderOnly) {
  Synth synth;
  std::string error;
  if (!synth.LoadFonts(fonts, &error)) return 0;
  const RenderJob job = RenderJobFor(staff, TempoForSlider(kTempoSliderStart).tempoFactor, 0.95);
  synth.SelectInstrument(job.channel, kViolin);
  SoundFileWriter writer;
  if (!writer.Open(out, SoundFileType::Wav, 44100, &error)) return 0;
  RenderResult result;
  *renderOnly = Seconds([&] {
    result = RenderEvents(synth, job, [&](const float* f, int n) { return writer.Write(f, n, &error); });
  });
  writer.Commit(&error);
  return result.frames / 44100.0;
}

}  // namespace

int main(int argc, char** argv) {
  const bool shortRun = argc > 1 && std::strcmp(argv[1], "--short") == 0;
  const int runs = shortRun ? 1 : 5;
  const SoundFontList fonts = FindSoundFonts();
  if (fonts.files.empty()) {
    std::printf("sound_render_speed: %s; nothing measured\n", NoSoundFontMessage(fonts).c_str());
    return 0;
  }
  const fs::path dir = fs::temp_directory_path() / ("lirenza-bench-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  const Staff staff = ThreeMinuteScore();
  const std::string wav = (dir / "ours.wav").string(), mid = (dir / "score.mid").string();

  std::vector<double> whole, render;
  double audio = 0;
  for (int i = 0; i < runs; ++i) {
    double renderOnly = 0;
    whole.push_back(Seconds([&] { audio = RenderToWav(staff, fonts.files, wav, &renderOnly); }));
    render.push_back(renderOnly);
  }
  const double speed = audio / Median(render);
  std::printf("render %.0f s of violin, reverb and chorus on   median %.3f s   %.0fx real time   target >= 50x   %s\n",
              audio, Median(render), speed, speed >= 50 ? "ok" : "UNDER");

  // The same notes as a MIDI file, rendered by the fluidsynth command line with the
  // same fonts and the same on-demand sample loading.
  std::string error;
  const TempoRow tempo = TempoForSlider(kTempoSliderStart);
  WriteFileAtomically(mid, MidiFileBytes(staff.notes, 0.95, tempo.tempo, kViolin), &error);
  std::string command = "fluidsynth -ni -q -r 44100 -o synth.dynamic-sample-loading=1 -F " + (dir / "theirs.wav").string();
  for (const auto& f : fonts.files) command += " '" + f + "'";
  command += " " + mid + " >/dev/null 2>&1";
  if (std::system("command -v fluidsynth >/dev/null 2>&1") != 0) {
    std::printf("fluidsynth is not installed: no comparison\n");
  } else {
    std::vector<double> theirs;
    for (int i = 0; i < runs; ++i) theirs.push_back(Seconds([&] { std::system(command.c_str()); }));
    const double theirAudio = (fs::file_size(dir / "theirs.wav") - 44) / 4.0 / 44100;
    // Per second of sound, since the MIDI file keeps its own tempo (500 ms a quarter
    // where playback takes 480 ms).
    const double ours = Median(whole) / audio, fluid = Median(theirs) / theirAudio;
    std::printf("whole render incl. font loading and writing   median %.3f s for %.0f s (%.2f ms per s of sound)\n",
                Median(whole), audio, 1e3 * ours);
    std::printf("fluidsynth -F, same MIDI and fonts            median %.3f s for %.0f s (%.2f ms per s of sound)\n",
                Median(theirs), theirAudio, 1e3 * fluid);
    std::printf("ours / fluidsynth                             %.2f   target <= 1.10   %s\n", ours / fluid,
                ours / fluid <= 1.1 ? "ok" : "OVER");
  }
  fs::remove_all(dir);
  return 0;
}
