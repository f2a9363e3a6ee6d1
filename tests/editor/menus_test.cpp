// The note menu, the key menu with its octave items, and the time menu.
#include "editor/key_time.h"
#include "editor/note_menu.h"
#include "editor_fixture.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {
// "top pitch token picture sign/accidental"
std::string Written(const Note& n) {
  return std::to_string(n.top) + " " + std::to_string(n.pitch) + " " + n.token + " " + n.picture + " " +
         std::to_string(n.accidentalSign) + "/" + std::to_string(n.accidental);
}
// C4, F4, B4 entered in C major at their entry places, and a rest.
Staff Melody() { return StaffOf({Made("C498", 120, 136), Made("F498", 111, 168), Made("B498", 102, 200), Made("0008", 111, 232)}); }
using Menus = Editor;
using Kind = NoteMenuChoice::Kind;
const NoteMenuChoice kTurn{Kind::NoteOrRest, 0};
}  // namespace

TEST_F(Menus, OpeningStopsTheSoundAndChecksThePresentValues) {
  std::string shown;
  for (const char* token : {"C494", "E4bFb"})
    for (const NoteMenu& menu : OpenNoteMenu(Made(token, 120), rig.ports, tuning))
      for (const NoteMenuItem& item : menu.items) shown += item.checked ? item.caption + " " : "";
  EXPECT_EQ(shown, "9:m 4:4音符 0:   F:fff B:16音符 2:b ");
  EXPECT_EQ(rig.players[1].notes, (std::vector<std::pair<int, int>>{{P(60), 0}, {P(63), 0}}));
}

// The digit before an item's colon is the loudness, length or sign the note takes.
TEST_F(Menus, EachShownItemSetsTheValueItsCaptionNames) {
  const Note start = Made("C494", 120);
  for (const NoteMenu& menu : OpenNoteMenu(start, rig.ports, tuning)) {
    for (const NoteMenuItem& item : menu.items) {
      EXPECT_EQ(item.caption, NoteMenuCaption(item.choice));
      Note n = start;
      ASSERT_TRUE(ChooseFromNoteMenu(n, Modes{}, item.choice));
      const std::string digit = item.caption.substr(0, 1);
      switch (item.choice.kind) {
        case Kind::Loudness: EXPECT_EQ(n.velocityDigit, digit) << item.caption; break;
        case Kind::Length: EXPECT_EQ(n.durationDigit, digit) << item.caption; break;
        case Kind::Accidental: EXPECT_EQ(n.accidentalSign, std::stoi(digit)) << item.caption; break;
        case Kind::NoteOrRest: EXPECT_TRUE(n.IsRest()); break;
        case Kind::Separator: EXPECT_EQ(n, start); break;
      }
    }
  }
}

// A note turned into a rest and back, through the items in turn, at two heights.
TEST(NoteMenu, ActionsChangeTheNoteInPlace) {
  const struct {
    Note note;
    std::vector<NoteMenuChoice> items;
    const char* after;
  } cases[] = {
      {Made("C494", 120), {{Kind::Loudness, 13}}, "120 60 C4D4 n4 0/0"},
      {Made("F494", 111, 304, 1), {{Kind::Accidental, 1}}, "111 67 G494 n4 1/1"},  // sharp on a raised line
      {Made("F4#94", 111), {{Kind::Accidental, 0}}, "111 65 F494 n4 0/0"},
      {Made("C494", 120), {{Kind::Length, 8}}, "120 60 C498 n8 0/0"},
      {Made("C494", 120), {{Kind::Loudness, 0}}, "142 60 C404 r4 0/0"},
      {Made("E594", 90), {kTurn}, "106 76 E504 r4 0/0"},
      {Made("G4D4", 108), {{Kind::Loudness, 0}, {Kind::Length, 2}, kTurn}, "106 67 G492 n2 0/0"},
      {Made("C394", 141), {{Kind::Loudness, 0}, kTurn, {Kind::Length, 8}}, "142 48 C398 u8 0/0"},
  };
  for (const auto& c : cases) {
    Note n = c.note;
    for (const NoteMenuChoice& item : c.items) EXPECT_TRUE(ChooseFromNoteMenu(n, Modes{}, item));
    EXPECT_EQ(Written(n), c.after);
    EXPECT_EQ(n.stemDown, n.picture[0] == 'u') << c.after;
  }
}

// Key items move the notes line by line to the new key and retune; octaves move 21 pixels.
TEST(KeyMenu, KeysAndOctavesMoveTheNotesAndRetune) {
  const struct {
    int fromKey, item;
    const char* notes;
  } cases[] = {
      {0, 1, "108 67 G498 n8 0/0|99 72 C598 n8 0/0|90 78 F5#98 n8 0/0|"},
      {0, 8, "132 53 F398 u8 0/0|123 58 A3#98 u8 0/0|114 64 E498 n8 0/0|"},
      {1, 8, "144 46 A2#98 u8 0/0|135 52 E398 u8 0/0|126 57 A398 u8 0/0|"},
      {3, 3, "120 60 C498 n8 0/0|111 65 F498 n8 0/0|102 71 B498 n8 0/0|"},
      {5, kOctaveUpItem, "99 73 C5#98 n8 0/0|90 78 F5#98 n8 0/0|81 83 B598 n8 0/0|"},
      {5, kOctaveDownItem, "141 49 C3#98 u8 0/0|132 54 F3#98 u8 0/0|123 59 B398 u8 0/0|"},
  };
  for (const auto& c : cases) {
    Staff s = Melody();
    s.keySignature = c.fromKey;
    TuningTables tuning;
    ASSERT_TRUE(ChooseKey(s, tuning, Modes{}, c.item));
    std::string notes;
    for (int i = 1; i <= 3; ++i) notes += Written(s.notes[i]) + "|";
    EXPECT_EQ(notes, c.notes) << KeyMenuCaption(c.item);
    EXPECT_EQ(s.notes[4], Melody().notes[4]) << "rests stay";
    EXPECT_GT(tuning.pitches[69], 0) << "retuned after every choice";
  }
  Staff s = Melody();
  TuningTables tuning;
  EXPECT_FALSE(ChooseKey(s, tuning, Modes{}, kKeyMenuItemCount)) << "no such item";
}

TEST(KeyMenu, OctavesClampAtTheEndsAndKeepWrittenSigns) {
  Staff s = Melody();
  s.notes[2].accidentalSign = 3;  // F natural with its own sign
  s.notes[2].accidental = -1;
  TuningTables tuning;
  for (int i = 0; i < 3; ++i) ChooseKey(s, tuning, Modes{}, kOctaveUpItem);
  EXPECT_EQ(Written(s.notes[3]), "54 98 D798 u8 0/0") << "held at the top end";
  EXPECT_EQ(s.notes[2].accidental, -1) << "written signs are not touched";
  EXPECT_EQ(s.notes[2].pitch, s.notes[2].linePitch - 1);
  for (int i = 0; i < 5; ++i) ChooseKey(s, tuning, Modes{}, kOctaveDownItem);
  EXPECT_EQ(Written(s.notes[1]), "159 38 D298 u8 0/0") << "held at the bottom end, one line above entry's";
}

// A time item sets the metre its caption names, triple ones on the other sheet; no note moves.
TEST(TimeMenu, PicturesOnly) {
  for (int t = 0; t <= kTimeCount; ++t) {
    const std::string caption(TimeMenuCaption(t));
    Staff s = Melody();
    EXPECT_EQ(ChooseTime(s, Modes{}, t), t < kTimeCount);
    if (t < kTimeCount)
      EXPECT_EQ(s.sheetPicture, std::stoi(caption.substr(caption.find(':') + 1)) % 3 ? "Sheet1" : "Sheet2") << caption;
    EXPECT_EQ(s.timeSignature, t < kTimeCount ? t : 0);
    EXPECT_EQ(s.notes, Melody().notes) << caption;
  }
}
