// Bar operations: walks over the notes that cut, paste, clear, insert and double.
#include <gtest/gtest.h>

#include <algorithm>

#include "editor/bar_operations.h"
#include "violin/fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {
// One note per bar at the bar's second column, tokens C D E F ... by bar.
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
std::vector<std::string> TokensByLeft(const Staff& s) {
  std::vector<Note> notes(s.notes.begin() + 1, s.notes.end());
  std::stable_sort(notes.begin(), notes.end(), [](auto& a, auto& b) { return a.left < b.left; });
  std::vector<std::string> out;
  for (auto& n : notes) out.push_back(std::to_string(n.left) + ":" + n.token);
  return out;
}
using V = std::vector<std::string>;
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
    SCOPED_TRACE(c.name);
    Staff s = Bars(3);
    s.selectedBar = c.target;
    s.copiedBar = c.copied;
    c.op(s);
    EXPECT_EQ(TokensByLeft(s), c.after);
    EXPECT_EQ(s.notes[0].left, 120) << "the template never moves";
  }
}

TEST(BarOperations, PasteKeepsPicturesSignsAndChords) {
  Staff s = Bars(1);
  Note chord;
  FillFromToken(chord, "F4#94");
  chord.left = s.notes[1].left;
  chord.top = 108;
  chord.stemDown = true;
  chord.picture = "u4";
  s.AddNote(chord);
  s.keySignature = 5;  // nothing is read again under the key
  s.selectedBar = 3;
  s.copiedBar = 0;
  BarCopy(s);
  ASSERT_EQ(s.NoteCount(), 4);
  EXPECT_EQ(s.notes[3].left, 128 + 432);
  EXPECT_EQ(s.notes[4].token, "F4#94");
  EXPECT_EQ(s.notes[4].accidentalSign, 1);
  EXPECT_EQ(s.notes[4].picture, "u4");
  EXPECT_TRUE(s.notes[4].stemDown);
  EXPECT_EQ(s.notes[4].keyShift, 0);
}

TEST(BarOperations, CopyScrollPasteCopiesTheBarTheUserChose) {
  Staff s = Bars(12);
  s.selectedBar = 2;  // the user copies bar 2 (E4)
  BarCopyMark(s);
  ScrollTo(s, 720);   // scrolls five bars on
  s.selectedBar = 3;      // and picks the bar now third from the left: bar 8 of the score
  BarCopy(s);
  ScrollTo(s, 0);
  const V tokens = TokensByLeft(s);
  EXPECT_EQ(tokens[8], std::to_string(128 + 144 * 8) + ":E494");
  EXPECT_EQ(std::count(tokens.begin(), tokens.end(), "416:E494"), 1) << "the source stays";
  EXPECT_EQ(s.NoteCount(), 12);
}

TEST(BarOperations, InsertStopsAtTheEndOfTheStaffInEntryOrder) {
  Staff s;
  for (int left : {200, 10232, 300}) {
    Note n;
    n.left = left;
    s.AddNote(n);
  }
  s.selectedBar = 0;
  BarAdd(s);
  EXPECT_EQ(s.notes[1].left, 344);
  EXPECT_EQ(s.notes[2].left, 10232) << "past 10224 the walk stops";
  EXPECT_EQ(s.notes[3].left, 300) << "notes behind it in entry order stay";
}

TEST(BarOperations, DoubleWritesTheScoreOutTwiceUpTo36Bars) {
  struct Case {
    int lastLeft, copies, offset;
  } cases[] = {{240, 2, 144}, {136, 2, 0}, {5304, 2, 5184}, {5328, 0, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.lastLeft);
    Staff s;
    for (int left : {128, c.lastLeft}) {
      Note n;
      n.left = left;
      s.AddNote(n);
    }
    ScrollTo(s, 288);
    BarDouble(s);
    EXPECT_EQ(s.scrollValue, 0);
    ASSERT_EQ(s.NoteCount(), 2 + c.copies);
    if (c.copies) {
      EXPECT_EQ(s.notes[3].left, 128 + c.offset);
      EXPECT_EQ(s.notes[4].left, c.lastLeft + c.offset);
    }
  }
}

TEST(BarOperations, MenusDeleteAllOnTwoRoads) {
  FakeConfirm confirm;
  Staff s = Bars(3);
  s.title = "曲";
  s.keySignature = 4;
  s.hasChanges = false;
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::DeleteAll, 20, 78, confirm), BarMenuOutcome::Done);
  EXPECT_TRUE(confirm.asked.empty()) << "an unchanged score is cleared without asking";
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.keySignature, 4);

  s = Bars(3);
  s.hasChanges = true;
  confirm.answer = false;
  ChooseFromStaffMenu(s, BarOperation::DeleteAll, 20, 78, confirm);
  EXPECT_EQ(confirm.asked, (std::vector<std::string>{"楽譜の音符を全部削除しますか？"}));
  EXPECT_EQ(s.NoteCount(), 3) << "cancel changes nothing";

  confirm.answer = true;
  s.title = "曲";
  s.keySignature = 4;
  ChooseFromBarMenu(s, Modes{}, BarOperation::DeleteAll, confirm);
  EXPECT_EQ(confirm.asked.size(), 2u) << "the menu road always asks";
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.title, "");
  EXPECT_EQ(s.keySignature, 0);

  s = Bars(3);
  // The staff's menu has no busy guard and places the entry column at the mouse.
  s.selectedBar = 0;
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::Cut, 44, 78, confirm), BarMenuOutcome::Done);
  EXPECT_EQ(s.NoteCount(), 2);
  EXPECT_EQ(s.entryLeft, 160);
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::OpenScore, 0, 0, confirm), BarMenuOutcome::OpenFile);
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::SaveScore, 0, 0, confirm), BarMenuOutcome::SaveFile);
  EXPECT_EQ(ChooseFromBarMenu(s, Modes{}, BarOperation::OpenScore, confirm), BarMenuOutcome::Ignored)
      << "the bar menu has no file items";
  s.selectedBar = 1;
  EXPECT_EQ(ChooseFromStaffMenu(s, BarOperation::Copy, 0, 0, confirm), BarMenuOutcome::Done);
  EXPECT_EQ(s.copiedBar, 1);
}

// Both menus name each operation the same way: the staff menu's caption, without its
// number, starts like the bar menu's, and the numbers count the operations in order.
TEST(BarOperations, BothMenusCaptionTheSameOperation) {
  int shown = 0;
  for (const StaffMenuRow& row : kStaffMenuRows) {
    if (!row.isOperation) continue;
    const int number = static_cast<int>(row.operation);
    EXPECT_EQ(number, shown++);
    const std::string caption(row.caption);
    EXPECT_EQ(caption.substr(0, caption.find(':')), std::to_string(number));
    const std::string_view barCaption = BarMenuCaption(row.operation);
    if (number < kBarMenuOperations) {
      const std::string name = caption.substr(caption.find(':') + 1);
      EXPECT_EQ(std::string(barCaption).rfind(name, 0), 0u) << caption << " / " << barCaption;
    } else {
      EXPECT_TRUE(barCaption.empty());
    }
  }
  EXPECT_EQ(shown, 9);
}
