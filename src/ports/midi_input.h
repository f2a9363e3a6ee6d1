#pragma once
// Notes from instrument keyboards and programs that speak MIDI. A source delivers
// them from whatever thread it reads on; whoever listens carries them over to its own.
#include <functional>
#include <string>

namespace lirenza {

struct MidiNoteEvent {
  // AllNotesOff: the sender asked for silence (controllers 120 and 123), or a sender
  // went away and can no longer end the notes it started.
  enum class Kind { NoteOn, NoteOff, AllNotesOff };
  Kind kind = Kind::NoteOn;
  int key = 0;       // MIDI note number 0..127
  int velocity = 0;  // 1..127 for NoteOn

  bool operator==(const MidiNoteEvent&) const = default;
};

class MidiNoteSource {
 public:
  virtual ~MidiNoteSource() = default;
  // Starts delivering; false when there is no MIDI system to listen to (then
  // Problem() says why in one sentence). deliver may be called on any thread.
  virtual bool Listen(std::function<void(const MidiNoteEvent&)> deliver) = 0;
  // Once this returns, deliver is not called again and whatever it refers to may go.
  virtual void StopListening() = 0;
  virtual std::string Problem() const = 0;
};

}  // namespace lirenza
