#pragma once
// The physical keys of the computer keyboard. The key table names its keys by the
// Macintosh virtual key code, which says where a key sits, not what it prints; Linux
// says the same with the evdev key code (what X11 and Wayland report as the native
// scan code, X11 adding 8). Translating one into the other once lets the same key
// play the same note on a US, a JIS or a German layout.
namespace lirenza {

inline constexpr int kNoKey = -1;

// The Macintosh virtual key code of the key at an evdev code's place; kNoKey for a
// key the Macintosh keyboard has no code for here.
int MacKeyCodeOfEvdev(int evdevCode);

// The evdev code of the key at a Macintosh virtual key code's place; kNoKey if none.
int EvdevOfMacKeyCode(int macCode);

}  // namespace lirenza
