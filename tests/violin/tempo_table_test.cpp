// The tempo and volume sliders: three separate tempo lists that do not agree with one
// another, and the volume steps that share a level.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>

#include "violin/tempo_table.h"

using namespace lirenza;

namespace {
long MicrosecondsPerQuarter(int slider) { return std::stol(TempoForSlider(slider).tempo.substr(8), nullptr, 16); }
}  // namespace

// The file's tempo is a whole number of beats a minute, written as the microseconds a
// quarter lasts, truncated: 60 000 000 / bpm. The shown number, the playback factor and
// the term each move one way along the slider.
TEST(TempoTable, EveryRowIsAWholeTempoAndTheRowsMoveTogether) {
  for (int v = 0; v <= kTempoSliderMax; ++v) {
    SCOPED_TRACE(v);
    const TempoRow t = TempoForSlider(v);
    ASSERT_EQ(t.tempo.size(), 14u);
    EXPECT_EQ(t.tempo.substr(0, 8), "00FF5103");
    const long micros = MicrosecondsPerQuarter(v);
    const long bpm = std::lround(60e6 / micros);
    EXPECT_EQ(micros, 60000000L / bpm) << bpm << " beats a minute";
    EXPECT_EQ(bpm % 10, 0) << "tempos go in steps of ten beats";
    if (v == 0) continue;
    const TempoRow before = TempoForSlider(v - 1);
    EXPECT_LT(t.tempoFactor, before.tempoFactor) << "playback gets faster";
    EXPECT_GT(t.number, before.number) << "the shown number goes up";
  }
  // The terms from slowest to fastest, each over a run of the slider.
  const std::string terms[] = {"Largo", "Larghetto", "Adagio", "Andante", "Moderato", "Allegro", "Presto", "Prestissimo"};
  int next = 0;
  for (int v = 0; v <= kTempoSliderMax; ++v) {
    const std::string term = TempoForSlider(v).term;
    if (next < 8 && term == terms[next]) ++next;
    EXPECT_EQ(term, terms[next - 1]) << v;
  }
  EXPECT_EQ(next, 8) << "every term is used";
}

TEST(TempoTable, TheFileTempoAndTheShownNumberDisagree) {
  auto micros = MicrosecondsPerQuarter;
  // The middle writes 120 beats a minute to a file while the window shows 110.
  EXPECT_EQ(micros(kTempoSliderStart), 500000);
  EXPECT_EQ(TempoForSlider(kTempoSliderStart).number, 110);
  EXPECT_DOUBLE_EQ(TempoForSlider(kTempoSliderStart).tempoFactor, 1.0);
  // Faster at every step, except the last, which is slower in the file than the one
  // before it though playback and the number go on faster.
  for (int v = 1; v < kTempoSliderMax; ++v) EXPECT_LT(micros(v), micros(v - 1)) << v;
  EXPECT_EQ(micros(15), 285714);
  EXPECT_EQ(micros(14), 214285);
  EXPECT_LT(TempoForSlider(15).tempoFactor, TempoForSlider(14).tempoFactor);
}

TEST(TempoTable, ValuesOffTheSliderAreHeldAtItsEnds) {
  EXPECT_EQ(TempoForSlider(-3).tempo, TempoForSlider(0).tempo);
  EXPECT_EQ(TempoForSlider(16).tempo, "00FF5103045C12");
  EXPECT_EQ(ClampTempoSlider(99), kTempoSliderMax);
  EXPECT_EQ(ClampTempoSlider(-1), 0);
  EXPECT_EQ(ClampTempoSlider(9), 9);
}

// The ten slider steps reach the eight system levels without a gap and never step
// back, and the speaker picture grows with the level through all four pictures.
TEST(VolumeTable, SliderStepsToLevelsAndSpeakerPictures) {
  EXPECT_EQ(VolumeLevel(0), 0);
  EXPECT_EQ(VolumeLevel(9), 7);
  std::set<std::string> pictures;
  for (int v = 1; v <= 9; ++v) {
    SCOPED_TRACE(v);
    const int step = VolumeLevel(v) - VolumeLevel(v - 1);
    EXPECT_TRUE(step == 0 || step == 1);
    EXPECT_GE(SpeakerPicture(VolumeLevel(v)), SpeakerPicture(VolumeLevel(v - 1)));
  }
  for (int level = 0; level <= 7; ++level) pictures.insert(SpeakerPicture(level));
  EXPECT_EQ(pictures, (std::set<std::string>{"Speaker0", "Speaker1", "Speaker2", "Speaker3"}));
  EXPECT_EQ(VolumeLevel(-1), 0) << "off the slider is held at its ends";
  EXPECT_EQ(VolumeLevel(12), 7);
}
