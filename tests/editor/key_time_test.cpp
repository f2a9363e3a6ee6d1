// Key changes move the notes line by line and retune; octave items move by 21 pixels.
#include <gtest/gtest.h>

#include "editor/key_time.h"
#include "score/note_tables.h"

using namespace lirenza;

namespace {
Staff Melody() {
  // C4, F4, B4 entered in C major at their entry places, and a rest.
  Staff s;
  const std::pair<const char*, int> notes[] = {{"C498", 120}, {"F498", 111}, {"B498", 102}, {"0008", 111}};
  int left = 136;
  for (auto [token, top] : notes) {
    NoteCV n;
    FillFromToken(n, token);
    n.top = top;
    n.left = left;
    left += 32;
    if (!n.IsRest()) n.backdrop = "n8";
    RepaintToken(n);
    s.AddNote(n);
  }
  return s;
}
}  // namespace

TEST(KeyMenu, CToGAndBackMovesLinesAndRetunes) {
  Staff s = Melody();
  TuningTables tuning;
  PureScale(tuning, 0);
  KCV_ContextualMenuAction(s, tuning, "1:#");
  EXPECT_EQ(s.keyN, 1);
  EXPECT_EQ(s.kcvPicture, "S1");
  EXPECT_EQ(tuning.keyName, "ト長調(G)/ホ短調(E)");
  struct Expect {
    int top, nline, ks;
    const char* token;
  } up[] = {{108, 67, 0, "G498"}, {99, 72, 0, "C598"}, {90, 77, 1, "F5#98"}};
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(s.icv[i + 1].top, up[i].top);
    EXPECT_EQ(s.icv[i + 1].nline, up[i].nline);
    EXPECT_EQ(s.icv[i + 1].ks, up[i].ks);
    EXPECT_EQ(s.icv[i + 1].note, up[i].token);
  }
  EXPECT_EQ(s.icv[4].top, 111) << "rests stay";
  KCV_ContextualMenuAction(s, tuning, "0:ハ長調");
  EXPECT_EQ(s.icv[1].note, "C498");
  EXPECT_EQ(s.icv[2].note, "F498");
  EXPECT_EQ(s.icv[3].note, "B498");
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(s.icv[i].ks, 0);
  EXPECT_EQ(tuning.p[60], 15400);
}

TEST(KeyMenu, StepsBetweenKeysOctavesAndOtherTexts) {
  struct Case {
    int fromKey;
    const char* item;
    int topDelta;
  } cases[] = {
      {0, "8:b", 12},        // C to F: down 4 lines
      {1, "8:b", 24},        // G to F: down 8 lines
      {3, "3:###", 0},       // the key already set moves nothing
      {5, "15:オクターブ上", -21},
      {5, "16:オクターブ下", 21},
      {2, "(調号の選択)", 0},
      {2, "-", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.item);
    Staff s = Melody();
    s.keyN = c.fromKey;
    TuningTables tuning;
    const int before = s.icv[1].top;
    KCV_ContextualMenuAction(s, tuning, c.item);
    EXPECT_EQ(s.icv[1].top - before, c.topDelta);
    EXPECT_GT(tuning.p[69], 0) << "retuned after every choice";
  }
}

TEST(MoveNotes, ClampsAtTheEndsAndKeepsWrittenSigns) {
  Staff s = Melody();
  s.icv[2].sib = 3;  // F natural with its own sign
  s.icv[2].sf = -1;
  TuningTables tuning;
  KCV_ContextualMenuAction(s, tuning, "15:オクターブ上");
  KCV_ContextualMenuAction(s, tuning, "15:オクターブ上");
  EXPECT_EQ(s.icv[1].top, 78);
  EXPECT_EQ(s.icv[3].top, 60);
  KCV_ContextualMenuAction(s, tuning, "15:オクターブ上");
  EXPECT_EQ(s.icv[3].top, 54) << "held at the top end";
  EXPECT_EQ(s.icv[3].backdrop, "u8");
  EXPECT_TRUE(s.icv[3].position);
  EXPECT_EQ(s.icv[2].sf, -1) << "written signs are not touched";
  EXPECT_EQ(s.icv[2].noteNo, s.icv[2].nline - 1);
  for (int i = 0; i < 5; ++i) KCV_ContextualMenuAction(s, tuning, "16:オクターブ下");
  EXPECT_EQ(s.icv[1].top, 159) << "held at the bottom end, one line above entry's";
  EXPECT_EQ(s.icv[1].nline, 38);
  EXPECT_EQ(s.icv[1].backdrop, "u8") << "low notes wear the u family here";
}

TEST(TimeMenu, PicturesOnly) {
  const char* tcv[] = {"T4", "T7", "T3", "T2", "T1", "T9", "T5", "T6", "T8"};
  const char* sheet[] = {"Sheet1", "Sheet2", "Sheet2", "Sheet1", "Sheet1", "Sheet2", "Sheet1", "Sheet2", "Sheet2"};
  for (int t = 0; t < 9; ++t) {
    Staff s = Melody();
    const auto before = s.icv;
    TCV_ContextualMenuAction(s, std::string(kTimeMenuItems[t]));
    EXPECT_EQ(s.timeN, t);
    EXPECT_EQ(s.tcvPicture, tcv[t]);
    EXPECT_EQ(s.mcvBackdrop, sheet[t]);
    EXPECT_EQ(s.icv, before) << "no note moves, no token changes";
  }
  Staff s;
  s.timeN = 3;
  TCV_ContextualMenuAction(s, "(拍子の選択)");
  EXPECT_EQ(s.timeN, 3);
}
