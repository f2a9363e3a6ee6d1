#pragma once
// The settings that outlive a run: the window's place, the keyboard layout, the volume
// and tempo sliders, the back picture and the printer setup. They are kept as one
// compact JSON object, read when the window opens and written when it closes.
//
// Reading never fails: whatever a file lacks, cannot be read or holds out of range
// keeps its start value, so a damaged file costs at most the settings it damaged.
#include <optional>
#include <string>
#include <string_view>

#include "violin/tempo_table.h"

namespace lirenza {

inline constexpr int kKeyboardLayouts = 2;  // 0 Japanese (JIS), 1 US
inline constexpr int kVolumeSliderMax = 9;
inline constexpr int kVolumeSliderStart = 5;
inline constexpr int kBackPictures = 12;
// The printer setup is kept in Base64, broken into lines of this many characters.
inline constexpr int kBase64LineLength = 76;

struct WindowPlace {
  int left = 0;
  int top = 0;
  bool operator==(const WindowPlace&) const = default;
};

struct Preferences {
  // None: wherever the desktop puts a new window. A place needs both edges.
  std::optional<WindowPlace> windowPlace;
  int keyboardLayout = 0;
  int volumeSlider = kVolumeSliderStart;
  int tempoSlider = kTempoSliderStart;
  int backPicture = 0;
  std::string printerSetup;  // the printer's own bytes, opaque to us
  bool operator==(const Preferences&) const = default;
};

// The file's text: compact, keys in a fixed order, no line end. A record without a
// window place leaves out the two place keys.
std::string PreferencesText(const Preferences& preferences);

// The settings a file's text gives, over the start values.
Preferences ReadPreferences(std::string_view text);

// Base64 with a line break ("\r\n") after every lineLength characters; none at the end.
std::string EncodeBase64Lines(std::string_view bytes, int lineLength = kBase64LineLength);
// The bytes of Base64 text; line breaks and blanks are skipped. Nothing when the text
// holds another character or stops in the middle of a group.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace lirenza
