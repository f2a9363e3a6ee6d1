// Time order of the notes, which both playback and the MIDI file follow.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "score/playing_order.h"

using namespace lirenza;

namespace {
std::vector<NoteCV> Notes(std::initializer_list<std::pair<int, const char*>> leftAndDigit) {
  std::vector<NoteCV> icv(1);
  for (auto [left, digit] : leftAndDigit) {
    NoteCV n;
    n.left = left;
    n.dr = digit;
    icv.push_back(n);
  }
  return icv;
}
}  // namespace

TEST(PlayingOrder, FollowsLeftWhateverTheEntryOrder) {
  struct Case {
    const char* name;
    std::vector<NoteCV> icv;
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
  for (const auto& c : cases) EXPECT_EQ(PlayingOrder(c.icv), c.order) << c.name;
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

TEST(PlayingOrder, RandomStaffsGiveAPermutationSortedByLeft) {
  std::mt19937 rng(7);
  for (int round = 0; round < 200; ++round) {
    std::vector<NoteCV> icv(1);
    const int count = rng() % 60;
    for (int i = 0; i < count; ++i) {
      NoteCV n;
      n.left = 120 + 8 * static_cast<int>(rng() % 20);
      n.dr = std::string(1, "0123456789ABCDEF"[rng() % 16]);
      icv.push_back(n);
    }
    auto order = PlayingOrder(icv);
    ASSERT_EQ(order.size(), icv.size());
    EXPECT_EQ(order[0], 0);
    auto sorted = order;
    std::sort(sorted.begin(), sorted.end());
    for (std::size_t i = 0; i < sorted.size(); ++i) ASSERT_EQ(sorted[i], static_cast<int>(i));
    for (std::size_t i = 2; i < order.size(); ++i) ASSERT_LE(icv[order[i - 1]].left, icv[order[i]].left);
  }
}

TEST(InsertByTime, LaterEventsOfEqualTimeGoBehind) {
  struct E {
    int time, id;
  };
  std::vector<E> list(1, E{0, 0});
  auto t = [](const E& e) { return e.time; };
  for (E e : {E{10, 1}, E{5, 2}, E{10, 3}, E{5, 4}, E{0, 5}, E{20, 6}, E{10, 7}}) InsertByTime(list, e, t);
  std::vector<int> ids;
  for (std::size_t i = 1; i < list.size(); ++i) ids.push_back(list[i].id);
  EXPECT_EQ(ids, (std::vector<int>{5, 2, 4, 1, 3, 7, 6}));
  EXPECT_EQ(list[0].id, 0);
}
