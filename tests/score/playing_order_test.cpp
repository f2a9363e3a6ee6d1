// Time order of the notes, which both playback and the MIDI file follow.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "score/playing_order.h"
#include "score/text_fields.h"

using namespace lirenza;

namespace {
std::vector<Note> Notes(std::initializer_list<std::pair<int, const char*>> leftAndDigit) {
  std::vector<Note> notes(1);
  for (auto [left, digit] : leftAndDigit) {
    Note n;
    n.left = left;
    n.durationDigit = digit;
    notes.push_back(n);
  }
  return notes;
}
}  // namespace

TEST(PlayingOrder, FollowsLeftWhateverTheEntryOrder) {
  struct Case {
    const char* name;
    std::vector<Note> notes;
    std::vector<int> order;
  } cases[] = {
      {"in order", Notes({{136, "4"}, {168, "4"}, {200, "4"}}), {0, 1, 2, 3}},
      {"right to left", Notes({{200, "4"}, {168, "4"}, {136, "4"}}), {0, 3, 2, 1}},
      {"one dragged left", Notes({{136, "4"}, {168, "4"}, {152, "4"}}), {0, 1, 3, 2}},
      // A chord: longer values first, judged against the neighbour met.
      {"chord entered short first", Notes({{136, "8"}, {136, "4"}}), {0, 2, 1}},
      {"chord entered long first", Notes({{136, "4"}, {136, "8"}}), {0, 1, 2}},
      {"equal digits keep entry order", Notes({{136, "4"}, {136, "4"}}), {0, 1, 2}},
      // Inserted by the walk among equal columns: compared with the left neighbour only.
      {"walk meets a chord", Notes({{136, "4"}, {200, "4"}, {136, "2"}}), {0, 3, 1, 2}},
      {"walk behind a shorter note", Notes({{136, "2"}, {200, "4"}, {136, "8"}}), {0, 1, 3, 2}},
      // Only one neighbour is compared, so a three-note chord can stay unsorted.
      {"one comparison only", Notes({{136, "8"}, {136, "2"}, {136, "0"}}), {0, 2, 3, 1}},
  };
  for (const auto& c : cases) EXPECT_EQ(PlayingOrder(c.notes), c.order) << c.name;
}

TEST(PlayingOrder, TheTemplateStaysFirst) {
  // A note at the template's own column with a longer value must neither take the
  // template's place nor be dropped.
  EXPECT_EQ(PlayingOrder(Notes({{120, "2"}})), (std::vector<int>{0, 1}));
  EXPECT_EQ(PlayingOrder(Notes({{200, "4"}, {120, "0"}})), (std::vector<int>{0, 2, 1}));
  // A file may put a note left of the template: it still plays, after the origin.
  EXPECT_EQ(PlayingOrder(Notes({{200, "4"}, {40, "4"}, {80, "4"}})), (std::vector<int>{0, 2, 3, 1}));
  EXPECT_EQ(PlayingOrder({}), (std::vector<int>{0}));
}

namespace {

// The order as notes were always placed: each one walked back from the end past every
// note right of it, then compared with the one neighbour it met. Quadratic, but plainly
// right; the real order must agree with it on every staff.
std::vector<int> WalkedOrder(const std::vector<Note>& notes) {
  std::vector<int> order{0};
  for (int n = 1; n < static_cast<int>(notes.size()); ++n) {
    std::size_t p = order.size();
    while (p > 1 && notes[order[p - 1]].left > notes[n].left) --p;
    if (p > 1 && notes[order[p - 1]].left == notes[n].left &&
        HexVal(notes[order[p - 1]].durationDigit) > HexVal(notes[n].durationDigit))
      --p;
    order.insert(order.begin() + static_cast<long>(p), n);
  }
  return order;
}

// Events as they were always listed: each behind every event of equal or smaller time.
struct Event {
  int time, id;
};
std::vector<Event> InsertedByTime(const std::vector<Event>& made) {
  std::vector<Event> list(1, Event{0, 0});
  for (const Event& e : made) {
    std::size_t p = list.size();
    while (p > 1 && list[p - 1].time > e.time) --p;
    list.insert(list.begin() + static_cast<long>(p), e);
  }
  return list;
}

}  // namespace

TEST(PlayingOrder, AgreesWithTheWalkOnRandomStaffs) {
  std::mt19937 rng(7);
  for (int round = 0; round < 3000; ++round) {
    std::vector<Note> notes(1);
    // Few columns make many chords; a template moved by scrolling joins them at times.
    const int columns = 1 + static_cast<int>(rng() % 12);
    notes[0].left = 120 + 8 * static_cast<int>(rng() % 4) - 16;
    notes[0].durationDigit = std::string(1, "0123456789ABCDEF"[rng() % 16]);
    const int count = static_cast<int>(rng() % 40);
    for (int i = 0; i < count; ++i) {
      Note n;
      n.left = 104 + 8 * static_cast<int>(rng() % columns);
      const bool damaged = rng() % 10 == 0;
      n.durationDigit = damaged ? std::string(rng() % 2 ? "" : "7FFFFFFFFFFFFFFF") : std::string(1, "0123456789ABCDEF"[rng() % 16]);
      notes.push_back(n);
    }
    ASSERT_EQ(PlayingOrder(notes), WalkedOrder(notes)) << "round " << round;
  }
}

TEST(SortEventsByTime, AgreesWithInsertingEachBehindItsEquals) {
  std::mt19937 rng(11);
  for (int round = 0; round < 2000; ++round) {
    std::vector<Event> made;
    const int count = static_cast<int>(rng() % 50);
    const int times = 1 + static_cast<int>(rng() % 8);  // few distinct times: many ties
    for (int i = 0; i < count; ++i) made.push_back(Event{static_cast<int>(rng() % times), i + 1});
    std::vector<Event> sorted(1, Event{0, 0});
    sorted.insert(sorted.end(), made.begin(), made.end());
    SortEventsByTime(sorted, [](const Event& e) { return e.time; });
    const auto expected = InsertedByTime(made);
    ASSERT_EQ(sorted.size(), expected.size());
    for (std::size_t i = 0; i < sorted.size(); ++i) ASSERT_EQ(sorted[i].id, expected[i].id) << "round " << round;
  }
}
