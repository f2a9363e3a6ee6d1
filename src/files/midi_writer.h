#pragma once
// The Standard MIDI file of a staff: format 0, one track, 480 ticks to the quarter,
// everything on channel 1. Times come from the duration digits of the notes in playing
// order, never from the distance between them; Left only orders and groups.
#include <cstdint>
#include <string>
#include <vector>

#include "score/note_cv.h"

namespace lirenza {

struct MidiEvent {
  long long time = 0;  // ticks from the first note event
  int pitch = 0;       // the low byte of noteNo
  int velocity = 0;
};

// The note events of a staff in file order; element 0 is a dummy at time 0.
std::vector<MidiEvent> MidiEvents(const std::vector<NoteCV>& icv, double tGT);
// The bytes of all note events: delta, 0x90, pitch, velocity for each.
std::vector<std::uint8_t> MadeMidi(const std::vector<NoteCV>& icv, double tGT);
// One delta time as a variable-length quantity of up to four bytes (28 bits kept).
std::vector<std::uint8_t> MadeGT(long long delta);
// The whole file. `tempo` is the tempo event text of the slider ("00FF5103......").
std::vector<std::uint8_t> SaveMidiBytes(const std::vector<NoteCV>& icv, double tGT,
                                        const std::string& tempo, int inst);

}  // namespace lirenza
