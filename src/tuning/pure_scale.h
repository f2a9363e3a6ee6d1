#pragma once
// Just intonation tuned to the key of the score. Every sound of the program takes its
// pitch from `pitches`, a fractional MIDI note number times 256 for each pitch index.
#include <array>
#include <string>
#include <string_view>

namespace lirenza {

inline constexpr int kPitchTableSize = 145;

struct TuningTables {
  std::array<double, 12> scale{};                      // Hz of the twelve degrees above the tonic
  std::array<long long, kPitchTableSize> wholeHertz{};  // whole Hz for each pitch index
  std::array<long long, kPitchTableSize> pitches{};     // pitch for each index, semitones × 256
  std::string ratioList;                                // every ratio the tuning panel can show
  std::array<std::string, 12> ratioTexts;               // ratio of each pitch class to the tonic
  std::array<std::string, 12> frequencyTexts;           // Hz of each pitch class around middle C
  std::string keyName;                                  // shown beside the tuning fields
};

extern const std::string_view kKeyNames;   // the 15 key names, one literal
extern const std::string_view kRatioList;

// Rebuilds every table from keySignature; a keySignature outside 0 to 14 tunes as key 0. Indexes outside
// the key's ten octaves keep what they held, as a retuned instrument keeps strings it
// was not asked to retune.
void TuneToKey(TuningTables& t, int keySignature);

}  // namespace lirenza
