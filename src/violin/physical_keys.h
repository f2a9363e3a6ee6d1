#pragma once
// The physical keys of the computer keyboard. The key table names its keys by the
// Macintosh virtual key code, which says where a key sits, not what it prints; Linux
// says the same with the evdev key code (what X11 and Wayland report as the native
// scan code, X11 adding 8). Translating one into the other once lets the same key
// play the same note on a US, a JIS or a German layout.
#include <bitset>

#include "ports/ports.h"

namespace lirenza {

inline constexpr int kNoKey = -1;

// The Macintosh virtual key code of the key at an evdev code's place; kNoKey for a
// key the Macintosh keyboard has no code for here.
int MacKeyCodeOfEvdev(int evdevCode);

// The evdev code of the key at a Macintosh virtual key code's place; kNoKey if none.
int EvdevOfMacKeyCode(int macCode);

// The physical keys held down now, fed by key events by evdev code and read by the
// key table's Macintosh codes. Pressing a held key or releasing a free one changes
// nothing, so an event seen twice, or a repeat, does no harm.
class HeldKeys : public KeyState {
 public:
  // Whether the table of held keys changed; a key without a Macintosh code never does.
  bool Press(int evdevCode) { return Set(evdevCode, true); }
  bool Release(int evdevCode) { return Set(evdevCode, false); }
  // Every key counts as released; whether any was held.
  bool ReleaseAll() {
    const bool any = held_.any();
    held_.reset();
    return any;
  }
  bool Holds(int evdevCode) const { return AsyncKeyDown(MacKeyCodeOfEvdev(evdevCode)); }
  bool AsyncKeyDown(int macCode) const override {
    return macCode >= 0 && macCode < kMacKeyCodes && held_.test(static_cast<std::size_t>(macCode));
  }

 private:
  static constexpr int kMacKeyCodes = 128;
  bool Set(int evdevCode, bool down);
  std::bitset<kMacKeyCodes> held_;
};

}  // namespace lirenza
