#pragma once
// The tempo slider, 0 to 15: the MIDI tempo event it writes, the playback time
// factor (larger is slower), and the number and term the window shows. Three separate
// lists: the number shown is not the file's beats per minute.
#include <string>
#include <string_view>

namespace lirenza {

inline constexpr int kTempoSliderMax = 15;
inline constexpr int kTempoSliderStart = 7;

struct TempoRow {
  std::string tempo;  // "00FF5103" and six hex digits of microseconds per quarter
  double tempoFactor;
  int number;
  std::string term;
};

// The row of a slider value; values outside 0 to 15 are taken at the nearer end, as
// the slider itself would hold them.
TempoRow TempoForSlider(int value);
int ClampTempoSlider(int value);

// Volume slider 0 to 9: the system level 0 to 7 and the speaker picture showing it.
int VolumeLevel(int sliderValue);
std::string SpeakerPicture(int level);

}  // namespace lirenza
