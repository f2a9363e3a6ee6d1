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
    Note n;
    FillFromToken(n, token);
    n.top = top;
    n.left = left;
    left += 32;
    if (!n.IsRest()) n.picture = "n8";
    RespellToken(n);
    s.AddNote(n);
  }
  return s;
}
}  // namespace

TEST(KeyMenu, CToGAndBackMovesLinesAndRetunes) {
  Staff s = Melody();
  TuningTables tuning;
  TuneToKey(tuning, 0);
  ASSERT_TRUE(ChooseKey(s, tuning, Modes{}, 1));
  EXPECT_EQ(s.keySignature, 1);
  EXPECT_EQ(s.keySignaturePicture, "S1");
  EXPECT_EQ(tuning.keyName, "ト長調(G)/ホ短調(E)");
  struct Expect {
    int top, linePitch, keyShift;
    const char* token;
  } up[] = {{108, 67, 0, "G498"}, {99, 72, 0, "C598"}, {90, 77, 1, "F5#98"}};
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(s.notes[i + 1].top, up[i].top);
    EXPECT_EQ(s.notes[i + 1].linePitch, up[i].linePitch);
    EXPECT_EQ(s.notes[i + 1].keyShift, up[i].keyShift);
    EXPECT_EQ(s.notes[i + 1].token, up[i].token);
  }
  EXPECT_EQ(s.notes[4].top, 111) << "rests stay";
  ASSERT_TRUE(ChooseKey(s, tuning, Modes{}, 0));
  EXPECT_EQ(s.notes[1].token, "C498");
  EXPECT_EQ(s.notes[2].token, "F498");
  EXPECT_EQ(s.notes[3].token, "B498");
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(s.notes[i].keyShift, 0);
  EXPECT_EQ(tuning.pitches[60], 15400);
}

TEST(KeyMenu, StepsBetweenKeysAndOctaves) {
  struct Case {
    int fromKey;
    int item;
    int topDelta;
  } cases[] = {
      {0, 8, 12},   // C to F: down 4 lines
      {1, 8, 24},   // G to F: down 8 lines
      {3, 3, 0},    // the key already set moves nothing
      {5, kOctaveUpItem, -21},
      {5, kOctaveDownItem, 21},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(KeyMenuCaption(c.item));
    Staff s = Melody();
    s.keySignature = c.fromKey;
    TuningTables tuning;
    const int before = s.notes[1].top;
    ASSERT_TRUE(ChooseKey(s, tuning, Modes{}, c.item));
    EXPECT_EQ(s.notes[1].top - before, c.topDelta);
    EXPECT_GT(tuning.pitches[69], 0) << "retuned after every choice";
  }
}

// A sharp key's caption shows as many sharps as the key number, a flat key's as many
// flats as its number less 7, and every key item moves the staff to that key.
TEST(KeyMenu, CaptionsNameTheKeyTheItemSets) {
  for (int k = 0; k < kKeyCount; ++k) {
    SCOPED_TRACE(k);
    const std::string_view caption = KeyMenuCaption(k);
    const std::string_view signs = caption.substr(caption.find(':') + 1);
    if (k >= 1 && k <= 7) EXPECT_EQ(signs, std::string(k, '#'));
    if (k >= 8) EXPECT_EQ(signs, std::string(k - 7, 'b'));
    Staff s = Melody();
    TuningTables tuning;
    ASSERT_TRUE(ChooseKey(s, tuning, Modes{}, k));
    EXPECT_EQ(s.keySignature, k);
    EXPECT_EQ(s.keySignaturePicture, KeySignaturePicture(k));
  }
  Staff s = Melody();
  TuningTables tuning;
  EXPECT_FALSE(ChooseKey(s, tuning, Modes{}, kKeyMenuItemCount)) << "no such item";
}

TEST(MoveNotes, ClampsAtTheEndsAndKeepsWrittenSigns) {
  Staff s = Melody();
  s.notes[2].accidentalSign = 3;  // F natural with its own sign
  s.notes[2].accidental = -1;
  TuningTables tuning;
  ChooseKey(s, tuning, Modes{}, kOctaveUpItem);
  ChooseKey(s, tuning, Modes{}, kOctaveUpItem);
  EXPECT_EQ(s.notes[1].top, 78);
  EXPECT_EQ(s.notes[3].top, 60);
  ChooseKey(s, tuning, Modes{}, kOctaveUpItem);
  EXPECT_EQ(s.notes[3].top, 54) << "held at the top end";
  EXPECT_EQ(s.notes[3].picture, "u8");
  EXPECT_TRUE(s.notes[3].stemDown);
  EXPECT_EQ(s.notes[2].accidental, -1) << "written signs are not touched";
  EXPECT_EQ(s.notes[2].pitch, s.notes[2].linePitch - 1);
  for (int i = 0; i < 5; ++i) ChooseKey(s, tuning, Modes{}, kOctaveDownItem);
  EXPECT_EQ(s.notes[1].top, 159) << "held at the bottom end, one line above entry's";
  EXPECT_EQ(s.notes[1].linePitch, 38);
  EXPECT_EQ(s.notes[1].picture, "u8") << "low notes wear the u family here";
}

// A time item changes the pictures to the metre its caption names and moves no note.
TEST(TimeMenu, PicturesOnly) {
  for (int t = 0; t < kTimeCount; ++t) {
    const std::string caption(TimeMenuCaption(t));
    SCOPED_TRACE(caption);
    Staff s = Melody();
    const auto before = s.notes;
    ASSERT_TRUE(ChooseTime(s, Modes{}, t));
    EXPECT_EQ(s.timeSignature, t);
    EXPECT_EQ(s.timeSignaturePicture, TimeSignaturePicture(t));
    const int upper = std::stoi(caption.substr(caption.find(':') + 1));
    const bool triple = upper % 3 == 0;
    EXPECT_EQ(s.sheetPicture, triple ? "Sheet2" : "Sheet1") << "triple and compound metres get the other sheet";
    EXPECT_EQ(s.notes, before) << "no note moves, no token changes";
  }
  Staff s;
  s.timeSignature = 3;
  EXPECT_FALSE(ChooseTime(s, Modes{}, kTimeCount));
  EXPECT_EQ(s.timeSignature, 3);
}
