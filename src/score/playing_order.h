#pragma once
// Time order of the notes, shared by playback and the MIDI writer. Time follows Left;
// notes of one column stand by rising duration digit (longest first), each judged
// against the one neighbour the walk meets, so a chord entered in another order can
// sort differently: that is how scores have always played, and files rely on it.
#include <algorithm>
#include <vector>

#include "score/note_cv.h"

namespace lirenza {

// Indexes into icv in playing order. Element 0 is always 0, the template, which is the
// origin of time: no note is ever put in front of it, even one at its own column with
// a longer value, so that such a note is neither dropped nor played as the template.
std::vector<int> PlayingOrder(const std::vector<NoteCV>& icv);

// Puts an event into a list kept in time order behind every event of the same time
// already there. Element 0 of the list is a dummy and keeps its place.
template <typename Event, typename TimeOf>
void InsertByTime(std::vector<Event>& events, const Event& e, TimeOf timeOf) {
  auto t = timeOf(e);
  if (events.size() <= 1 || !(t < timeOf(events.back()))) {
    events.push_back(e);
    return;
  }
  auto at = std::upper_bound(events.begin() + 1, events.end(), t,
                             [&](const auto& time, const Event& x) { return time < timeOf(x); });
  events.insert(at, e);
}

}  // namespace lirenza
