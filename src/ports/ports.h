#pragma once
// The small pieces of the desktop the logic reaches through: a clock, the physical key
// state, the modifier keys, a yes/no question, and the drawn fingerboard. The window
// hands in the real ones; tests hand in fakes that record every call.
#include <array>
#include <string>

#include "ports/note_player.h"

namespace lirenza {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual long long Ticks() const = 0;           // sixtieths of a second
  virtual double Microseconds() const = 0;
};

class KeyState {
 public:
  virtual ~KeyState() = default;
  // True while the physical key with this Macintosh virtual key code is down.
  virtual bool AsyncKeyDown(int code) const = 0;
};

struct Modifiers {
  bool option = false;
  bool shift = false;
  bool control = false;
  bool Any() const { return option || shift || control; }
};

class Confirm {
 public:
  virtual ~Confirm() = default;
  // Asks the user; true when the action button was chosen.
  virtual bool Ask(const std::string& message, const std::string& explanation, const std::string& action) = 0;
};

// The fingerboard picture: a finger and a vibrating string shown or taken away, and
// the clean violin painted over everything.
class FingerboardView {
 public:
  virtual ~FingerboardView() = default;
  virtual void ShowFinger(int string, int cell) = 0;
  virtual void HideFinger(int string, int cell) = 0;
  virtual void ShowCleanViolin() = 0;
};

// The seven players and the fingerboard, as the sounding paths need them.
struct SoundPorts {
  std::array<NotePlayer*, kNotePlayers> players{};
  FingerboardView* view = nullptr;
};

}  // namespace lirenza
