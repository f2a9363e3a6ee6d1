// Subcommands that make sound: render a score to a sound file, list the instruments.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <iostream>

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "platform/score_renderer.h"
#include "platform/sound_file_writer.h"
#include "platform/sound_fonts.h"
#include "platform/synth.h"
#include "tuning/pure_scale.h"
#include "violin/event_list.h"
#include "violin/instrument_table.h"
#include "violin/tempo_table.h"

namespace lirenza::cli {

namespace {

// Loads the fonts the player would use, or says in one line what to install.
void LoadFontsOrFail(Synth& synth, SoundFontList* used) {
  *used = FindSoundFonts();
  if (used->files.empty()) throw RunError(NoSoundFontMessage(*used));
  std::string problem;
  if (!synth.LoadFonts(used->files, &problem)) throw RunError(problem);
}

// A bar that redraws itself on one terminal line.
class ProgressBar {
 public:
  explicit ProgressBar(bool show) : show_(show) {}
  void operator()(double fraction) {
    if (!show_) return;
    const int width = 40, filled = static_cast<int>(fraction * width + 0.5);
    std::fprintf(stderr, "\rrendering [%s%s] %3d%%", std::string(filled, '#').c_str(),
                 std::string(width - filled, '.').c_str(), static_cast<int>(fraction * 100 + 0.5));
    std::fflush(stderr);
    shown_ = true;
  }
  void Finish() {
    if (shown_) std::fputs("\n", stderr);
    shown_ = false;
  }
  ~ProgressBar() { Finish(); }

 private:
  bool show_;
  bool shown_ = false;
};

std::string Clock(double seconds) {
  char buf[32];
  const int s = static_cast<int>(seconds + 0.5);
  std::snprintf(buf, sizeof buf, "%d:%02d", s / 60, s % 60);
  return buf;
}

}  // namespace

int RunRender(const Argv& argv) {
  Args args(argv, kOutputOptions, {"--quiet"});
  const std::string in = args.OnePositional("score file (lirenza-cli render SCORE.note -o OUT.wav)");
  const std::string out = args.Required("-o", "OUT.wav or OUT.flac");
  SoundFileType type;
  if (!SoundFileTypeOf(out, &type)) throw UsageError("the output must end in .wav or .flac: " + out);
  const bool quiet = args.Flag("--quiet");
  const ScoreForOutput score = LoadScoreForOutput(args, in);
  const Staff& staff = score.staff;
  const double d = TempoForSlider(score.tempoSlider).d;

  Synth synth;
  SoundFontList fonts;
  LoadFontsOrFail(synth, &fonts);
  RenderJob job;
  job.events = BuildEventList(staff.icv, d, score.gate);
  job.d = d;
  TuningTables tables;
  PureScale(tables, staff.keyN);
  job.p = tables.p;
  synth.SelectInstrument(job.channel, score.inst);

  SoundFileWriter writer;
  std::string error;
  if (!writer.Open(out, type, static_cast<int>(synth.SampleRate()), &error)) throw RunError(error);
  ProgressBar bar(!quiet && ::isatty(STDERR_FILENO));
  const auto started = std::chrono::steady_clock::now();
  const RenderResult result = RenderEvents(
      synth, job, [&](const float* frames, int n) { return writer.Write(frames, n, &error); },
      [&](double fraction) { bar(fraction); });
  bar.Finish();
  if (result.stopped || !writer.Commit(&error)) throw RunError(error);
  const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  if (!quiet) {
    const double seconds = result.frames / synth.SampleRate();
    const PresetChoice preset = synth.Resolve(score.inst);
    std::printf("%s: %s of sound, instrument %d (%s%s), tempo factor %g, rendered in %.2f s (%.0fx real time)\n",
                out.c_str(), Clock(seconds).c_str(), score.inst, preset.presetName.c_str(),
                preset.exact ? "" : ", in place of a missing variation", d, took,
                took > 0 ? seconds / took : 0.0);
  }
  return 0;
}

int RunInstruments(const Argv& argv) {
  Args args(argv, {}, {"--json"});
  if (!args.Positional().empty()) throw UsageError("instruments takes no file");
  SynthOptions options;
  options.effects = false;
  Synth synth(options);
  SoundFontList fonts = FindSoundFonts();
  std::string problem = fonts.files.empty() ? NoSoundFontMessage(fonts) : std::string();
  if (problem.empty()) synth.LoadFonts(fonts.files, &problem);
  const bool loaded = synth.HasFonts();

  int exact = 0;
  std::vector<std::pair<InstrumentEntry, PresetChoice>> rows;
  for (const auto& entry : AllInstruments()) {
    PresetChoice c = synth.Resolve(entry.number);
    exact += c.exact;
    rows.emplace_back(entry, c);
  }
  const int fallback = static_cast<int>(rows.size()) - exact;
  char buf[200];
  if (args.Flag("--json")) {
    std::cout << "{\"fonts\":[";
    for (std::size_t i = 0; i < fonts.files.size(); ++i) std::cout << (i ? "," : "") << JsonString(fonts.files[i]);
    std::snprintf(buf, sizeof buf, "],\"total\":%zu,\"exact\":%d,\"fallback\":%d,\"instruments\":[", rows.size(),
                  exact, fallback);
    std::cout << buf;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const auto& [e, c] = rows[i];
      std::snprintf(buf, sizeof buf, "%s{\"group\":%d,\"groupName\":", i ? "," : "", e.group);
      std::cout << buf << JsonString(std::string(e.groupName));
      std::snprintf(buf, sizeof buf, ",\"row\":%d,\"number\":%d,\"bank\":%d,\"program\":%d,\"name\":", e.row,
                    e.number, c.bank, c.program);
      std::cout << buf << JsonString(std::string(e.name));
      std::snprintf(buf, sizeof buf, ",\"exact\":%s,\"sounds\":", c.exact ? "true" : "false");
      std::cout << buf;
      if (c.found) {
        std::snprintf(buf, sizeof buf, "{\"bank\":%d,\"program\":%d,\"preset\":", c.soundingBank, c.soundingProgram);
        std::cout << buf << JsonString(c.presetName) << "}}";
      } else {
        std::cout << "null}";
      }
    }
    std::cout << "]}\n";
  } else {
    std::cout << "group\trow\tnumber\tbank\tprogram\tsound\tname\n";
    for (const auto& [e, c] : rows) {
      std::string sound = !c.found ? "missing"
                          : c.exact ? "exact"
                                    : "fallback " + std::to_string(c.soundingBank) + ":" +
                                          std::to_string(c.soundingProgram);
      std::snprintf(buf, sizeof buf, "%d\t%d\t%d\t%d\t%d\t", e.group, e.row, e.number, c.bank, c.program);
      std::cout << buf << sound << '\t' << e.name << '\n';
    }
    std::cout << exact << " of " << rows.size() << " instruments exact, " << fallback
              << " fall back (a missing variation plays its bank-0 program, a missing kit the standard kit)\n";
  }
  if (!loaded) throw RunError(problem);
  return 0;
}

}  // namespace lirenza::cli
