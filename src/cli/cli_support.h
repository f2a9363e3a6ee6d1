#pragma once
// What every subcommand of lirenza-cli shares: option parsing that names the bad
// option, one-line errors, JSON text, and reading a score.
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include "files/json_text.h"
#include <vector>

#include "files/score_file.h"

namespace lirenza::cli {

// Thrown for anything the user must fix; main prints it as one line and exits 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};
// Thrown when the work itself fails (a file cannot be read or written); exit 1.
struct RunError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Args {
 public:
  // valueOptions take a value ("-o", "--tempo"); flagOptions do not ("--json").
  Args(const std::vector<std::string>& argv, const std::vector<std::string>& valueOptions,
       const std::vector<std::string>& flagOptions);
  const std::vector<std::string>& Positional() const { return positional_; }
  std::optional<std::string> Value(const std::string& option) const;
  bool Flag(const std::string& option) const;
  // The one positional argument the command needs, named in the error when missing.
  std::string OnePositional(const std::string& what) const;
  std::string Required(const std::string& option, const std::string& what) const;
  // An integer option within [lo, hi]; nullopt when absent.
  std::optional<int> IntOption(const std::string& option, int lo, int hi) const;

 private:
  std::vector<std::string> positional_;
  std::map<std::string, std::string> values_;
  std::vector<std::string> flags_;
};

// A whole decimal number in [lo, hi], or a UsageError naming `what`.
int ParseInt(const std::string& text, int lo, int hi, const std::string& what);

// A JSON string literal of s; always valid UTF-8 (a byte that is not is written as U+FFFD).
// s for a terminal: control characters, backslashes and bytes that are not UTF-8 are
// written as escapes ("\x1b", "\n", "\\"), so a score's text cannot drive the terminal.
std::string TerminalText(const std::string& s);

// Reads a .note file the way the window does and says on stderr, one line for each
// kind, what had to be repaired. Refuses (RunError) only what is not a score at all,
// or with `strict` anything that needed a repair, so a script can validate.
ScoreFile ReadScore(const std::string& path, bool strict);

void WriteOutput(const std::string& path, const std::string& bytes);

// A score loaded for output with the options every output command takes: --tempo
// (default: the score's slider), --gate (default 0.95) and --instrument (default: the
// instrument the score's menus name, the violin when they name none).
struct ScoreForOutput {
  Staff staff;
  int tempoSlider = 0;
  double gate = 0.95;
  int inst = 0;
};
inline const std::vector<std::string> kOutputOptions = {"-o", "-d", "--tempo", "--gate", "--instrument"};
ScoreForOutput LoadScoreForOutput(const Args& args, const std::string& path);

// Runs convert(in, out) for each score named: one input with -o OUT, or many with -d DIR
// (DIR/<stem><extension>). A failure of one input is reported on stderr as one line and the
// others still run. Returns the exit status: 0, or 1 if any input failed.
int ForEachScore(const Args& args, const std::string& extension,
                 const std::function<void(const std::string& in, const std::string& out)>& convert);

}  // namespace lirenza::cli
