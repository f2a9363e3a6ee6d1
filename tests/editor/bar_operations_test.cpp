// Bar operations: cut, paste, clear, insert and double, and the two menus that call them.
#include <gtest/gtest.h>

#include <algorithm>

#include "editor/bar_operations.h"
#include "violin/fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {
// One note per bar at the bar's second column: C4 in bar 0, D4 in bar 1, ...
Staff Bars(int count) {
  Staff s;
  for (int b = 0; b < count; ++b) {
    Note& n = s.AddNote(Note{});
    FillFromToken(n, std::string(1, "CDEFGAB"[b % 7]) + "494");
    n.left = 128 + 144 * b;
    n.top = 120 - 3 * b;
    n.picture = "n4";
  }
  return s;
}
using V = std::vector<std::string>;
V TokensByLeft(const Staff& s) {
  std::vector<Note> notes(s.notes.begin() + 1, s.notes.end());
  std::stable_sort(notes.begin(), notes.end(), [](auto& a, auto& b) { return a.left < b.left; });
  V out;
  for (auto& n : notes) out.push_back(std::to_string(n.left) + ":" + n.token);
  return out;
}
}  // namespace

TEST(BarOperations, CutClearInsertAndPaste) {
  const struct {
    int target, copied;
    void (*op)(Staff&);
    V after;
  } cases[] = {
      {0, 0, BarDelete, {"128:D494", "272:E494"}},
      {1, 0, BarDelete, {"128:C494", "272:E494"}},
      {1, 0, BarClear, {"128:C494", "416:E494"}},
      {1, 0, BarAdd, {"128:C494", "416:D494", "560:E494"}},
      {2, 0, BarCopy, {"128:C494", "272:D494", "416:C494"}},
      {1, 1, BarCopy, {"128:C494", "416:E494"}},  // a bar pasted onto itself empties it
      {4, 1, BarCopy, {"128:C494", "272:D494", "416:E494", "704:D494"}},
  };
  for (const auto& c : cases) {
    Staff s = Bars(3);
    s.selectedBar = c.target;
    s.copiedBar = c.copied;
    c.op(s);
    EXPECT_EQ(TokensByLeft(s), c.after) << c.after[0];
    EXPECT_EQ(s.notes[0].left, 120) << "the template never moves";
  }
  Staff s = Bars(3);
  s.notes[2].left = 10232;
  BarAdd(s);
  EXPECT_EQ(std::vector<int>({s.notes[1].left, s.notes[2].left, s.notes[3].left}), std::vector<int>({272, 10232, 416}))
      << "past 10224 the walk stops; notes behind it in entry order stay";
}

// The user copies bar 2, a note and a chord with signs and pictures, scrolls five bars
// on and pastes onto the bar third from the left: bar 8 of the score gets an exact copy.
TEST(BarOperations, CopyScrollPasteCopiesTheBarTheUserChose) {
  Staff s = Bars(12);
  Note& chord = s.AddNote(s.notes[3]);
  FillFromToken(chord, "F4#94");
  chord.top = 108;
  chord.stemDown = true;
  chord.picture = "u4";
  s.keySignature = 5;  // nothing is read again under the key
  s.selectedBar = 2;
  BarCopyMark(s);
  ScrollTo(s, 720);
  s.selectedBar = 3;
  BarCopy(s);
  ScrollTo(s, 0);
  std::vector<Note> sources, copies;
  for (const Note& n : s.notes) {
    if (n.left == 416) sources.push_back(n);
    if (n.left == 416 + 6 * 144) copies.push_back(n);
  }
  ASSERT_EQ(sources.size(), 2u) << "the source stays";
  for (Note& n : sources) n.left += 6 * 144;
  EXPECT_EQ(copies, sources) << "bar 8's own note is gone, the copy is exact";
}

TEST(BarOperations, DoubleWritesTheScoreOutTwiceUpTo36Bars) {
  for (auto [lastLeft, offset] : {std::pair{240, 144}, {136, 0}, {5304, 5184}, {5328, -1}}) {
    Staff s = Bars(2);
    s.notes[2].left = lastLeft;
    ScrollTo(s, 288);
    BarDouble(s);
    EXPECT_EQ(s.scrollValue, 0);
    std::vector<int> lefts, want = {128, lastLeft};
    for (const Note& n : s.notes) lefts.push_back(n.left);
    if (offset >= 0) want.insert(want.end(), {128 + offset, lastLeft + offset});
    EXPECT_EQ(std::vector(lefts.begin() + 1, lefts.end()), want);
  }
}

TEST(BarOperations, DeleteAllAsksOnlyWhenItMust) {
  FakeConfirm confirm;
  confirm.answer = false;
  Staff s = Bars(3);
  s.keySignature = 4;
  ChooseFromStaffMenu(s, BarOperation::DeleteAll, 20, 78, confirm);
  EXPECT_EQ(s.NoteCount(), 0) << "an unchanged score is cleared without asking";
  EXPECT_EQ(s.keySignature, 4);
  s = Bars(3);
  s.hasChanges = true;
  ChooseFromStaffMenu(s, BarOperation::DeleteAll, 20, 78, confirm);
  EXPECT_EQ(confirm.asked, (V{"楽譜の音符を全部削除しますか？"}));
  EXPECT_EQ(s.NoteCount(), 3) << "cancel changes nothing";
  confirm.answer = true;
  s.title = "曲";
  ChooseFromBarMenu(s, Modes{}, BarOperation::DeleteAll, confirm);
  EXPECT_EQ(confirm.asked.size(), 2u) << "the menu road always asks, and clears the whole score";
  EXPECT_EQ(s.NoteCount() + s.title.size() + s.keySignature, 0u);
  s = Bars(3);
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::Cut, 44, 78, confirm), BarMenuOutcome::Done);
  EXPECT_EQ(TokensByLeft(s), (V{"128:D494", "272:E494"}));
  EXPECT_EQ(s.entryLeft, 160) << "the staff's menu places the entry column at the mouse";
}
