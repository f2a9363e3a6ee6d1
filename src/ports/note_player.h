#pragma once
// What the logic needs of a sound: seven players, one instrument each. The logic never
// sees a synthesizer; tests hand it a fake that records every call.

namespace lirenza {

inline constexpr int kNotePlayers = 7;
inline constexpr int kLivePlayer = 0;   // what the keyboard and the fingerboard play
inline constexpr int kScorePlayer = 1;  // what playback, hovering and the staff play

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
