#include "cli/cli_support.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <iostream>

#include "files/file_io.h"
#include "files/json_text.h"
#include "files/score_file.h"
#include "score/text_fields.h"
#include "violin/instrument_table.h"
#include "violin/tempo_table.h"

namespace lirenza::cli {

Args::Args(const std::vector<std::string>& argv, const std::vector<std::string>& valueOptions,
           const std::vector<std::string>& flagOptions) {
  auto has = [](const std::vector<std::string>& v, const std::string& s) {
    return std::find(v.begin(), v.end(), s) != v.end();
  };
  for (std::size_t i = 0; i < argv.size(); ++i) {
    const std::string& a = argv[i];
    if (a.size() > 1 && a[0] == '-' && !(a.size() > 1 && std::isdigit(static_cast<unsigned char>(a[1])))) {
      std::string name = a, value;
      bool inlineValue = false;
      if (auto eq = a.find('='); eq != std::string::npos && a.rfind("--", 0) == 0) {
        name = a.substr(0, eq);
        value = a.substr(eq + 1);
        inlineValue = true;
      }
      if (has(valueOptions, name)) {
        if (!inlineValue) {
          if (i + 1 >= argv.size()) throw UsageError("option " + name + " needs a value");
          value = argv[++i];
        }
        values_[name] = value;
      } else if (has(flagOptions, name) && !inlineValue) {
        flags_.push_back(name);
      } else {
        throw UsageError("unknown option " + a + " (see lirenza-cli --help)");
      }
    } else {
      positional_.push_back(a);
    }
  }
}

std::optional<std::string> Args::Value(const std::string& option) const {
  auto it = values_.find(option);
  if (it == values_.end()) return std::nullopt;
  return it->second;
}

bool Args::Flag(const std::string& option) const {
  return std::find(flags_.begin(), flags_.end(), option) != flags_.end();
}

std::string Args::OnePositional(const std::string& what) const {
  if (positional_.empty()) throw UsageError("missing " + what);
  if (positional_.size() > 1) throw UsageError("unexpected argument " + positional_[1]);
  return positional_[0];
}

std::string Args::Required(const std::string& option, const std::string& what) const {
  auto v = Value(option);
  if (!v || v->empty()) throw UsageError("missing " + option + " " + what);
  return *v;
}

std::optional<int> Args::IntOption(const std::string& option, int lo, int hi) const {
  auto v = Value(option);
  if (!v) return std::nullopt;
  return ParseInt(*v, lo, hi, option);
}

int ParseInt(const std::string& text, int lo, int hi, const std::string& what) {
  bool ok = !text.empty();
  for (std::size_t i = 0; i < text.size() && ok; ++i)
    ok = std::isdigit(static_cast<unsigned char>(text[i])) || (i == 0 && text[i] == '-' && text.size() > 1);
  long long v = ok && text.size() < 12 ? std::stoll(text) : lo - 1LL;
  if (!ok || v < lo || v > hi)
    throw UsageError(what + " must be a whole number from " + std::to_string(lo) + " to " +
                     std::to_string(hi) + ", not \"" + text + "\"");
  return static_cast<int>(v);
}

std::string TerminalText(const std::string& s) {
  std::string out;
  for (std::size_t i = 0; i < s.size();) {
    const unsigned char c = s[i];
    const std::size_t n = Utf8SequenceLength(s, i);
    // Control characters (C0, DEL and the C1 range U+0080..U+009F) could move the
    // cursor or change the terminal's state; bytes that are not UTF-8 are shown too.
    const bool c1 = n == 2 && c == 0xC2 && static_cast<unsigned char>(s[i + 1]) < 0xA0;
    if (n == 0 || (n == 1 && (c < 0x20 || c == 0x7F || c == '\\')) || c1) {
      char buf[8];
      if (c == '\\') out += "\\\\";
      else if (c == '\n') out += "\\n";
      else if (c == '\t') out += "\\t";
      else if (c1) std::snprintf(buf, sizeof buf, "\\x%02x", static_cast<unsigned char>(s[i + 1])), out += buf;
      else std::snprintf(buf, sizeof buf, "\\x%02x", c), out += buf;
      i += c1 ? 2 : 1;
      continue;
    }
    out.append(s, i, n);
    i += n;
  }
  return out;
}

ScoreFile ReadScore(const std::string& path, bool strict) {
  std::string error;
  auto text = ReadWholeFile(path, &error);
  if (!text) throw RunError(error);
  ScoreReadReport report;
  ScoreFile file = ParseScoreFile(*text, &report);
  if (!report.notAScore.empty()) throw RunError(path + " " + report.notAScore + "; is it a .note score?");
  const auto repairs = report.Repairs();
  if (strict && !repairs.empty())
    throw RunError(path + ": " + repairs.front() + (repairs.size() > 1 ? " (and more)" : "") +
                   "; without --strict it is read as the window reads it");
  for (const auto& line : repairs) std::cerr << "lirenza-cli: " << path << ": " << line << '\n';
  return file;
}

void WriteOutput(const std::string& path, const std::string& bytes) {
  std::string error;
  if (!WriteFileAtomically(path, bytes, &error)) throw RunError(error);
}

}  // namespace lirenza::cli

namespace lirenza::cli {

namespace {
double ParseGate(const std::string& text) {
  if (text == "0.75") return 0.75;
  if (text == "0.85") return 0.85;
  if (text == "0.95") return 0.95;
  throw UsageError("--gate must be 0.75, 0.85 or 0.95, not \"" + text + "\"");
}
}  // namespace

ScoreForOutput LoadScoreForOutput(const Args& args, const std::string& path) {
  // Options are checked before the file is read, so a mistake is told first.
  const auto tempoOption = args.IntOption("--tempo", 0, kTempoSliderMax);
  const double gate = args.Value("--gate") ? ParseGate(*args.Value("--gate")) : 0.95;
  const auto instOption = args.IntOption("--instrument", 1, 16512);
  const ScoreFile file = ReadScore(path, args.Flag("--strict"));
  ScoreForOutput out;
  const int sliderFromFile = ApplyScoreFile(out.staff, file);
  out.tempoSlider = tempoOption ? *tempoOption : sliderFromFile;
  out.gate = gate;
  out.inst = instOption          ? *instOption
             : file.instrumentGiven ? InstrumentFromMenus(file.instrumentGroup, file.instrumentRow)
                                    : kViolin;
  return out;
}

}  // namespace lirenza::cli

namespace lirenza::cli {

int ForEachScore(const Args& args, const std::string& extension,
                 const std::function<void(const std::string& in, const std::string& out)>& convert) {
  namespace fs = std::filesystem;
  const auto& inputs = args.Positional();
  const auto outFile = args.Value("-o");
  const auto outDir = args.Value("-d");
  if (inputs.empty()) throw UsageError("missing score file (give SCORE.note -o OUT" + extension + ")");
  if (outFile && outDir) throw UsageError("give either -o OUT" + extension + " or -d DIR, not both");
  if (inputs.size() > 1 && outFile)
    throw UsageError("-o names one output; for " + std::to_string(inputs.size()) + " scores give -d DIR");
  if (!outFile && !outDir) throw UsageError("missing -o OUT" + extension + " (or -d DIR for many scores)");
  if (outFile && outFile->empty()) throw UsageError("-o needs a file name");
  if (outDir && outDir->empty()) throw UsageError("-d needs a directory");

  // Every output is named before any work, so two scores that would share one output
  // are a mistake in the command line, not a silent overwrite.
  std::vector<std::string> outputs;
  for (const auto& in : inputs) {
    if (outFile) {
      outputs.push_back(*outFile);
      continue;
    }
    const std::string out = (fs::path(*outDir) / (fs::path(in).stem().string() + extension)).string();
    for (std::size_t k = 0; k < outputs.size(); ++k)
      if (outputs[k] == out)
        throw UsageError(inputs[k] + " and " + in + " would both be written to " + out + "; rename one");
    outputs.push_back(out);
  }
  if (outDir) {
    std::error_code ec;
    if (!fs::is_directory(*outDir, ec)) throw RunError("no directory " + *outDir + "; create it first");
  }

  int status = 0;
  for (std::size_t k = 0; k < inputs.size(); ++k) {
    const std::string& in = inputs[k];
    const std::string& out = outputs[k];
    try {
      if (out != "-" && IsSameFile(in, out))
        throw RunError("will not write " + out + " over its own score " + in + "; name another output");
      convert(in, out);
    } catch (const UsageError&) {
      throw;  // the command line is wrong for every input alike
    } catch (const std::exception& e) {
      if (inputs.size() == 1) throw;
      std::cerr << "lirenza-cli: " << in << ": " << e.what() << '\n';
      status = 1;
    }
  }
  return status;
}

}  // namespace lirenza::cli
