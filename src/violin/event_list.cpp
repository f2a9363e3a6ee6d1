#include "violin/event_list.h"

#include "score/note_tables.h"
#include "score/playing_order.h"

namespace lirenza {

std::vector<PlayEvent> BuildEventList(const std::vector<Note>& notes, double tempoFactor, double gate) {
  std::vector<PlayEvent> events(1);
  if (notes.empty()) return events;
  const std::vector<int> order = PlayingOrder(notes);
  events.reserve(order.size() * 2 - 1);
  double t = 0.0;
  for (std::size_t k = 1; k < order.size(); ++k) {
    const int c = order[k];
    const Note& note = notes[c];
    const Note& before = notes[order[k - 1]];
    if (note.left != before.left) t += static_cast<double>(MicrosecondsOfDigit(before.durationDigit, tempoFactor));
    events.push_back(PlayEvent{c, t, note.pitch, VelocityOfDigit(note.velocityDigit)});
    events.push_back(PlayEvent{c, t + static_cast<double>(MicrosecondsOfDigit(note.durationDigit, tempoFactor)) * gate, note.pitch, 0});
  }
  SortEventsByTime(events, [](const PlayEvent& e) { return e.time; });
  return events;
}

}  // namespace lirenza
