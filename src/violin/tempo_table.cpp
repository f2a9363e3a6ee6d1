#include "violin/tempo_table.h"

#include <algorithm>

#include "score/text_fields.h"

namespace lirenza {

namespace {
constexpr std::string_view kTempoHex =
    "124F80,0F4240,0D1436,0B71B0,0A2C2A,0927C0,0852AE,07A120,070AE2,068A1B,05B8D8,051615,0493E0,03D090,03450D,045C12";
constexpr std::string_view kTempoFactor =
    "1.5,1.4,1.3,1.25,1.2,1.15,1.1,1,0.95,0.9,0.85,0.8,0.75,0.7,0.65,0.6";
constexpr std::string_view kTempoNumber = "40,50,60,70,80,90,100,110,120,130,140,150,160,170,190,210";
constexpr std::string_view kTempoTerm =
    "Largo,Largo,Larghetto,Adagio,Andante,Andante,Andante,Moderato,Moderato,Allegro,Allegro,Allegro,"
    "Presto,Presto,Presto,Prestissimo";
constexpr std::string_view kVolumeLevels = "0,1,2,3,4,4,5,5,6,7";
}  // namespace

int ClampTempoSlider(int value) { return std::clamp(value, 0, kTempoSliderMax); }

TempoRow TempoForSlider(int value) {
  int f = ClampTempoSlider(value) + 1;
  return {"00FF5103" + Field(kTempoHex, f), DoubleVal(Field(kTempoFactor, f)),
          IntVal(Field(kTempoNumber, f)), Field(kTempoTerm, f)};
}

int VolumeLevel(int sliderValue) { return IntVal(Field(kVolumeLevels, std::clamp(sliderValue, 0, 9) + 1)); }

std::string SpeakerPicture(int level) {
  if (level <= 1) return "Speaker0";
  if (level <= 3) return "Speaker1";
  if (level <= 5) return "Speaker2";
  return "Speaker3";
}

}  // namespace lirenza
