#pragma once
// The computer keyboard as a violin: 31 physical keys, read by polling, each sounding
// one pitch on the live player and showing it on the fingerboard. The hand position
// only changes where a pitch is shown, never the pitch or the keys.
#include <array>
#include <string_view>

#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/key_push.h"
#include "ports/ports.h"

namespace lirenza {

inline constexpr int kKeyRows = 31;
inline constexpr int kFlagCount = 100;
inline constexpr int kKeyVelocity = 100;  // the keyboard has no dynamics

struct KeyRow {
  int code;                        // Macintosh virtual key code
  std::string_view label;          // the key on a US layout
  int flagIndex;                   // which flag says the key counts as pressed
  int pitchIndex;                      // pitch index sounded
  std::array<StringCell, 3> place; // string / cell in 1st, 3rd, 5th position
};

// In the order the polling pass tests them: among keys that change together the
// earlier row wins.
extern const std::array<KeyRow, kKeyRows> kKeyTable;

using KeyFlags = std::array<bool, kFlagCount>;

// What the keyboard hand holds: which keys count as pressed and, for each, the pitch it
// started and where its finger was drawn. A release ends that very pitch and wipes that
// very finger, even when the score's key retuned the table or the hand moved to another
// position while the key was held: no note hangs and no finger stays behind.
struct KeyboardHand {
  KeyFlags flag{};
  std::array<int, kFlagCount> pitchStarted{};
  std::array<StringCell, kFlagCount> drawnAt{};
  bool AnyPressed() const;
};

// One pass of the position's polling timer. Handles at most one key transition, the
// first row whose key state and flag disagree, and says whether it did: the window
// keeps polling at once only while transitions are pending.
bool PollingPass(const KeyState& keys, KeyboardHand& hand, int position, const TuningTables& tuning,
                 const SoundPorts& ports);

// The hand position and the polling timers of the three positions (mode 0 off, 2
// repeating). Exactly one position timer runs after a change of position.
struct PositionState {
  int handPosition = 0;
  std::array<int, 3> timerMode{2, 0, 0};
  bool AnyTimerRunning() const { return timerMode[0] || timerMode[1] || timerMode[2]; }
};

// One pass of each running position timer, first to fifth; whether any acted.
bool PollRunningTimers(const PositionState& positions, const KeyState& keys, KeyboardHand& hand,
                       const TuningTables& tuning, const SoundPorts& ports);

// Ends every key that counts as pressed as its release would, for when no running
// timer is left to see the release.
void ReleasePressedKeys(KeyboardHand& hand, const SoundPorts& ports);

// The position selector. While the score is busy the position holds and the radio
// button of the present position is shown selected again. Returns the button to show
// selected.
int ChoosePosition(PositionState& state, int button, const Modes& modes);

// The edit/play radio buttons start and stop only the first position's timer, so in
// 3rd or 5th position the keyboard stays live in edit mode.
void ChooseKeyboardMode(PositionState& state, int modeButton);

// Return is the panic key: every pitch ends on all seven players, and the clean
// violin is painted over the fingerboard. Key flags are left alone, so a key still
// held does not retrigger.
void PanicSweep(const TuningTables& tuning, const SoundPorts& ports);

// What the window's key event does with a character code: the panic, or one step of
// the volume (slider 0) or tempo (slider 1) slider.
struct KeyDownAction {
  bool panic = false;
  int slider = -1;  // -1: none
  int step = 0;
};
KeyDownAction WindowKeyAction(int charCode);

}  // namespace lirenza
