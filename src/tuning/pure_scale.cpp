#include "tuning/pure_scale.h"

#include <cmath>

#include "score/text_fields.h"

namespace lirenza {

const std::string_view kKeyNames =
    "ハ長調(C)/イ短調(A),ト長調(G)/ホ短調(E),ニ長調(D)/ロ短調(B),イ長調(A)/嬰ヘ短調(#F),"
    "ホ長調(E)/嬰ハ短調(#C),ロ長調(B)/嬰ト短調(#G),嬰ヘ長調(#F)/嬰ニ短調(#D),"
    "嬰ハ長調(bC)/嬰イ短調(bA),ヘ長調(F)/ニ短調(D),変ロ長調(bB)/ト短調(G),"
    "変ホ長調(bE)/ハ短調(C),変イ長調(bA)/ヘ短調(F),変ニ長調(bD)/変ロ短調(bB),"
    "変ト長調(bG)/変ホ短調(bE),変ハ長調(bC)/変イ短調(bA)";

const std::string_view kRatioList =
    "8/15,9/16,3/5,5/8,2/3,45/64,3/4,4/5,5/6,9/10,15/16,1,16/15,9/8,6/5,5/4,4/3,45/32,3/2,8/5,5/3,9/5,15/8";

namespace {

struct Tonic {
  double hz;
  int offset;
};

// The tonic of each key in the octave from C4 up, chosen so that A4 stays near 440 Hz.
constexpr std::array<Tonic, 15> kTonics = {{
    {264.0, 0}, {391.1111111111111, 7}, {293.3333333333333, 2}, {440.0, 9},
    {330.0, 4}, {488.8888888888889, 11}, {366.6666666666667, 6}, {275.0, 1},
    {352.0, 5}, {469.3333333333333, 10}, {312.8888888888889, 3}, {412.5, 8},
    {275.0, 1}, {366.6666666666667, 6}, {488.8888888888889, 11},
}};

// Degree k's ratio to the tonic as a/b.
constexpr std::array<std::array<int, 2>, 12> kRatios = {{
    {1, 1}, {16, 15}, {9, 8}, {6, 5}, {5, 4}, {4, 3}, {45, 32}, {3, 2}, {8, 5}, {5, 3}, {9, 5}, {15, 8},
}};

}  // namespace

void TuneToKey(TuningTables& t, int keySignature) {
  // A key no score can hold (a damaged file) tunes as C major rather than to silence.
  if (keySignature < 0 || keySignature > 14) keySignature = 0;
  const Tonic tonic = kTonics[keySignature];
  for (int k = 0; k < 12; ++k) t.scale[k] = tonic.hz * kRatios[k][0] / kRatios[k][1];
  t.ratioList = std::string(kRatioList);
  const double semitone = std::log(std::pow(2.0, 0.08333333333333333));
  for (int i = 0; i <= 9; ++i) {
    for (int k = 0; k < 12; ++k) {
      const int n = 12 * i + k + tonic.offset;
      const double f = t.scale[k] * std::pow(2.0, i - 5);
      t.wholeHertz[n] = static_cast<long long>(f);
      t.pitches[n] = static_cast<long long>((std::log(f / 440.0) / semitone + 69) * 256);
    }
  }
  for (int j = 0; j < 12; ++j) {
    t.ratioTexts[j] = Field(t.ratioList, j - tonic.offset + 12);
    t.frequencyTexts[j] = std::to_string(t.wholeHertz[j + 60]);
  }
  t.keyName = Field(kKeyNames, keySignature + 1);
}

}  // namespace lirenza
