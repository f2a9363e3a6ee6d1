#pragma once
// The Standard MIDI file of a staff: format 0, one track, 480 ticks to the quarter,
// everything on channel 1. Times come from the duration digits of the notes in playing
// order, never from the distance between them; Left only orders and groups. Every data
// byte stays below 0x80 whatever the staff holds, so any sequencer reads the file.
#include <cstdint>
#include <string>
#include <vector>

#include "score/note.h"

namespace lirenza {

struct MidiEvent {
  long long time = 0;  // ticks from the first note event
  int pitch = 0;       // the note's pitch, 0 to 127
  int velocity = 0;
};

// The note events of a staff in file order; element 0 is a dummy at time 0. A note whose
// number is outside 0 to 127 has no MIDI key: it is left out, but keeps its place in
// time as a rest would, so the rest of the score keeps the timing playback gives it.
// *notesLeftOut, when given, receives how many sounding notes were left out that way.
std::vector<MidiEvent> MidiEvents(const std::vector<Note>& notes, double gate, int* notesLeftOut = nullptr);
// The bytes of all note events: delta, 0x90, pitch, velocity for each.
std::vector<std::uint8_t> NoteEventBytes(const std::vector<Note>& notes, double gate,
                                         int* notesLeftOut = nullptr);
// One delta time as a variable-length quantity of up to four bytes (28 bits kept).
std::vector<std::uint8_t> VariableLengthQuantity(long long delta);
// The program change byte of an instrument number: bank and program are (inst - 1) / 128
// and (inst - 1) mod 128, and a file of one track carries the program alone.
int ProgramByte(int inst);
// The whole file. `tempo` is the tempo event text of the slider ("00FF5103......").
std::vector<std::uint8_t> MidiFileBytes(const std::vector<Note>& notes, double gate, const std::string& tempo,
                                        int inst, int* notesLeftOut = nullptr);

}  // namespace lirenza
