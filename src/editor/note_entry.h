#pragma once
// Note entry: a double click on the staff, or a finger on the fingerboard, makes one
// note at the entry column and moves the column on. The length, loudness and
// articulation buttons decide what the next note will be.
#include <array>
#include <string_view>

#include "score/staff.h"
#include "ports/ports.h"

namespace lirenza {

struct EntryState {
  int lengthButton = 4;          // pressed length button: 0..15 notes, 16..31 rests
  int loudnessButton = 4;        // pressed loudness button, 0..8
  double gate = 0.95;   // share of a note that sounds, by the articulation buttons
  long long lastClickTicks = 0;  // Ticks of the last single click on the staff
};

inline constexpr long long kDoubleClickTicks = 30;

// Button captions and what they set.
extern const std::array<std::string_view, 16> kLengthNames;   // "全音符" ... "64音符"
extern const std::array<std::string_view, 9> kLoudnessCaptions;  // "ppp" ... "fff"
extern const std::array<std::string_view, 3> kArticulationCaptions;  // "Sta", "Nor", "Leg"
extern const std::array<double, 3> kArticulationGates;
// Column step after a note of a duration digit.
int EntrySpacingFor(int digit);
// The velocity digit of a loudness button.
std::string VelocityDigitFor(int loudnessButton);

// A press on the staff at x, y (canvas pixels). A first click places the entry column
// and selects the bar; a second within 30 ticks makes a note there. True when a note
// was made.
bool EnterNoteAt(Staff& staff, EntryState& entry, const Modes& modes, Modifiers mods, long long ticks, int x,
                 int y);

// The narrow canvas at the right end of the staff: a press there counts as the first
// click of a double click on the staff.
inline void PressRightOfStaff(EntryState& entry, long long ticks) { entry.lastClickTicks = ticks; }

// A note from the fingerboard: pitch is a natural line, accidental 0 none, 1 sharp,
// 2 flat. Goes in at the entry column and moves it on by 32 (a rest by entrySpacing).
void EnterPlayedNote(Staff& staff, const EntryState& entry, int pitch, int accidental);

// The buttons. The length button is refused while busy; the others always act.
void ChooseLength(Staff& staff, EntryState& entry, const Modes& modes, int index);
void ChooseLoudness(EntryState& entry, int index);
void ChooseArticulation(EntryState& entry, int index);

}  // namespace lirenza
