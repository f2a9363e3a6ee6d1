#pragma once
// What a note from a MIDI keyboard does: it sounds on the live player at the pitch the
// tuning gives its key and shows the finger in the present hand position, as a key of
// the computer keyboard does. Each started note is remembered as it was started, so
// that its end silences that very pitch and wipes that very finger even when the
// score's key or the hand position changed while the key was held.
#include <array>

#include "ports/midi_input.h"
#include "ports/ports.h"
#include "tuning/pure_scale.h"
#include "violin/key_push.h"

namespace lirenza {

class MidiKeyboardNotes {
 public:
  static constexpr int kKeys = 128;

  void Apply(const MidiNoteEvent& event, const TuningTables& tuning, int handPosition, const SoundPorts& ports);
  // Ends every note still sounding and wipes its finger.
  void EndAll(const SoundPorts& ports);

 private:
  struct Started {
    bool sounding = false;
    int pitch = 0;     // as given to the player
    StringCell place;  // string 0: nothing drawn
  };
  void Start(int key, int velocity, const TuningTables& tuning, int handPosition, const SoundPorts& ports);
  void End(int key, const SoundPorts& ports);

  std::array<Started, kKeys> started_{};
};

}  // namespace lirenza
