// Subcommands that make sound: render a score to a sound file, list the instruments.
#include <unistd.h>

#include <chrono>
#include <cmath>
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

// Loads the fonts the player would use, or says in one line what to install. A font
// skipped while others load is named on a line of its own, and the render goes on.
void LoadFontsOrFail(Synth& synth, SoundFontList* used) {
  *used = FindSoundFonts();
  if (used->files.empty()) throw RunError(NoSoundFontMessage(*used));
  std::string problem;
  const bool loaded = synth.LoadFonts(used->files, &problem);
  if (!loaded) {
    std::string joined;
    for (char c : problem) joined += c == '\n' ? std::string("; ") : std::string(1, c);
    throw RunError(joined);
  }
  // Said once per run, however many scores are rendered.
  static bool told = false;
  if (problem.empty() || told) return;
  told = true;
  for (std::size_t start = 0; start < problem.size();) {
    std::size_t end = problem.find('\n', start);
    if (end == std::string::npos) end = problem.size();
    std::cerr << "lirenza-cli render: " << problem.substr(start, end - start) << '\n';
    start = end + 1;
  }
}

// A bar that redraws itself on one terminal line. It waits a moment before drawing,
// so a render that is over at once leaves the terminal as it was.
class ProgressBar {
 public:
  explicit ProgressBar(bool show) : show_(show), started_(std::chrono::steady_clock::now()) {}
  void operator()(double fraction) {
    if (!show_) return;
    if (!shown_ && std::chrono::steady_clock::now() - started_ < kQuietStart) return;
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
  static constexpr auto kQuietStart = std::chrono::milliseconds(1500);
  bool show_;
  bool shown_ = false;
  std::chrono::steady_clock::time_point started_;
};

std::string Clock(double seconds) {
  char buf[32];
  const int s = static_cast<int>(seconds + 0.5);
  std::snprintf(buf, sizeof buf, "%d:%02d", s / 60, s % 60);
  return buf;
}

void RenderOne(const Args& args, const std::string& in, const std::string& out, bool dry, bool quiet) {
  SoundFileType type;
  if (!SoundFileTypeOf(out, &type)) throw UsageError("the output must end in .wav or .flac: " + out);
  const ScoreForOutput score = LoadScoreForOutput(args, in);
  const Staff& staff = score.staff;
  const double d = TempoForSlider(score.tempoSlider).tempoFactor;

  SynthOptions options;
  options.effects = !dry;
  Synth synth(options);
  SoundFontList fonts;
  LoadFontsOrFail(synth, &fonts);
  const RenderJob job = RenderJobFor(staff, d, score.gate);
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
    const std::string sound = !preset.found ? "silent: no font holds it or its capital tone"
                              : preset.exact ? preset.presetName
                                             : preset.presetName + ", in place of a missing variation";
    std::printf("%s: %s of sound, instrument %d (%s), tempo factor %g, peak %.1f dBFS%s, rendered in %.2f s "
                "(%.0fx real time)\n",
                out.c_str(), Clock(seconds).c_str(), score.inst, sound.c_str(), d,
                result.peak > 0 ? 20 * std::log10(result.peak) : -200.0, dry ? ", dry" : "", took,
                took > 0 ? seconds / took : 0.0);
  }
}

}  // namespace

int RunRender(const Argv& argv) {
  Args args(argv, kOutputOptions, {"--quiet", "--strict", "--dry"});
  const bool quiet = args.Flag("--quiet"), dry = args.Flag("--dry");
  // With -o the output's own name says its type; a directory gets WAV files.
  return ForEachScore(args, ".wav", [&](const std::string& in, const std::string& out) {
    RenderOne(args, in, out, dry, quiet);
  });
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
