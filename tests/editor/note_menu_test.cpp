// The note menu: texts, check marks, and each action in its fixed order.
#include <gtest/gtest.h>

#include "editor/note_menu.h"
#include "fakes.h"
#include "score/note_tables.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {
NoteCV Made(const char* token, int top = 120, int ks = 0) {
  NoteCV n;
  FillFromToken(n, token);
  n.ks = ks;
  n.top = top;
  n.backdrop = "n" + n.dr;
  RepaintToken(n);
  return n;
}
std::vector<std::string> Checked(const std::vector<NoteMenu>& menus) {
  std::vector<std::string> out;
  for (const auto& m : menus)
    for (const auto& i : m.items)
      if (i.checked) out.push_back(i.text);
  return out;
}
}  // namespace

TEST(NoteMenu, OpeningStopsTheSoundAndChecksThePresentValues) {
  TuningTables tuning;
  PureScale(tuning, 0);
  Rig rig;
  auto menus = NoteConstructContextualMenu(Made("C494"), rig.ports, tuning);
  ASSERT_EQ(menus.size(), 3u);
  EXPECT_EQ(menus[0].title, "音量の変更");
  EXPECT_EQ(menus[1].title, "音長の変更");
  EXPECT_EQ(menus[2].title, "臨時符号");
  EXPECT_EQ(menus[0].items.size(), 16u);
  EXPECT_EQ(menus[1].items.size(), 18u);
  EXPECT_EQ(menus[1].items[16].text, "-");
  EXPECT_EQ(menus[1].items[17].text, "音符/休符変換");
  EXPECT_EQ(menus[0].items[0].text, "0:休符");
  EXPECT_EQ(menus[0].items[15].text, "F:fff");
  EXPECT_EQ(menus[1].items[10].text, "A:3連4音符");
  EXPECT_EQ(menus[2].items[0].text, "0:  ");
  EXPECT_EQ(Checked(menus), (std::vector<std::string>{"9:m", "4:4音符", "0:  "}));
  EXPECT_EQ(rig.players[1].notes, (std::vector<std::pair<int, int>>{{static_cast<int>(tuning.p[60]), 0}}));
  EXPECT_EQ(Checked(NoteConstructContextualMenu(Made("E4bFb"), rig.ports, tuning)),
            (std::vector<std::string>{"F:fff", "B:16音符", "2:b"}));
}

TEST(NoteMenu, ActionsChangeTheNoteInPlace) {
  struct Case {
    const char* name;
    NoteCV note;
    const char* item;
    int noteNo, sib, sf, top;
    const char* ve;
    const char* dr;
    const char* token;
    const char* picture;
  } cases[] = {
      {"louder", Made("C494"), "D:ff", 60, 0, 0, 120, "D", "4", "C4D4", "n4"},
      {"natural under no key", Made("C494"), "3:n", 60, 3, 0, 120, "9", "4", "C494", "n4"},
      {"sharp on a raised line", Made("F494", 111, 1), "1:#", 67, 1, 1, 111, "9", "4", "G494", "n4"},
      {"no sign returns to line and key", Made("F4#94", 111, 0), "0:  ", 65, 0, 0, 111, "9", "4", "F494", "n4"},
      {"length in the n family", Made("C494"), "8:8音符", 60, 0, 0, 120, "9", "8", "C498", "n8"},
      {"to a rest keeps the pitch name", Made("C494", 120), "0:休符", 60, 0, 0, 142, "0", "4", "C404", "r4"},
      {"conversion to a rest above the middle", Made("E594", 90), "音符/休符変換", 76, 0, 0, 106, "0", "4", "E504", "r4"},
      {"unknown text changes nothing", Made("C494"), "(none)", 60, 0, 0, 120, "9", "4", "C494", "n4"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    NoteCV n = c.note;
    NoteContextualMenuAction(n, c.item);
    EXPECT_EQ(n.noteNo, c.noteNo);
    EXPECT_EQ(n.sib, c.sib);
    EXPECT_EQ(n.sf, c.sf);
    EXPECT_EQ(n.top, c.top);
    EXPECT_EQ(n.ve, c.ve);
    EXPECT_EQ(n.dr, c.dr);
    EXPECT_EQ(n.note, c.token);
    EXPECT_EQ(n.backdrop, c.picture);
  }
}

TEST(NoteMenu, RestAndBackComesBackAtLoudnessNineWithItsPitch) {
  NoteCV n = Made("G4D4", 108);
  NoteContextualMenuAction(n, "0:休符");
  EXPECT_TRUE(n.IsRest());
  NoteContextualMenuAction(n, "2:2音符");
  EXPECT_EQ(n.backdrop, "r2") << "a rest's length item keeps it a rest";
  NoteContextualMenuAction(n, "音符/休符変換");
  EXPECT_EQ(n.ve, "9");
  EXPECT_EQ(n.noteNo, 67);
  EXPECT_EQ(n.note, "G492");
  EXPECT_EQ(n.top, 106) << "the place does not change";
  EXPECT_EQ(n.backdrop, "n2");
  EXPECT_FALSE(n.position);
  // Converted back at a low place: the menu's own thresholds give the u family.
  NoteCV low = Made("C394", 141);
  NoteContextualMenuAction(low, "0:休符");
  EXPECT_EQ(low.top, 142);
  NoteContextualMenuAction(low, "音符/休符変換");
  EXPECT_EQ(low.backdrop, "u4");
  EXPECT_TRUE(low.position);
  NoteContextualMenuAction(low, "8:8音符");
  EXPECT_EQ(low.backdrop, "u8") << "a length change follows position";
  // A rest entered on the staff has no pitch: converted, it paints "0094".
  NoteCV rest;
  rest.ve = "0";
  rest.dr = "4";
  rest.noteNo = 0;
  rest.nline = 0;
  rest.top = 111;
  NoteContextualMenuAction(rest, "音符/休符変換");
  EXPECT_EQ(rest.note, "0094");
}
