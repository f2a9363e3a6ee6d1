// Walks through the editor and the violin together: the whole staff, every call the players got.
#include <gtest/gtest.h>

#include <functional>

#include "editor/bar_operations.h"
#include "editor/key_time.h"
#include "editor/note_menu.h"
#include "editor_fixture.h"
#include "violin/fingerboard.h"
#include "violin/playback.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

struct Walk : Editor {
  FingerPress press{};
  // A finger on the drawn violin at canvas x, y, released again.
  void Finger(int x, int y, bool option = false) {
    Modifiers mods;
    mods.option = option;
    MouseDownResult r = FingerboardMouseDown(x, y, mods, modes, staff, press, tuning, rig.ports);
    ASSERT_TRUE(r.handled);
    EnterPlayedNote(staff, entry, r.index, r.accidental);
    FingerboardMouseUp(press, tuning, rig.ports);
  }
};

}  // namespace

TEST_F(Walk, AMelodyOnTheFingerboardSoundsEntersAndLeavesNothingSounding) {
  Finger(95, 207);         // D string open: D4
  Finger(120, 196);        // A string, first cell: A sharp 4, written as a sharp
  Finger(145, 185, true);  // E string, second cell: F sharp 5, written as G flat with Option
  Finger(600, 218);        // past the last band on the G string: the open string
  EXPECT_EQ(Placed(staff), (std::vector<std::string>{"136:D494", "168:A4#94", "200:G5b94", "232:G394"}));
  EXPECT_EQ(std::pair(staff.notes[2].pitch, staff.notes[3].pitch), std::pair(70, 78));
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
  DoubleClick(20, 78);  // C4
  DoubleClick(20, 72);  // E4 on the same column: a chord
  ChooseLength(staff, entry, modes, 2);
  DoubleClick(52, 66);  // G4 half note
  ASSERT_TRUE(ChooseKey(staff, tuning, modes, 1));
  EXPECT_EQ(Placed(staff), (std::vector<std::string>{"136:G494", "136:B494", "168:D592"}));
  ASSERT_TRUE(ChooseKey(staff, tuning, modes, 0));
  EXPECT_EQ(Placed(staff), (std::vector<std::string>{"136:C494", "136:E494", "168:G492"}));
  EXPECT_EQ(tuning.pitches[60], 15400);

  FakeClock clock;
  clock.now = 0;
  FakeStaffView view(rig.log);
  FakeScoreList list(rig.log, staff, modes);
  int handPosition = 0;
  double tempoFactor = 1.0;
  PlaybackEnv env{staff, modes, tuning, handPosition, tempoFactor, entry.gate, clock, rig.ports, view, list};
  PlaybackState state;
  staff.hasChanges = false;  // entered notes are played as they stand, saved or not
  ASSERT_TRUE(TransportMouseDown(state, 0, PlayStyle{false, true}, env));
  const PlayTimer timer = TimerFor(false, PlayStyle{false, true});
  std::vector<std::pair<double, std::pair<int, int>>> heard;
  for (clock.now = 0; clock.now < 2000000; clock.now += 1000) {
    const auto before = rig.players[1].notes.size();
    if (PlaybackTick(state, timer, env) && rig.players[1].notes.size() > before)
      heard.push_back({clock.now, rig.players[1].notes.back()});
  }
  // C and E together at 480 ms (one event a tick), G when the column's last note ends.
  const std::vector<std::pair<double, std::pair<int, int>>> expected = {
      {480000, {P(60), 75}}, {481000, {P(64), 75}}, {936000, {P(60), 0}},
      {937000, {P(64), 0}},  {960000, {P(67), 75}}, {1872000, {P(67), 0}}};
  EXPECT_EQ(std::vector(heard.begin(), heard.begin() + 6), expected);
  ASSERT_TRUE(TransportMouseDown(state, 1, PlayStyle{false, true}, env));
  EXPECT_FALSE(modes.playing);
  EXPECT_TRUE(rig.players[1].StillSounding().empty());
}

// Under each busy flag every operation refuses and the staff stays; with none, each acts.
TEST_F(Walk, EveryScoreChangeIsRefusedWhileBusy) {
  ASSERT_TRUE(DoubleClick(20, 78));
  FakeConfirm confirm;
  struct Operation {
    const char* name;
    std::function<bool(Walk&, const Modes&)> run;  // true when it acted
  } operations[] = {
      {"enter a note", [](Walk& w, const Modes& m) { return EnterNoteAt(w.staff, w.entry, m, {}, w.ticks + 1, 52, 78); }},
      {"choose a length", [](Walk& w, const Modes& m) { ChooseLength(w.staff, w.entry, m, 8); return w.entry.lengthButton == 8; }},
      {"note menu", [](Walk& w, const Modes& m) { return ChooseFromNoteMenu(w.staff.notes[1], m, {NoteMenuChoice::Kind::Length, 2}); }},
      {"key menu", [](Walk& w, const Modes& m) { return ChooseKey(w.staff, w.tuning, m, 3); }},
      {"time menu", [](Walk& w, const Modes& m) { return ChooseTime(w.staff, m, 2); }},
      {"bar menu", [&confirm](Walk& w, const Modes& m) {
         return ChooseFromBarMenu(w.staff, m, BarOperation::Insert, confirm) == BarMenuOutcome::Done;
       }},
  };
  for (bool Modes::*flag : {&Modes::loading, &Modes::playing, &Modes::listPlaying}) {
    Modes busy;
    busy.*flag = true;
    for (const auto& op : operations) {
      const auto before = std::tuple(staff.notes, staff.keySignature, staff.timeSignature, entry.lengthButton);
      EXPECT_FALSE(op.run(*this, busy)) << op.name;
      EXPECT_EQ(std::tie(staff.notes, staff.keySignature, staff.timeSignature, entry.lengthButton), before) << op.name;
    }
  }
  for (const auto& op : operations) EXPECT_TRUE(op.run(*this, Modes{})) << op.name;
}
