// lirenza-cli tuning: the just-intonation tables of a key.
#include <iostream>

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "tuning/pure_scale.h"

namespace lirenza::cli {

namespace {
template <typename Array>
void JsonArray(const Array& a, bool quoted) {
  std::cout << '[';
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (i) std::cout << ',';
    if constexpr (std::is_same_v<typename Array::value_type, std::string>)
      std::cout << (quoted ? JsonString(a[i]) : a[i]);
    else
      std::cout << a[i];
  }
  std::cout << ']';
}
}  // namespace

int RunTuning(const Argv& argv) {
  Args args(argv, {"--key"}, {"--json"});
  if (!args.Positional().empty()) throw UsageError("unexpected argument " + args.Positional()[0]);
  const int keySignature = args.IntOption("--key", 0, 14).value_or(0);
  TuningTables t;
  TuneToKey(t, keySignature);
  if (args.Flag("--json")) {
    std::cout << "{\"keyN\":" << keySignature << ",\"name\":" << JsonString(t.keyName) << ",\"ratios\":";
    JsonArray(t.ratioTexts, true);
    std::cout << ",\"frequencies\":";
    JsonArray(t.frequencyTexts, true);
    std::cout << ",\"p\":";
    JsonArray(t.pitches, false);
    std::cout << ",\"h\":";
    JsonArray(t.wholeHertz, false);
    std::cout << "}\n";
    return 0;
  }
  static const char* kClasses[12] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
  std::cout << "key " << keySignature << ": " << t.keyName << "\n\nclass\tratio\tHz\n";
  for (int j = 0; j < 12; ++j) std::cout << kClasses[j] << '\t' << t.ratioTexts[j] << '\t' << t.frequencyTexts[j] << '\n';
  std::cout << "\nindex\tp\th\tsemitones\n";
  for (int i = 0; i < kPitchTableSize; ++i)
    std::cout << i << '\t' << t.pitches[i] << '\t' << t.wholeHertz[i] << '\t' << static_cast<double>(t.pitches[i]) / 256.0 << '\n';
  return 0;
}

}  // namespace lirenza::cli
