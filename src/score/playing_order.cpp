#include "score/playing_order.h"

#include "score/text_fields.h"

namespace lirenza {

std::vector<int> PlayingOrder(const std::vector<Note>& notes) {
  std::vector<int> order{0};
  if (notes.size() <= 1) return order;
  std::vector<int> byLeft;
  byLeft.reserve(notes.size() - 1);
  for (int n = 1; n < static_cast<int>(notes.size()); ++n) byLeft.push_back(n);
  // Stable, so the notes of one column stay in index order for the rule below.
  std::stable_sort(byLeft.begin(), byLeft.end(),
                   [&](int a, int b) { return notes[a].left < notes[b].left; });

  order.reserve(notes.size());
  std::size_t columnStart = 0;
  while (columnStart < byLeft.size()) {
    const int left = notes[byLeft[columnStart]].left;
    const std::size_t firstInOrder = order.size();
    for (std::size_t k = columnStart; k < byLeft.size() && notes[byLeft[k]].left == left; ++k, ++columnStart) {
      const int n = byLeft[k];
      if (order.size() > firstInOrder && HexVal(notes[order.back()].durationDigit) > HexVal(notes[n].durationDigit)) {
        // Before the column's last note: that note moves one place on.
        order.push_back(order.back());
        order[order.size() - 2] = n;
      } else {
        order.push_back(n);
      }
    }
  }
  return order;
}

}  // namespace lirenza
