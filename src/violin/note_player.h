#pragma once
// What the logic needs of a sound: seven players, one instrument each. The logic never
// sees a synthesizer; tests hand it a fake that records every call.

namespace lirenza {

inline constexpr int kNotePlayers = 7;  // NP(0) live input, NP(1) the score, ...

class NotePlayer {
 public:
  virtual ~NotePlayer() = default;
  // An instrument number of the menus: bank × 128 + program, drum kits from 16385.
  virtual void Instrument(int number) = 0;
  // pitch in 1/256 semitone (a fractional MIDI note number × 256); velocity 0 ends the
  // note that was started with the same pitch.
  virtual void PlayNote(int pitch, int velocity) = 0;
};

}  // namespace lirenza
