#include "score/playing_order.h"

#include "score/text_fields.h"

namespace lirenza {

std::vector<int> PlayingOrder(const std::vector<NoteCV>& icv) {
  std::vector<int> order{0};
  if (icv.empty()) return order;
  order.reserve(icv.size());
  auto leftOf = [&](int pos) { return icv[order[pos]].left; };
  auto digitOf = [&](int index) { return HexVal(icv[index].dr); };
  for (int n = 1; n < static_cast<int>(icv.size()); ++n) {
    const int left = icv[n].left;
    const int last = static_cast<int>(order.size()) - 1;
    if (leftOf(last) < left) {
      order.push_back(n);
    } else if (leftOf(last) == left) {
      if (digitOf(order[last]) <= digitOf(n) || last == 0) order.push_back(n);
      else order.insert(order.end() - 1, n);
    } else {
      // Walk back to the first place whose left neighbour is not right of the note.
      // The notes behind the template are sorted by Left, so the walk is a binary
      // search; it never passes the template.
      auto it = std::upper_bound(order.begin() + 1, order.end(), left,
                                 [&](int l, int idx) { return l < icv[idx].left; });
      int p = static_cast<int>(it - order.begin());
      if (leftOf(p - 1) != left) {
        order.insert(order.begin() + p, n);
      } else if (digitOf(order[p - 1]) <= digitOf(n) || p - 1 == 0) {
        order.insert(order.begin() + p, n);
      } else {
        order.insert(order.begin() + (p - 1), n);
      }
    }
  }
  return order;
}

}  // namespace lirenza
