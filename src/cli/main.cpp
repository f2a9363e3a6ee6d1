// lirenza-cli: the batch face of Lirenza, for converting many scores and for scripts.
#include <cstring>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "cli/cli_support.h"
#include "cli/commands.h"

namespace {

struct Command {
  const char* name;
  const char* usage;
  int (*run)(const lirenza::cli::Argv&);
};

const Command kCommands[] = {
    {"midi", "midi SCORE.note -o OUT.mid [--tempo 0..15] [--gate 0.75|0.85|0.95] [--instrument N]",
     lirenza::cli::RunMidi},
    {"tuning", "tuning [--key 0..14] [--json]", lirenza::cli::RunTuning},
    {"kestra", "kestra \"TOKENS\" -o OUT.note [--title TEXT]", lirenza::cli::RunKestra},
    {"scale", "scale INDEX -o OUT.note | scale --list", lirenza::cli::RunScale},
    {"inspect", "inspect SCORE.note [--json]", lirenza::cli::RunInspect},
    {"render", "render SCORE.note -o OUT.wav|OUT.flac [--tempo 0..15] [--instrument N] [--gate G] [--quiet]",
     lirenza::cli::RunRender},
    {"instruments", "instruments [--json]", lirenza::cli::RunInstruments},
};

void PrintHelp(std::ostream& out) {
  out << "lirenza-cli: Lirenza's scores, tuning and MIDI files from the command line.\n\nUsage:\n";
  for (const auto& c : kCommands) out << "  lirenza-cli " << c.usage << '\n';
  out << "\n"
         "  midi     write the Standard MIDI file of a score (defaults: the score's tempo\n"
         "           and instrument, gate 0.95)\n"
         "  tuning   print a key's just-intonation ratios, frequencies and pitch tables\n"
         "  kestra   write the score of a line of note tokens (\"C498 E4b98 0008\")\n"
         "  scale    write the score of one of the 36 scales, or list them\n"
         "  inspect  list a score's notes in playing order with times in microseconds\n"
         "  render   play a score into a WAV or FLAC file, in just intonation, faster than\n"
         "           real time (defaults: the score's tempo and instrument, gate 0.95)\n"
         "  instruments  list the 235 instruments and whether the SoundFonts hold each\n"
         "\nExit status: 0 on success, 1 when a file cannot be read or written, 2 for a\n"
         "mistake in the command line.\n";
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty() || args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
    PrintHelp(args.empty() ? std::cerr : std::cout);
    return args.empty() ? 2 : 0;
  }
  if (args[0] == "--version") {
    std::cout << "lirenza-cli 0.1.0\n";
    return 0;
  }
  for (const auto& c : kCommands) {
    if (args[0] != c.name) continue;
    try {
      return c.run(std::vector<std::string>(args.begin() + 1, args.end()));
    } catch (const lirenza::cli::UsageError& e) {
      std::cerr << "lirenza-cli " << c.name << ": " << e.what() << '\n';
      return 2;
    } catch (const std::exception& e) {
      std::cerr << "lirenza-cli " << c.name << ": " << e.what() << '\n';
      return 1;
    }
  }
  std::cerr << "lirenza-cli: unknown command \"" << args[0] << "\" (see lirenza-cli --help)\n";
  return 2;
}
