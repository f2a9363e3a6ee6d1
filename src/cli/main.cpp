// lirenza-cli: the batch face of Lirenza, for converting many scores and for scripts.
#include <algorithm>
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
  const char* about;  // what `lirenza-cli NAME --help` adds below the usage
  int (*run)(const lirenza::cli::Argv&);
};

const Command kCommands[] = {
    {"midi",
     "midi SCORE.note... (-o OUT.mid | -d DIR) [--tempo 0..15] [--gate 0.75|0.85|0.95] [--instrument N] "
     "[--strict]",
     "Writes the Standard MIDI file of each score: with -o for one score, or DIR/NAME.mid for\n"
     "each with -d. Defaults: the score's tempo and instrument, gate 0.95. A score that needed\n"
     "repairs is read as the window reads it, and each kind of repair is told on stderr;\n"
     "--strict refuses such a score instead. -o - writes to standard output.\n",
     lirenza::cli::RunMidi},
    {"tuning", "tuning [--key 0..14] [--json]",
     "Prints a key's just-intonation ratios, frequencies and pitch tables (default key 0).\n",
     lirenza::cli::RunTuning},
    {"kestra", "kestra \"TOKENS\" -o OUT.note [--title TEXT]",
     "Writes the score of a line of note tokens such as \"C498 E4b98 0008\", at most 192;\n"
     "tokens past that are left out and counted on stderr. Neither the tokens nor the\n"
     "title may hold \";\" or a line break, nor the tokens \",\".\n",
     lirenza::cli::RunKestra},
    {"scale", "scale INDEX -o OUT.note | scale --list",
     "Writes the score of one of the 36 scales, or lists them with their index.\n", lirenza::cli::RunScale},
    {"inspect", "inspect SCORE.note [--json] [--strict]",
     "Lists a score's notes in playing order with times in microseconds at tempo factor 1.0\n"
     "and gate 0.95. Repairs and --strict as for midi.\n",
     lirenza::cli::RunInspect},
    {"render",
     "render SCORE.note... (-o OUT.wav|OUT.flac | -d DIR) [--tempo 0..15] [--instrument N] [--gate G] "
     "[--dry] [--quiet] [--strict]",
     "Plays each score into a WAV or FLAC file in just intonation, faster than real time;\n"
     "with -d, DIR/NAME.wav for each. Defaults: the score's tempo and instrument, gate 0.95.\n"
     "--dry leaves out reverb and chorus. Repairs and --strict as for midi.\n",
     lirenza::cli::RunRender},
    {"instruments", "instruments [--json]",
     "Lists the 235 instruments and whether the installed SoundFonts hold each.\n",
     lirenza::cli::RunInstruments},
    {"pdf", "pdf SCORE.note... (-o OUT.pdf | -d DIR) [--tempo 0..15] [--paper a4|letter] [--strict]",
     "Writes each score's printed sheets to a PDF file, five bars to a line and ten lines to\n"
     "a sheet, as many sheets as the score needs; with -d, DIR/NAME.pdf for each. Needs no\n"
     "display. Repairs and --strict as for midi.\n",
     lirenza::cli::RunPdf},
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
         "  pdf      write a score's printed sheets to a PDF file\n"
         "\n'lirenza-cli COMMAND --help' tells more about one command.\n"
         "\nExit status: 0 on success, 1 when a file cannot be read or written (or, with\n"
         "several scores, when any of them failed), 2 for a mistake in the command line.\n";
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
    if (std::find(args.begin() + 1, args.end(), "--help") != args.end() ||
        std::find(args.begin() + 1, args.end(), "-h") != args.end()) {
      std::cout << "Usage: lirenza-cli " << c.usage << "\n\n" << c.about;
      return 0;
    }
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
