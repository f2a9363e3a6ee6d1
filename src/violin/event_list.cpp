#include "violin/event_list.h"

#include "score/note_tables.h"
#include "score/playing_order.h"

namespace lirenza {

std::vector<PlayEvent> BuildEventList(const std::vector<NoteCV>& icv, double d, double tGT) {
  std::vector<PlayEvent> events(1);
  if (icv.empty()) return events;
  const std::vector<int> order = PlayingOrder(icv);
  events.reserve(order.size() * 2);
  auto timeOf = [](const PlayEvent& e) { return e.time; };
  double t = 0.0;
  for (std::size_t k = 1; k < order.size(); ++k) {
    const int c = order[k];
    const NoteCV& note = icv[c];
    const NoteCV& before = icv[order[k - 1]];
    if (note.left != before.left) t += static_cast<double>(NoteDur(before.dr, d));
    InsertByTime(events, PlayEvent{c, t, note.noteNo, NoteVel(note.ve)}, timeOf);
    InsertByTime(events, PlayEvent{c, t + static_cast<double>(NoteDur(note.dr, d)) * tGT, note.noteNo, 0},
                 timeOf);
  }
  return events;
}

}  // namespace lirenza
