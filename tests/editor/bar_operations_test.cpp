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
  const char* names[] = {"C4", "D4", "E4", "F4", "G4", "A4", "B4", "C5", "D5", "E5"};
  for (int b = 0; b < count; ++b) {
    Note n;
    FillFromToken(n, std::string(names[b % 10]) + "94");
    n.left = 128 + 144 * b;
    n.top = 120 - 3 * b;
    n.picture = "n4";
    s.AddNote(n);
  }
  return s;
}
Staff AtLefts(std::initializer_list<int> lefts) {
  Staff s;
  for (int left : lefts) s.AddNote(Note{}).left = left;
  return s;
}
std::vector<int> Lefts(const Staff& s) {
  std::vector<int> out;
  for (size_t i = 1; i < s.notes.size(); ++i) out.push_back(s.notes[i].left);
  return out;
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
  struct Case {
    const char* name;
    int target, copied;
    void (*op)(Staff&);
    V after;
  } cases[] = {
      {"cut bar 0", 0, 0, BarDelete, {"128:D494", "272:E494"}},
      {"cut bar 1", 1, 0, BarDelete, {"128:C494", "272:E494"}},
      {"clear bar 1", 1, 0, BarClear, {"128:C494", "416:E494"}},
      {"insert at bar 1", 1, 0, BarAdd, {"128:C494", "416:D494", "560:E494"}},
      {"paste bar 0 onto bar 2", 2, 0, BarCopy, {"128:C494", "272:D494", "416:C494"}},
      {"paste onto itself empties it", 1, 1, BarCopy, {"128:C494", "416:E494"}},
      {"paste onto an empty bar", 4, 1, BarCopy, {"128:C494", "272:D494", "416:E494", "704:D494"}},
  };
  for (const auto& c : cases) {
    Staff s = Bars(3);
    s.selectedBar = c.target;
    s.copiedBar = c.copied;
    c.op(s);
    EXPECT_EQ(TokensByLeft(s), c.after) << c.name;
    EXPECT_EQ(s.notes[0].left, 120) << "the template never moves";
  }
  Staff s = AtLefts({200, 10232, 300});
  BarAdd(s);
  EXPECT_EQ(Lefts(s), (std::vector<int>{344, 10232, 300})) << "past 10224 the walk stops, in entry order";
}

// The user copies bar 2, a note and a chord with signs and pictures, scrolls five bars
// on and pastes onto the bar third from the left: bar 8 of the score gets an exact copy.
TEST(BarOperations, CopyScrollPasteCopiesTheBarTheUserChose) {
  Staff s = Bars(12);
  Note chord;
  FillFromToken(chord, "F4#94");
  chord.left = s.notes[3].left;
  chord.top = 108;
  chord.stemDown = true;
  chord.picture = "u4";
  s.AddNote(chord);
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
  struct Case {
    int lastLeft, copies, offset;
  } cases[] = {{240, 2, 144}, {136, 2, 0}, {5304, 2, 5184}, {5328, 0, 0}};
  for (const auto& c : cases) {
    Staff s = AtLefts({128, c.lastLeft});
    ScrollTo(s, 288);
    BarDouble(s);
    EXPECT_EQ(s.scrollValue, 0);
    std::vector<int> want = {128, c.lastLeft};
    if (c.copies) want.insert(want.end(), {128 + c.offset, c.lastLeft + c.offset});
    EXPECT_EQ(Lefts(s), want);
  }
}

TEST(BarOperations, MenusDeleteAllOnTwoRoads) {
  FakeConfirm confirm;
  Staff s = Bars(3);
  s.keySignature = 4;
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::DeleteAll, 20, 78, confirm), BarMenuOutcome::Done);
  EXPECT_TRUE(confirm.asked.empty()) << "an unchanged score is cleared without asking";
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.keySignature, 4);
  s = Bars(3);
  s.hasChanges = true;
  confirm.answer = false;
  ChooseFromStaffMenu(s, BarOperation::DeleteAll, 20, 78, confirm);
  EXPECT_EQ(confirm.asked, (V{"楽譜の音符を全部削除しますか？"}));
  EXPECT_EQ(s.NoteCount(), 3) << "cancel changes nothing";
  confirm.answer = true;
  s.title = "曲";
  s.keySignature = 4;
  ChooseFromBarMenu(s, Modes{}, BarOperation::DeleteAll, confirm);
  EXPECT_EQ(confirm.asked.size(), 2u) << "the menu road always asks";
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.title, "");
  EXPECT_EQ(s.keySignature, 0);
  // The staff's menu places the entry column at the mouse and carries the file items.
  s = Bars(3);
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::Cut, 44, 78, confirm), BarMenuOutcome::Done);
  EXPECT_EQ(s.NoteCount(), 2);
  EXPECT_EQ(s.entryLeft, 160);
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::OpenScore, 0, 0, confirm), BarMenuOutcome::OpenFile);
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::SaveScore, 0, 0, confirm), BarMenuOutcome::SaveFile);
  EXPECT_EQ(ChooseFromBarMenu(s, Modes{}, BarOperation::OpenScore, confirm), BarMenuOutcome::Ignored);
}
