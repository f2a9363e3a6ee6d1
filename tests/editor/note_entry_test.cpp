// Note entry by double click and by the fingerboard, and the buttons that shape it.
#include <gtest/gtest.h>

#include "editor/note_entry.h"
#include "editor/note_menu.h"
#include "score/note_tables.h"

using namespace lirenza;

namespace {
// A double click at window-canvas x, y: two presses five ticks apart.
bool DoubleClick(Staff& s, EntryState& e, long long& ticks, int x, int y) {
  ticks += 100;
  EnterNoteAt(s, e, Modes{}, Modifiers{}, ticks, x, y);
  ticks += 5;
  return EnterNoteAt(s, e, Modes{}, Modifiers{}, ticks, x, y);
}
}  // namespace

TEST(NoteEntry, AMelodyByDoubleClicksGetsGridPlacesTokensAndPictures) {
  Staff s;
  EntryState e;
  long long ticks = 0;
  // Middle C (Top 120 is y 78), then E, then a high C (u family), then a low C.
  ASSERT_TRUE(DoubleClick(s, e, ticks, 20, 78));
  ASSERT_TRUE(DoubleClick(s, e, ticks, 52, 72));
  ASSERT_TRUE(DoubleClick(s, e, ticks, 84, 36));
  ASSERT_TRUE(DoubleClick(s, e, ticks, 116, 99));
  struct Expect {
    int left, top, linePitch, pitch;
    const char* token;
    const char* picture;
  } expect[] = {{136, 120, 60, 60, "C494", "n4"},
                {168, 114, 64, 64, "E494", "n4"},
                {200, 78, 84, 84, "C694", "u4"},
                {232, 141, 48, 48, "C394", "u4"}};
  ASSERT_EQ(s.NoteCount(), 4);
  for (int i = 0; i < 4; ++i) {
    SCOPED_TRACE(i);
    const Note& n = s.notes[i + 1];
    EXPECT_EQ(n.left, expect[i].left);
    EXPECT_EQ(n.top, expect[i].top);
    EXPECT_EQ(n.linePitch, expect[i].linePitch);
    EXPECT_EQ(n.pitch, expect[i].pitch);
    EXPECT_EQ(n.token, expect[i].token);
    EXPECT_EQ(n.picture, expect[i].picture);
    EXPECT_FALSE(n.stemDown) << "entry leaves position alone";
  }
  EXPECT_EQ(s.entryLeft, 232 + 32);
  EXPECT_EQ(s.entryTop, 141);
}

TEST(NoteEntry, DoubleClickWindowGuardsAndBarSelection) {
  Staff s;
  EntryState e;
  EXPECT_FALSE(EnterNoteAt(s, e, {}, {}, 1000, 300, 78));
  EXPECT_EQ(s.selectedBar, 2);
  EXPECT_TRUE(EnterNoteAt(s, e, {}, {}, 1029, 300, 78)) << "29 ticks is a double click";
  EXPECT_TRUE(EnterNoteAt(s, e, {}, {}, 1029, 340, 78)) << "lastClickTicks stays: every click within the window makes a note";
  EXPECT_FALSE(EnterNoteAt(s, e, {}, {}, 1030, 380, 78)) << "30 ticks is not";
  EXPECT_EQ(s.NoteCount(), 2);
  Modifiers shift;
  shift.shift = true;
  EXPECT_FALSE(EnterNoteAt(s, e, {}, shift, 1032, 20, 78));
  EXPECT_EQ(s.NoteCount(), 2);
  EXPECT_EQ(s.selectedBar, 2) << "guarded presses change nothing";
}

TEST(NoteEntry, EdgesOfTheStaffAndClashes) {
  Staff s;
  EntryState e;
  long long t = 0;
  DoubleClick(s, e, t, 132, 78);  // Left 248 on the bar gap
  EXPECT_EQ(s.notes.back().left, 240);
  DoubleClick(s, e, t, 140, 78);  // Left 256
  EXPECT_EQ(s.notes.back().left, 264);
  DoubleClick(s, e, t, 860, 78);  // far right
  EXPECT_EQ(s.notes.back().left, 960);
  DoubleClick(s, e, t, 852, 78);  // 968 is open to entry
  EXPECT_EQ(s.notes.back().left, 968);
  DoubleClick(s, e, t, 300, -20);  // above the staff
  EXPECT_EQ(s.notes.back().top, 57);
  EXPECT_EQ(s.notes.back().pitch, 96);
  DoubleClick(s, e, t, 300, 180);  // below it
  EXPECT_EQ(s.notes.back().top, 162);
  EXPECT_EQ(s.notes.back().pitch, 36);
  DoubleClick(s, e, t, 300, 180);  // collides at the bottom: stays
  EXPECT_EQ(s.notes.back().top, 162);
  // The hidden template takes part in the clash search.
  DoubleClick(s, e, t, 4, 75);
  EXPECT_EQ(s.notes.back().left, 120);
  EXPECT_EQ(s.notes.back().top, 123);
  // A second and third note at one place go down 6 and 12.
  DoubleClick(s, e, t, 500, 60);
  DoubleClick(s, e, t, 500, 60);
  DoubleClick(s, e, t, 500, 60);
  const int n = s.NoteCount();
  EXPECT_EQ(s.notes[n - 1].top - s.notes[n - 2].top, 6);
  EXPECT_EQ(s.notes[n].top - s.notes[n - 2].top, 12);
}

TEST(NoteEntry, RestsTakeTheirRowsAndDropEighteen) {
  Staff s;
  EntryState e;
  ChooseLength(s, e, {}, 20);  // crotchet rest
  long long t = 0;
  DoubleClick(s, e, t, 20, 60);
  DoubleClick(s, e, t, 20, 60);
  DoubleClick(s, e, t, 60, 100);
  ASSERT_EQ(s.NoteCount(), 3);
  EXPECT_EQ(s.notes[1].top, 111);
  EXPECT_EQ(s.notes[1].token, "0004");
  EXPECT_EQ(s.notes[1].picture, "r4");
  EXPECT_EQ(s.notes[1].pitch, 0);
  EXPECT_EQ(s.notes[2].top, 129) << "a second rest at the same place goes down 18";
  EXPECT_EQ(s.notes[3].top, 147);
}

TEST(NoteEntry, ButtonsSetDigitsSpacingAndGate) {
  struct Case {
    int nbb;
    const char* durationDigit;
    int space;
  } cases[] = {{0, "0", 48}, {3, "3", 48}, {4, "4", 32}, {6, "6", 32}, {7, "7", 16},
               {11, "B", 16}, {12, "C", 8}, {15, "F", 8}, {24, "8", 16}, {31, "F", 8}};
  for (const auto& c : cases) {
    Staff s;
    EntryState e;
    ChooseLength(s, e, {}, c.nbb);
    EXPECT_EQ(s.entrySpacing, c.space) << c.nbb;
    long long t = 0;
    DoubleClick(s, e, t, 20, 78);
    EXPECT_EQ(s.notes[1].durationDigit, c.durationDigit) << c.nbb;
    EXPECT_EQ(s.entryLeft, 136 + c.space);
  }
  Staff s;
  EntryState e;
  // A loudness button gives the digit the note menu shows beside the same marking,
  // louder at every button.
  for (int v = 0; v < 9; ++v) {
    ChooseLoudness(e, v);
    const std::string digit = VelocityDigitFor(e.loudnessButton);
    ASSERT_EQ(digit.size(), 1u);
    EXPECT_EQ(NoteMenuCaption({NoteMenuChoice::Kind::Loudness, std::stoi(digit, nullptr, 16)}),
              digit + ":" + std::string(kLoudnessCaptions[v]));
    if (v > 0) EXPECT_GT(std::stoi(digit, nullptr, 16), std::stoi(VelocityDigitFor(v - 1), nullptr, 16));
  }
  ChooseLoudness(e, 8);
  EXPECT_EQ(e.loudnessButton, 8) << "pressing the pressed button keeps it";
  ChooseArticulation(e, 0);
  EXPECT_EQ(e.gate, 0.75);
  ChooseArticulation(e, 1);
  EXPECT_EQ(e.gate, 0.85);
}

TEST(EnterPlayedNote, TheFingerboardKeepsThePitchPlayedAndTheSignatureWins) {
  struct Case {
    int keySignature, playedPitch, playedSign;
    int linePitch, accidental, accidentalSign, keyShift, pitch, top;
    const char* token;
  } cases[] = {
      {0, 60, 0, 60, 0, 0, 0, 60, 120, "C494"},
      {0, 60, 1, 60, 1, 1, 0, 61, 120, "C4#94"},   // C sharp from a black key
      {0, 64, 2, 64, -1, 2, 0, 63, 114, "E4b94"},  // E flat with Option
      {1, 65, 0, 65, 0, 0, 1, 66, 111, "F4#94"},   // F natural pressed in G major enters F sharp
      {1, 65, 1, 65, 0, 0, 1, 66, 111, "F4#94"},   // the sign is ignored where the key acts
      {0, 98, 0, 98, 0, 0, 0, 98, 57, "D794"},     // clamped place, pitch kept
      {0, 36, 0, 36, 0, 0, 0, 36, 162, "C294"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.token);
    Staff s;
    s.keySignature = c.keySignature;
    EntryState e;
    EnterPlayedNote(s, e, c.playedPitch, c.playedSign);
    const Note& n = s.notes[1];
    EXPECT_EQ(n.linePitch, c.linePitch);
    EXPECT_EQ(n.accidental, c.accidental);
    EXPECT_EQ(n.accidentalSign, c.accidentalSign);
    EXPECT_EQ(n.keyShift, c.keyShift);
    EXPECT_EQ(n.pitch, c.pitch);
    EXPECT_EQ(n.top, c.top);
    EXPECT_EQ(n.token, c.token);
    EXPECT_EQ(s.entryLeft, 136 + 32);
  }
  // With an eighth-note button the fingerboard still steps 32, the mouse 16.
  Staff s;
  EntryState e;
  ChooseLength(s, e, {}, 8);
  EnterPlayedNote(s, e, 60, 0);
  EnterPlayedNote(s, e, 62, 0);
  EXPECT_EQ(s.notes[2].left - s.notes[1].left, 32);
  // A rest from the fingerboard keeps the pitch as its line and steps by entrySpacing.
  ChooseLength(s, e, {}, 24);
  EnterPlayedNote(s, e, 67, 0);
  EXPECT_EQ(s.notes[3].linePitch, 67);
  EXPECT_EQ(s.notes[3].top, 111);
  EXPECT_EQ(s.entryLeft, s.notes[3].left + 16);
}

TEST(NoteEntry, APressAtTheRightEndStartsADoubleClick) {
  Staff s;
  EntryState e;
  PressRightOfStaff(e, 500);
  EXPECT_TRUE(EnterNoteAt(s, e, {}, {}, 510, 20, 78));
  EXPECT_EQ(s.NoteCount(), 1);
}
