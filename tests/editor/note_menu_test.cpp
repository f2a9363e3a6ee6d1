// The note menu: check marks, what each item does, and each action in its fixed order.
#include <gtest/gtest.h>

#include "editor/note_menu.h"
#include "violin/fakes.h"
#include "score/note_tables.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {
Note Made(const char* token, int top = 120, int ks = 0) {
  Note n;
  FillFromToken(n, token);
  n.keyShift = ks;
  n.top = top;
  n.picture = "n" + n.durationDigit;
  RespellToken(n);
  return n;
}
std::vector<std::string> Checked(const std::vector<NoteMenu>& menus) {
  std::vector<std::string> out;
  for (const auto& m : menus)
    for (const auto& i : m.items)
      if (i.checked) out.push_back(i.caption);
  return out;
}
using Kind = NoteMenuChoice::Kind;
NoteMenuChoice Loudness(int v) { return {Kind::Loudness, v}; }
NoteMenuChoice Length(int d) { return {Kind::Length, d}; }
NoteMenuChoice Sign(int s) { return {Kind::Accidental, s}; }
const NoteMenuChoice kTurn{Kind::NoteOrRest, 0};
}  // namespace

TEST(NoteMenu, OpeningStopsTheSoundAndChecksThePresentValues) {
  TuningTables tuning;
  TuneToKey(tuning, 0);
  FakeSound rig;
  auto menus = OpenNoteMenu(Made("C494"), rig.ports, tuning);
  ASSERT_EQ(menus.size(), 3u);
  EXPECT_EQ(Checked(menus), (std::vector<std::string>{"9:m", "4:4音符", "0:  "}));
  EXPECT_EQ(rig.players[1].notes, (std::vector<std::pair<int, int>>{{static_cast<int>(tuning.pitches[60]), 0}}));
  EXPECT_EQ(Checked(OpenNoteMenu(Made("E4bFb"), rig.ports, tuning)),
            (std::vector<std::string>{"F:fff", "B:16音符", "2:b"}));
}

// Every item the menu shows does what its caption says to the note it was opened on:
// the digit before the colon is the loudness, length or sign the note takes.
TEST(NoteMenu, EachShownItemSetsTheValueItsCaptionNames) {
  TuningTables tuning;
  FakeSound rig;
  const Note start = Made("C494");
  for (const NoteMenu& menu : OpenNoteMenu(start, rig.ports, tuning)) {
    for (const NoteMenuItem& item : menu.items) {
      SCOPED_TRACE(item.caption);
      EXPECT_EQ(item.caption, NoteMenuCaption(item.choice));
      Note n = start;
      ASSERT_TRUE(ChooseFromNoteMenu(n, Modes{}, item.choice));
      const std::string digit = item.caption.substr(0, 1);
      switch (item.choice.kind) {
        case Kind::Loudness: EXPECT_EQ(n.velocityDigit, digit); break;
        case Kind::Length: EXPECT_EQ(n.durationDigit, digit); break;
        case Kind::Accidental: EXPECT_EQ(n.accidentalSign, std::stoi(digit)); break;
        case Kind::NoteOrRest: EXPECT_TRUE(n.IsRest()); break;
        case Kind::Separator: EXPECT_EQ(n, start); break;
      }
    }
  }
}

TEST(NoteMenu, ActionsChangeTheNoteInPlace) {
  struct Case {
    const char* name;
    Note before;
    NoteMenuChoice item;
    int pitch, accidentalSign, accidental, top;
    const char* velocityDigit;
    const char* durationDigit;
    const char* token;
    const char* picture;
  } cases[] = {
      {"louder", Made("C494"), Loudness(13), 60, 0, 0, 120, "D", "4", "C4D4", "n4"},
      {"natural under no key", Made("C494"), Sign(3), 60, 3, 0, 120, "9", "4", "C494", "n4"},
      {"sharp on a raised line", Made("F494", 111, 1), Sign(1), 67, 1, 1, 111, "9", "4", "G494", "n4"},
      {"no sign returns to line and key", Made("F4#94", 111, 0), Sign(0), 65, 0, 0, 111, "9", "4", "F494", "n4"},
      {"length in the n family", Made("C494"), Length(8), 60, 0, 0, 120, "9", "8", "C498", "n8"},
      {"to a rest keeps the pitch name", Made("C494", 120), Loudness(0), 60, 0, 0, 142, "0", "4", "C404", "r4"},
      {"conversion to a rest above the middle", Made("E594", 90), kTurn, 76, 0, 0, 106, "0", "4", "E504", "r4"},
      {"a separator changes nothing", Made("C494"), {}, 60, 0, 0, 120, "9", "4", "C494", "n4"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Note n = c.before;
    EXPECT_TRUE(ChooseFromNoteMenu(n, Modes{}, c.item));
    EXPECT_EQ(n.pitch, c.pitch);
    EXPECT_EQ(n.accidentalSign, c.accidentalSign);
    EXPECT_EQ(n.accidental, c.accidental);
    EXPECT_EQ(n.top, c.top);
    EXPECT_EQ(n.velocityDigit, c.velocityDigit);
    EXPECT_EQ(n.durationDigit, c.durationDigit);
    EXPECT_EQ(n.token, c.token);
    EXPECT_EQ(n.picture, c.picture);
  }
}

TEST(NoteMenu, RestAndBackComesBackAtLoudnessNineWithItsPitch) {
  Note n = Made("G4D4", 108);
  ChooseFromNoteMenu(n, Modes{}, Loudness(0));
  EXPECT_TRUE(n.IsRest());
  ChooseFromNoteMenu(n, Modes{}, Length(2));
  EXPECT_EQ(n.picture, "r2") << "a rest's length item keeps it a rest";
  ChooseFromNoteMenu(n, Modes{}, kTurn);
  EXPECT_EQ(n.velocityDigit, "9");
  EXPECT_EQ(n.pitch, 67);
  EXPECT_EQ(n.token, "G492");
  EXPECT_EQ(n.top, 106) << "the place does not change";
  EXPECT_EQ(n.picture, "n2");
  EXPECT_FALSE(n.stemDown);
  // Converted back at a low place: the menu's own thresholds give the u family.
  Note low = Made("C394", 141);
  ChooseFromNoteMenu(low, Modes{}, Loudness(0));
  EXPECT_EQ(low.top, 142);
  ChooseFromNoteMenu(low, Modes{}, kTurn);
  EXPECT_EQ(low.picture, "u4");
  EXPECT_TRUE(low.stemDown);
  ChooseFromNoteMenu(low, Modes{}, Length(8));
  EXPECT_EQ(low.picture, "u8") << "a length change follows position";
  // A rest entered on the staff has no pitch: converted, it paints "0094".
  Note rest;
  rest.velocityDigit = "0";
  rest.durationDigit = "4";
  rest.pitch = 0;
  rest.linePitch = 0;
  rest.top = 111;
  ChooseFromNoteMenu(rest, Modes{}, kTurn);
  EXPECT_EQ(rest.token, "0094");
}
