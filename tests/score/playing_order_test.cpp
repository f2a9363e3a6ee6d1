// Time order of the notes, which both playback and the MIDI file follow.
#include <gtest/gtest.h>

#include <random>

#include "score/playing_order.h"
#include "score/text_fields.h"

using namespace lirenza;

namespace {
std::vector<Note> Notes(std::initializer_list<std::pair<int, const char*>> leftAndDigit) {
  std::vector<Note> notes(1);
  for (auto [left, digit] : leftAndDigit) {
    Note& n = notes.emplace_back();
    n.left = left;
    n.durationDigit = digit;
  }
  return notes;
}

// The order as notes were always placed: each one walked back from the end past every
// note right of it, then compared with the one neighbour it met. Quadratic but plainly right.
std::vector<int> WalkedOrder(const std::vector<Note>& notes) {
  std::vector<int> order{0};
  for (int n = 1; n < static_cast<int>(notes.size()); ++n) {
    std::size_t p = order.size();
    while (p > 1 && notes[order[p - 1]].left > notes[n].left) --p;
    const Note& met = notes[order[p - 1]];
    if (p > 1 && met.left == notes[n].left && HexVal(met.durationDigit) > HexVal(notes[n].durationDigit)) --p;
    order.insert(order.begin() + static_cast<long>(p), n);
  }
  return order;
}
}  // namespace

TEST(PlayingOrder, FollowsLeftAndPutsTheLongerNoteOfAChordFirst) {
  struct Case {
    const char* name;
    std::vector<Note> notes;
    std::vector<int> order;
  } cases[] = {
      {"right to left", Notes({{200, "4"}, {168, "4"}, {136, "4"}}), {0, 3, 2, 1}},
      {"one dragged left", Notes({{136, "4"}, {168, "4"}, {152, "4"}}), {0, 1, 3, 2}},
      {"chord entered short first", Notes({{136, "8"}, {136, "4"}}), {0, 2, 1}},
      {"chord entered long first", Notes({{136, "4"}, {136, "8"}}), {0, 1, 2}},
      {"equal digits keep entry order", Notes({{136, "4"}, {136, "4"}}), {0, 1, 2}},
      {"walk meets a chord", Notes({{136, "4"}, {200, "4"}, {136, "2"}}), {0, 3, 1, 2}},
      {"walk behind a shorter note", Notes({{136, "2"}, {200, "4"}, {136, "8"}}), {0, 1, 3, 2}},
      {"one neighbour compared only", Notes({{136, "8"}, {136, "2"}, {136, "0"}}), {0, 2, 3, 1}},
      // The template stays first, even beside a longer note at its column or a note left of it.
      {"template column", Notes({{200, "4"}, {120, "0"}}), {0, 2, 1}},
      {"left of the template", Notes({{200, "4"}, {40, "4"}, {80, "4"}}), {0, 2, 3, 1}},
      {"empty", {}, {0}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(PlayingOrder(c.notes), c.order) << c.name;
    EXPECT_EQ(WalkedOrder(c.notes), c.order) << c.name << ", the walk";
  }
}

TEST(PlayingOrder, AgreesWithTheWalkOnRandomStaffs) {
  std::mt19937 rng(7);
  auto digit = [&] { return std::string(1, "0123456789ABCDEF"[rng() % 16]); };
  for (int round = 0; round < 3000; ++round) {
    // Few columns make many chords; a template moved by scrolling joins them at times.
    std::vector<Note> notes(1);
    const int columns = 1 + static_cast<int>(rng() % 12);
    notes[0].left = 104 + 8 * static_cast<int>(rng() % 4);
    notes[0].durationDigit = digit();
    for (int i = static_cast<int>(rng() % 40); i > 0; --i) {
      Note& n = notes.emplace_back();
      n.left = 104 + 8 * static_cast<int>(rng() % columns);
      n.durationDigit = rng() % 10 ? digit() : rng() % 2 ? "" : "7FFFFFFFFFFFFFFF";
    }
    ASSERT_EQ(PlayingOrder(notes), WalkedOrder(notes)) << "round " << round;
  }
}

TEST(SortEventsByTime, AgreesWithInsertingEachBehindItsEquals) {
  struct Event { int time, id; };
  std::mt19937 rng(11);
  for (int round = 0; round < 2000; ++round) {
    std::vector<Event> sorted(1, Event{0, 0}), inserted(1, Event{0, 0});
    const int times = 1 + static_cast<int>(rng() % 8);  // few distinct times: many ties
    for (int id = 1, count = static_cast<int>(rng() % 50); id <= count; ++id) {
      const Event e{static_cast<int>(rng() % times), id};
      sorted.push_back(e);
      auto p = inserted.end();
      while (p - inserted.begin() > 1 && (p - 1)->time > e.time) --p;
      inserted.insert(p, e);
    }
    SortEventsByTime(sorted, [](const Event& e) { return e.time; });
    for (std::size_t i = 0; i < sorted.size(); ++i) ASSERT_EQ(sorted[i].id, inserted[i].id) << "round " << round;
  }
}
