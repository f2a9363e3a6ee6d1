// The tempo and volume sliders.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "violin/tempo_table.h"

using namespace lirenza;

// The file's tempo is the truncated microseconds of a quarter at a multiple of ten beats a
// minute; all columns move one way along the slider, but for the file's last step.
TEST(TempoTable, EveryRowIsAWholeTempoAndTheRowsMoveTogether) {
  const std::string terms[] = {"Largo", "Larghetto", "Adagio", "Andante", "Moderato", "Allegro", "Presto", "Prestissimo"};
  auto micros = [](int v) { return std::stol(TempoForSlider(v).tempo.substr(8), nullptr, 16); };
  int term = 0;
  for (int v = 0; v <= kTempoSliderMax; ++v) {
    const TempoRow t = TempoForSlider(v);
    ASSERT_EQ(t.tempo.substr(0, 8), "00FF5103") << v;
    const long bpm = std::lround(60e6 / micros(v));
    EXPECT_EQ(micros(v), 60000000L / bpm) << v;
    EXPECT_EQ(bpm % 10 + t.number % 10, 0) << v;
    if (term < 7 && t.term == terms[term + 1]) ++term;
    EXPECT_EQ(t.term, terms[term]) << v;
    if (v == 0) continue;
    EXPECT_LT(t.tempoFactor, TempoForSlider(v - 1).tempoFactor) << v;
    EXPECT_GT(t.number, TempoForSlider(v - 1).number) << v;
    if (v < kTempoSliderMax) EXPECT_LT(micros(v), micros(v - 1)) << v;
  }
  EXPECT_EQ(term, 7) << "every term is used";
  // The middle writes 120 beats a minute to a file while the window shows 110.
  EXPECT_EQ(std::pair(micros(kTempoSliderStart), TempoForSlider(kTempoSliderStart).number), std::pair(500000L, 110));
  EXPECT_EQ(micros(15), 285714) << "the last step writes a slower tempo than the one before";
  for (int off : {-3, 99}) EXPECT_EQ(TempoForSlider(off).tempo, TempoForSlider(off < 0 ? 0 : kTempoSliderMax).tempo) << off;
}

// Ten steps reach eight levels without a gap; the speaker grows through four pictures.
TEST(VolumeTable, SliderStepsToLevelsAndSpeakerPictures) {
  std::set<std::string> pictures;
  for (int v = -1; v <= 10; ++v) {
    const int step = VolumeLevel(v) - VolumeLevel(v - 1);
    EXPECT_TRUE(step == 0 || (step == 1 && v >= 1 && v <= 9)) << v;
    EXPECT_GE(SpeakerPicture(VolumeLevel(v)), SpeakerPicture(VolumeLevel(v - 1))) << v;
    pictures.insert(SpeakerPicture(VolumeLevel(v)));
  }
  EXPECT_EQ(VolumeLevel(9) - VolumeLevel(0), 7);
  EXPECT_EQ(pictures, (std::set<std::string>{"Speaker0", "Speaker1", "Speaker2", "Speaker3"}));
}
