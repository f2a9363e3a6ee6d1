#pragma once
// A note player of the program on one channel of the shared synthesizer.
#include "platform/synth.h"
#include "ports/note_player.h"

namespace lirenza {

class FluidNotePlayer : public NotePlayer {
 public:
  FluidNotePlayer(Synth& synth, int channel) : synth_(synth), channel_(channel) {}
  void Instrument(int number) override { synth_.SelectInstrument(channel_, number); }
  void PlayNote(int pitch, int velocity) override { synth_.PlayNote(channel_, pitch, velocity); }
  int Channel() const { return channel_; }

 private:
  Synth& synth_;
  int channel_;
};

}  // namespace lirenza
