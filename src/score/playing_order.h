#pragma once
// Time order of the notes, shared by playback and the MIDI writer. Time follows Left;
// notes of one column stand by rising duration digit (longest first), each judged
// against the one neighbour it meets, so a chord entered in another order can sort
// differently; saved scores are heard by this rule, so it stays.
#include <algorithm>
#include <vector>

#include "score/note.h"

namespace lirenza {

// Indexes into notes in playing order, in O(n log n) whatever the entry order. Element 0
// is always 0, the template, which is the origin of time: no note is ever put in front
// of it, even one at its own column with a longer value, so that such a note is neither
// dropped nor played as the template. Within a column the notes are taken in index
// order: each goes to the end of the column, or just before the column's last note when
// that note's duration digit is greater than its own.
std::vector<int> PlayingOrder(const std::vector<Note>& notes);

// Puts events[1..] in time order, keeping creation order among events of equal time, so
// a note-off never overtakes the note-on made before it at the same time. Element 0 is a
// dummy and keeps its place.
template <typename Event, typename TimeOf>
void SortEventsByTime(std::vector<Event>& events, TimeOf timeOf) {
  if (events.size() <= 2) return;
  std::stable_sort(events.begin() + 1, events.end(),
                   [&](const Event& a, const Event& b) { return timeOf(a) < timeOf(b); });
}

}  // namespace lirenza
