#pragma once
// The event list of playback: one note-on and one note-off for each note (a rest's are
// silent), in time order, times in microseconds at the tempo factor the list was built
// with. Element 0 is a blank that is never played.
#include <vector>

#include "score/note.h"

namespace lirenza {

struct PlayEvent {
  int place = 0;      // index of the note in the staff that made the event
  double time = 0;    // microseconds from the start of the piece, at the tempo factor
  int pitch = 0;      // pitch index: the note's pitch
  int velocity = 0;   // 0 ends the note
};

// Orders the notes by Left as playback does and builds the list. tempoFactor scales
// every length; gate is the share of a note that sounds. O(n log n) in the notes.
std::vector<PlayEvent> BuildEventList(const std::vector<Note>& notes, double tempoFactor, double gate);

}  // namespace lirenza
