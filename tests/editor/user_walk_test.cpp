// Walks a user makes through the editor and the violin together, asserting the whole
// staff and every call the players received, in order.
#include <gtest/gtest.h>

#include <functional>

#include "editor/bar_operations.h"
#include "editor/key_time.h"
#include "editor/note_entry.h"
#include "editor/note_menu.h"
#include "violin/fakes.h"
#include "violin/fingerboard.h"
#include "violin/playback.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

struct Walk : ::testing::Test {
  Staff staff;
  EntryState entry;
  Modes modes;
  TuningTables tuning;
  FakeSound rig;
  FingerPress md{};
  Walk() { TuneToKey(tuning, 0); }
  int P(int index) const { return static_cast<int>(tuning.pitches[index]); }
  // A finger on the drawn violin at canvas x, y, released again.
  void Finger(int x, int y, bool option = false) {
    Modifiers mods;
    mods.option = option;
    MouseDownResult r = FingerboardMouseDown(x, y, mods, modes, staff, md, tuning, rig.ports);
    ASSERT_TRUE(r.handled);
    EnterPlayedNote(staff, entry, r.index, r.accidental);
    FingerboardMouseUp(md, tuning, rig.ports);
  }
};

}  // namespace

TEST_F(Walk, AMelodyOnTheFingerboardSoundsEntersAndLeavesNothingSounding) {
  Finger(95, 207);          // D string open: D4
  Finger(120, 196);         // A string, first cell: A sharp 4, written as a sharp
  Finger(145, 185, true);   // E string, second cell: F sharp 5, written as G flat with Option
  Finger(600, 218);         // past the last band on the G string: the open string
  ASSERT_EQ(staff.NoteCount(), 4);
  const char* tokens[] = {"D494", "A4#94", "G5b94", "G394"};
  const int lefts[] = {136, 168, 200, 232};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(staff.notes[i + 1].token, tokens[i]);
    EXPECT_EQ(staff.notes[i + 1].left, lefts[i]);
  }
  EXPECT_EQ(staff.notes[2].pitch, 70);
  EXPECT_EQ(staff.notes[3].pitch, 78);
  // The live player heard each note at the mouse's velocity and its end, in order.
  const std::vector<std::pair<int, int>> live = {{P(62), 80}, {P(62), 0}, {P(70), 80}, {P(70), 0},
                                                 {P(78), 80}, {P(78), 0}, {P(55), 80}, {P(55), 0}};
  EXPECT_EQ(rig.players[0].notes, live);
  EXPECT_TRUE(rig.players[1].notes.empty());
  EXPECT_EQ(rig.Fingerboard(), (std::vector<std::string>{"G 3/0", "GF 3/0", "G 2/1", "GF 2/1", "G 1/2", "GF 1/2",
                                                       "G 4/0", "GF 4/0"}));
}

TEST_F(Walk, TheFingerboardTurnsThePageWhenEntryLeavesTheView) {
  for (int i = 0; i < 27; ++i) Finger(95, 207);
  EXPECT_EQ(staff.notes[27].left, 968);
  EXPECT_EQ(staff.entryLeft, 1000);
  Finger(95, 207);
  EXPECT_EQ(staff.scrollValue, 720);
  EXPECT_EQ(staff.notes[28].left, 280);
  EXPECT_EQ(staff.notes[1].left, 136 - 720);
  ScrollTo(staff, 0);
  EXPECT_EQ(staff.notes[28].left, 1000) << "in score terms the melody goes on where it stopped";
}

TEST_F(Walk, EnterChangeKeyAndBackThenPlayTheChordWithAFakeClock) {
  long long ticks = 0;
  auto dbl = [&](int x, int y) {
    ticks += 100;
    EnterNoteAt(staff, entry, modes, {}, ticks, x, y);
    EnterNoteAt(staff, entry, modes, {}, ticks + 3, x, y);
  };
  // A chord entered by hand (two notes on one column), then a G.
  dbl(20, 78);   // C4 at Left 136
  dbl(20, 72);   // E4 on the same column
  ChooseLength(staff, entry, modes, 2);
  dbl(52, 66);   // G4 half note, Left 168
  ASSERT_EQ(staff.NoteCount(), 3);
  ASSERT_TRUE(ChooseKey(staff, tuning, modes, 1));
  EXPECT_EQ(staff.notes[1].token, "G494");
  EXPECT_EQ(staff.notes[2].token, "B494");
  EXPECT_EQ(staff.notes[3].token, "D592");
  ASSERT_TRUE(ChooseKey(staff, tuning, modes, 0));
  EXPECT_EQ(staff.notes[1].token, "C494");
  EXPECT_EQ(staff.notes[3].token, "G492");
  EXPECT_EQ(tuning.pitches[60], 15400);

  // Play it: C and E together at 480 ms, G when the column's last note (E) ends.
  FakeClock clock;
  clock.now = 0;
  FakeStaffView view(rig.log);
  FakeScoreList list(rig.log, staff, modes);
  int handPosition = 0;
  double d = 1.0;
  const double gate = entry.gate;
  PlaybackEnv env{staff, modes, tuning, handPosition, d, gate, clock, rig.ports, view, list};
  PlaybackState state;
  // Entered notes are played as they stand, saved or not.
  staff.hasChanges = false;
  ASSERT_TRUE(TransportMouseDown(state, 0, PlayStyle{false, true}, env));
  const PlayTimer timer = TimerFor(false, PlayStyle{false, true});
  std::vector<std::pair<double, std::pair<int, int>>> heard;
  for (clock.now = 0; clock.now < 2000000; clock.now += 1000) {
    const auto before = rig.players[1].notes.size();
    if (PlaybackTick(state, timer, env) && rig.players[1].notes.size() > before)
      heard.push_back({clock.now, rig.players[1].notes.back()});
  }
  const std::vector<std::pair<double, std::pair<int, int>>> expected = {
      {480000, {P(60), 75}}, {481000, {P(64), 75}}, {936000, {P(60), 0}},
      {937000, {P(64), 0}},  {960000, {P(67), 75}}, {1872000, {P(67), 0}}};
  // One event a tick: the chord's second note follows one tick (1 ms) later.
  EXPECT_EQ(std::vector(heard.begin(), heard.begin() + 6), expected);
  ASSERT_TRUE(TransportMouseDown(state, 1, PlayStyle{false, true}, env));
  EXPECT_FALSE(modes.playing);
  EXPECT_TRUE(rig.players[1].StillSounding().empty());
}

// While a score is read or played, nothing the user does to the score changes it: each
// operation refuses under each of the three busy flags, and the staff is as it was.
TEST_F(Walk, EveryScoreChangeIsRefusedWhileBusy) {
  EnterNoteAt(staff, entry, modes, {}, 100, 20, 78);
  ASSERT_TRUE(EnterNoteAt(staff, entry, modes, {}, 101, 20, 78));
  FakeConfirm confirm;
  struct Operation {
    const char* name;
    std::function<bool(Walk&, const Modes&)> run;  // true when it acted
  } operations[] = {
      {"enter a note", [](Walk& w, const Modes& m) { return EnterNoteAt(w.staff, w.entry, m, {}, 102, 52, 78); }},
      {"choose a length",
       [](Walk& w, const Modes& m) {
         ChooseLength(w.staff, w.entry, m, 8);
         return w.entry.lengthButton == 8;
       }},
      {"note menu", [](Walk& w, const Modes& m) { return ChooseFromNoteMenu(w.staff.notes[1], m, {NoteMenuChoice::Kind::Length, 2}); }},
      {"key menu", [](Walk& w, const Modes& m) { return ChooseKey(w.staff, w.tuning, m, 3); }},
      {"octave", [](Walk& w, const Modes& m) { return ChooseKey(w.staff, w.tuning, m, kOctaveUpItem); }},
      {"time menu", [](Walk& w, const Modes& m) { return ChooseTime(w.staff, m, 2); }},
      {"bar menu", [&confirm](Walk& w, const Modes& m) {
         return ChooseFromBarMenu(w.staff, m, BarOperation::Insert, confirm) == BarMenuOutcome::Done;
       }},
  };
  for (bool Modes::*flag : {&Modes::loading, &Modes::playing, &Modes::listPlaying}) {
    Modes busy;
    busy.*flag = true;
    for (const auto& op : operations) {
      SCOPED_TRACE(op.name);
      const Staff before = staff;
      const EntryState entryBefore = entry;
      EXPECT_FALSE(op.run(*this, busy));
      EXPECT_EQ(staff.notes, before.notes);
      EXPECT_EQ(staff.keySignature, before.keySignature);
      EXPECT_EQ(staff.timeSignature, before.timeSignature);
      EXPECT_EQ(entry.lengthButton, entryBefore.lengthButton);
    }
  }
  // The same operations act when nothing is read or played.
  for (const auto& op : operations) {
    SCOPED_TRACE(op.name);
    EXPECT_TRUE(op.run(*this, Modes{}));
  }
}
