// The note menu, the key menu with its octave items, the time menu and the bar operations.
#include "editor/bar_operations.h"
#include "editor/key_time.h"
#include "editor/note_menu.h"
#include "editor_fixture.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {
Staff Melody() { return StaffOf({Made("C498", 120, 136), Made("F498", 111, 168), Made("B498", 102, 200), Made("0008", 111, 232)}); }
using Menus = Editor;
// One note per bar at the bar's second column: C4 in bar 0, D4 in bar 1, ...
Staff Bars(int count) {
  Staff s;
  for (int b = 0; b < count; ++b) s.AddNote(Made((std::string(1, "CDEFGAB"[b % 7]) + "494").c_str(), 120 - 3 * b, 128 + 144 * b));
  return s;
}
using V = std::vector<std::string>;
using Kind = NoteMenuChoice::Kind;
const NoteMenuChoice kTurn{Kind::NoteOrRest, 0};
}  // namespace

// Opening stops the hover's sound and checks; an item's digit is the value the note takes.
TEST_F(Menus, NoteMenuChecksThePresentValuesAndEachItemSetsWhatItsCaptionNames) {
  std::string checked;
  for (const char* token : {"E4bFb", "C494"}) {
    const Note start = Made(token, 120);
    for (const NoteMenu& menu : OpenNoteMenu(start, rig.ports, tuning)) {
      for (const NoteMenuItem& item : menu.items) {
        checked += item.checked ? item.caption + " " : "";
        Note n = start;
        ASSERT_TRUE(ChooseFromNoteMenu(n, modes, item.choice));
        const std::string digit = item.caption.substr(0, 1);
        switch (item.choice.kind) {
          case Kind::Loudness: EXPECT_EQ(n.velocityDigit, digit) << item.caption; break;
          case Kind::Length: EXPECT_EQ(n.durationDigit, digit) << item.caption; break;
          case Kind::Accidental: EXPECT_EQ(n.accidentalSign, std::stoi(digit)) << item.caption; break;
          case Kind::NoteOrRest: EXPECT_NE(n.IsRest(), start.IsRest()); break;
          case Kind::Separator: EXPECT_EQ(n, start); break;
        }
      }
    }
  }
  EXPECT_EQ(checked, "F:fff B:16音符 2:b 9:m 4:4音符 0:   ");
  EXPECT_EQ(rig.players[1].notes, (std::vector<std::pair<int, int>>{{P(63), 0}, {P(60), 0}}));
}

// A note turned into a rest and back, through the items in turn, at two heights.
TEST_F(Menus, ActionsChangeTheNoteInPlace) {
  const struct {
    Note note;
    std::vector<NoteMenuChoice> items;
    const char* after;
  } cases[] = {
      {Made("F494", 111, 304, 1), {{Kind::Accidental, 1}}, "304,111 67 G494 n4 1/1"},  // sharp on a raised line
      {Made("F4#94", 111), {{Kind::Accidental, 0}}, "304,111 65 F494 n4 0/0"},
      {Made("C494", 120), {{Kind::Loudness, 0}}, "304,142 60 C404 r4 0/0"},
      {Made("E594", 90), {kTurn}, "304,106 76 E504 r4 0/0"},
      {Made("G4D4", 108), {{Kind::Loudness, 0}, {Kind::Length, 2}, kTurn}, "304,106 67 G492 n2 0/0"},
      {Made("C394", 141), {{Kind::Loudness, 0}, kTurn, {Kind::Length, 8}}, "304,142 48 C398 u8 0/0"},
  };
  for (const auto& c : cases) {
    Note n = c.note;
    for (const NoteMenuChoice& item : c.items) EXPECT_TRUE(ChooseFromNoteMenu(n, Modes{}, item));
    EXPECT_EQ(Show(n, true), c.after);
    EXPECT_EQ(n.stemDown, n.picture[0] == 'u') << c.after;
  }
}

// Key items move the notes line by line and retune; octaves move 21 pixels; times move nothing.
TEST_F(Menus, KeysOctavesAndTimes) {
  const struct {
    int fromKey, item, presses;
    const char* notes;
  } cases[] = {
      {0, 1, 1, "136,108 67 G498 n8 0/0|168,99 72 C598 n8 0/0|200,90 78 F5#98 n8 0/0|"},
      {1, 8, 1, "136,144 46 A2#98 u8 0/0|168,135 52 E398 u8 0/0|200,126 57 A398 u8 0/0|"},
      {3, 3, 1, "136,120 60 C498 n8 0/0|168,111 65 F498 n8 0/0|200,102 71 B498 n8 0/0|"},
      {5, kOctaveUpItem, 1, "136,99 73 C5#98 n8 0/0|168,90 78 F5#98 n8 0/0|200,81 83 B598 n8 0/0|"},
      {5, kOctaveDownItem, 1, "136,141 49 C3#98 u8 0/0|168,132 54 F3#98 u8 0/0|200,123 59 B398 u8 0/0|"},
      {0, kOctaveUpItem, 3, "136,57 96 C798 u8 0/0|168,54 98 D798 u8 0/0|200,54 98 D798 u8 0/0|"},  // held at the top
      {0, kOctaveDownItem, 5, "136,159 38 D298 u8 0/0|168,159 38 D298 u8 0/0|200,159 38 D298 u8 0/0|"},  // a line above entry's end
  };
  for (const auto& c : cases) {
    staff = Melody();
    staff.keySignature = c.fromKey;
    tuning = TuningTables{};
    for (int i = 0; i < c.presses; ++i) ASSERT_TRUE(ChooseKey(staff, tuning, modes, c.item));
    std::string notes;
    for (int i = 1; i <= 3; ++i) notes += Show(staff.notes[i], true) + "|";
    EXPECT_EQ(notes, c.notes) << KeyMenuCaption(c.item);
    EXPECT_EQ(staff.notes[4], Melody().notes[4]) << "rests stay";
    EXPECT_GT(tuning.pitches[69], 0) << "retuned after every choice";
  }
  EXPECT_FALSE(ChooseKey(staff, tuning, modes, kKeyMenuItemCount)) << "no such item";
  for (int t = 0; t < kTimeCount; ++t) {
    const std::string caption(TimeMenuCaption(t));
    const auto before = staff.notes;
    ASSERT_TRUE(ChooseTime(staff, modes, t));
    EXPECT_EQ(staff.sheetPicture, std::stoi(caption.substr(caption.find(':') + 1)) % 3 ? "Sheet1" : "Sheet2") << caption;
    EXPECT_EQ(staff.notes, before) << "a time item changes pictures only";
  }
}

TEST_F(Menus, BarCutClearInsertAndPaste) {
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
      {0, 0, BarDouble, {"128:C494", "272:D494", "416:E494", "416:C494", "560:D494", "704:E494"}},
  };
  for (const auto& c : cases) {
    Staff s = Bars(3);
    s.selectedBar = c.target;
    s.copiedBar = c.copied;
    c.op(s);
    EXPECT_EQ(Placed(s, true), c.after) << c.after.size();
    EXPECT_EQ(s.notes[0].left, 120) << "the template never moves";
  }
  for (int bars : {37, 38}) {
    Staff s = Bars(bars);
    BarDouble(s);
    EXPECT_EQ(s.NoteCount(), bars == 37 ? 74 : 38) << "the score doubles up to 36 bars past the first";
  }
  Staff s = Bars(3);
  s.notes[2].left = 10232;
  BarAdd(s);
  EXPECT_EQ(std::vector<int>({s.notes[1].left, s.notes[2].left, s.notes[3].left}), std::vector<int>({272, 10232, 416}))
      << "past 10224 the walk stops; notes behind it in entry order stay";
}

// Bar 2 (a note and a chord) copied, five bars scrolled, pasted third from the left: bar 8.
TEST_F(Menus, BarCopyScrollPasteCopiesTheBarTheUserChose) {
  Staff s = Bars(12);
  Note& chord = s.AddNote(Made("F4#94", 108, 416));
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

TEST_F(Menus, BarDeleteAllAsksOnlyWhenItMust) {
  FakeConfirm confirm;
  confirm.answer = false;
  for (bool changed : {false, true}) {
    staff = Bars(3);
    staff.hasChanges = changed;
    staff.keySignature = 4;
    ChooseFromStaffMenu(staff, BarOperation::DeleteAll, 20, 78, confirm);
    EXPECT_EQ(staff.NoteCount(), changed ? 3 : 0) << "cleared unasked when unchanged; cancel changes nothing";
    EXPECT_EQ(staff.keySignature, 4) << "the staff's menu clears the notes only";
  }
  EXPECT_EQ(confirm.asked, (V{"楽譜の音符を全部削除しますか？"}));
  confirm.answer = true;
  staff.title = "曲";
  ChooseFromBarMenu(staff, modes, BarOperation::DeleteAll, confirm);
  EXPECT_EQ(confirm.asked.size(), 2u) << "the menu road always asks";
  EXPECT_EQ(staff.NoteCount() + staff.title.size() + staff.keySignature, 0u) << "and clears the whole score";
}
