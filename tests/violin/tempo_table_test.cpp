// The tempo and volume sliders: three separate tempo lists that do not agree with one
// another, and the volume steps that share a level.
#include <gtest/gtest.h>

#include <string>

#include "violin/tempo_table.h"

using namespace lirenza;

TEST(TempoTable, EveryRowOfTheSlider) {
  struct Row {
    const char* hex;
    double d;
    int number;
    const char* term;
  } rows[] = {
      {"124F80", 1.5, 40, "Largo"},      {"0F4240", 1.4, 50, "Largo"},     {"0D1436", 1.3, 60, "Larghetto"},
      {"0B71B0", 1.25, 70, "Adagio"},    {"0A2C2A", 1.2, 80, "Andante"},   {"0927C0", 1.15, 90, "Andante"},
      {"0852AE", 1.1, 100, "Andante"},   {"07A120", 1.0, 110, "Moderato"}, {"070AE2", 0.95, 120, "Moderato"},
      {"068A1B", 0.9, 130, "Allegro"},   {"05B8D8", 0.85, 140, "Allegro"}, {"051615", 0.8, 150, "Allegro"},
      {"0493E0", 0.75, 160, "Presto"},   {"03D090", 0.7, 170, "Presto"},   {"03450D", 0.65, 190, "Presto"},
      {"045C12", 0.6, 210, "Prestissimo"},
  };
  static_assert(std::size(rows) == kTempoSliderMax + 1);
  for (int v = 0; v <= kTempoSliderMax; ++v) {
    const TempoRow t = TempoForSlider(v);
    EXPECT_EQ(t.tempo, std::string("00FF5103") + rows[v].hex) << v;
    EXPECT_DOUBLE_EQ(t.d, rows[v].d) << v;
    EXPECT_EQ(t.number, rows[v].number) << v;
    EXPECT_EQ(t.term, rows[v].term) << v;
  }
}

TEST(TempoTable, TheListsDisagreeWhereTheyAlwaysHave) {
  auto micros = [](int v) { return std::stol(TempoForSlider(v).tempo.substr(8), nullptr, 16); };
  // The middle writes 120 beats a minute to a file while the window shows 110.
  EXPECT_EQ(micros(kTempoSliderStart), 500000);
  EXPECT_EQ(TempoForSlider(kTempoSliderStart).number, 110);
  EXPECT_DOUBLE_EQ(TempoForSlider(kTempoSliderStart).d, 1.0);
  // Faster at every step, except the last, which is slower in the file than the one
  // before it though playback and the number go on faster.
  for (int v = 1; v < kTempoSliderMax; ++v) EXPECT_LT(micros(v), micros(v - 1)) << v;
  EXPECT_EQ(micros(15), 285714);
  EXPECT_EQ(micros(14), 214285);
  EXPECT_LT(TempoForSlider(15).d, TempoForSlider(14).d);
}

TEST(TempoTable, ValuesOffTheSliderAreHeldAtItsEnds) {
  EXPECT_EQ(TempoForSlider(-3).tempo, TempoForSlider(0).tempo);
  EXPECT_EQ(TempoForSlider(16).tempo, "00FF5103045C12");
  EXPECT_EQ(ClampTempoSlider(99), kTempoSliderMax);
  EXPECT_EQ(ClampTempoSlider(-1), 0);
  EXPECT_EQ(ClampTempoSlider(9), 9);
}

TEST(VolumeTable, SliderStepsToLevelsAndSpeakerPictures) {
  struct Row {
    int slider, level;
    const char* picture;
  } rows[] = {
      {0, 0, "Speaker0"}, {1, 1, "Speaker0"}, {2, 2, "Speaker1"}, {3, 3, "Speaker1"},
      {4, 4, "Speaker2"}, {5, 4, "Speaker2"},  // two steps share a level
      {6, 5, "Speaker2"}, {7, 5, "Speaker2"}, {8, 6, "Speaker3"}, {9, 7, "Speaker3"},
      {-1, 0, "Speaker0"}, {12, 7, "Speaker3"},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(VolumeLevel(r.slider), r.level) << r.slider;
    EXPECT_EQ(SpeakerPicture(VolumeLevel(r.slider)), r.picture) << r.slider;
  }
}
