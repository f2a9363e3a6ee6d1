// Score playback against a fake clock.
#include <gtest/gtest.h>

#include <random>

#include "violin/playback.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

Note NoteAt(int left, int pitch, const char* duration = "4", const char* velocity = "9") {
  Note n;
  return n.left = left, n.pitch = pitch, n.durationDigit = duration, n.velocityDigit = velocity, n;
}

constexpr PlayStyle kLive{true, false}, kManualPlay{false, true}, kManualEdit{false, false};
constexpr PlayTimer kLoop = PlayTimer::LoopSoundOnly, kShown = PlayTimer::LoopOnFingerboard, kFollow = PlayTimer::LoopFollowingStaff;

struct PlaybackFixture : ::testing::Test {
  FakeSound sound;
  Staff staff;
  Modes modes;
  TuningTables tuning = MarkedTuning();
  int handPosition = 0;
  double d = 1.0, gate = 0.75, t0 = 0;
  FakeClock clock;
  FakeStaffView view{sound.log};
  FakeScoreList list{sound.log, staff, modes};
  PlaybackEnv env{staff, modes, tuning, handPosition, d, gate, clock, sound.ports, view, list};
  PlaybackState state;

  void AddMelody() {  // a crotchet, a quaver and a minim one after another
    for (const Note& n : {NoteAt(136, 60, "4"), NoteAt(168, 64, "8"), NoteAt(200, 67, "2")}) staff.AddNote(n);
  }
  bool Press(int button, PlayStyle style) { return t0 = clock.now, TransportMouseDown(state, button, style, env); }
  bool TickAt(double elapsed, PlayTimer t) { return clock.now = t0 + elapsed, PlaybackTick(state, t, env); }
  Log TickLog(double elapsed, PlayTimer t) { return sound.log.clear(), TickAt(elapsed, t), sound.log; }
};

}  // namespace

// A crotchet's wait first; each note sounds 0.75 of its length; the loop starts over unscrolled.
TEST_F(PlaybackFixture, EveryEventSoundsAtItsDueTimeAndNotBefore) {
  AddMelody();
  ASSERT_TRUE(Press(0, kManualPlay));
  ScrollTo(staff, 288);
  const std::pair<double, Log> due[] = {
      {480000, {"player1 p(60) 75", "G 4/5"}}, {840000, {"player1 p(60) 0", "GF 4/5"}}, {960000, {"player1 p(64) 75", "G 3/2"}},
      {1140000, {"player1 p(64) 0", "GF 3/2"}}, {1200000, {"player1 p(67) 75", "G 3/5"}}, {1920000, {"player1 p(67) 0", "GF 3/5"}},
      {1920000 + 480000, {"player1 p(60) 75", "G 4/5"}}};
  for (const auto& [time, lines] : due) {
    EXPECT_FALSE(TickAt(time - 1, kShown)) << time;
    EXPECT_EQ(staff.scrollValue, time <= 1920000 ? 288 : 0);
    EXPECT_EQ(TickLog(time, kShown), lines) << time;
  }
}

// Slower, an event moves later; faster, the overdue ones come one a tick.
TEST_F(PlaybackFixture, ATempoChangeMovesTheEventsStillToCome) {
  AddMelody();
  ASSERT_TRUE(Press(0, kLive));
  EXPECT_TRUE(TickAt(480000, kLoop));
  d = 2.0;  // the note-off at 840000 now falls at 1680000
  EXPECT_FALSE(TickAt(840000, kLoop) || MicrosecondsUntilDue(state, env) != 840000);
  EXPECT_FALSE(TickAt(1679999, kLoop));
  EXPECT_TRUE(TickAt(1680000, kLoop));
  d = 0.6;  // 960000, 1140000 and 1200000 × 0.6 are overdue; 1920000 × 0.6 is not
  clock.now = t0 + 1000000;
  for (int k = 0; k < 4; ++k) EXPECT_EQ(PlaybackTick(state, kLoop, env), k < 3) << k;
  EXPECT_DOUBLE_EQ(MicrosecondsUntilDue(state, env), 152000);
  EXPECT_EQ(sound.log, (Log{"player1 p(60) 75", "player1 p(60) 0", "player1 p(64) 75", "player1 p(64) 0", "player1 p(67) 75"}));
}

// Whatever the notes, rests and chords, every note started is ended, one event a tick.
TEST_F(PlaybackFixture, EveryNoteStartedIsEndedOnceThePieceIsOver) {
  std::mt19937 rng(11);
  const char *durations[] = {"0", "2", "4", "6", "8", "A", "C", "F"}, *velocities[] = {"0", "5", "9", "F"};
  for (int k = 0; k < 60; ++k)
    staff.AddNote(NoteAt(136 + 8 * int(rng() % 100), 40 + int(rng() % 60), durations[rng() % 8], velocities[rng() % 4]));
  ASSERT_TRUE(Press(0, kLive));
  clock.now = t0 + 1e12;
  for (int k = 0; k < 120; ++k) ASSERT_TRUE(PlaybackTick(state, kLoop, env));
  EXPECT_EQ(state.cursor, 1) << "the whole piece was played";
  EXPECT_EQ(sound.log.size(), 120u);
  EXPECT_EQ(sound.players[1].StillSounding(), std::vector<int>{});
}

// Play refuses an empty staff or a busy window; changed since loading or not, it plays.
TEST_F(PlaybackFixture, PlayDependsOnTheNotesNotOnTheChangedFlag) {
  struct Case { int notes; bool changed; Modes modes; PlayStyle style; int timer; };  // timer -1: refused
  const Case cases[] = {{0, true, {}, kLive, -1}, {1, true, {false, true, false}, kLive, -1},
                        {1, true, {true, false, false}, kLive, -1}, {1, false, {}, kLive, int(kLoop)},
                        {4, false, {}, kManualPlay, int(kShown)}, {1, true, {}, kManualEdit, int(kFollow)}};
  for (const auto& c : cases) {
    staff = Staff{};
    for (int k = 0; k < c.notes; ++k) staff.AddNote(NoteAt(136 + 32 * k, 60 + k));
    staff.hasChanges = c.changed, modes = c.modes, state = PlaybackState{}, sound.log.clear();
    const bool plays = c.timer >= 0;
    EXPECT_EQ(Press(0, c.style), plays) << c.notes;
    for (int k = 0; k < kPlayTimers; ++k) EXPECT_EQ(state.running[k], k == c.timer) << k;
    EXPECT_EQ(modes.playing, c.modes.playing || plays);
    EXPECT_EQ(state.buttonPicture[0], plays ? "PlayButtonB" : "PlayButton");
    EXPECT_EQ(staff.hasChanges, c.changed) << "play leaves the changed flag alone";
    EXPECT_EQ(state.lastEvent, 2 * c.notes * plays) << "every note on and off is in the piece";
  }
}

// Stop silences the score player and clears the highlight, even after a note was removed.
TEST_F(PlaybackFixture, StopSilencesTheScorePlayerAndClearsTheHighlight) {
  AddMelody();
  ASSERT_TRUE(Press(0, kManualEdit));
  ASSERT_TRUE(TickAt(480000, kFollow));
  EXPECT_TRUE(staff.notes[1].sounding) << "the sounding note is highlighted";
  staff.RemoveNote(3);
  staff.RemoveNote(2);
  ASSERT_TRUE(TickAt(840000, kFollow));
  EXPECT_FALSE(TickAt(960000, kFollow)) << "the missing note stops the timer";
  sound.log.clear();
  EXPECT_TRUE(Press(1, kManualEdit));
  EXPECT_FALSE(modes.playing || state.AnyRunning() || staff.notes[1].sounding);
  EXPECT_EQ(state.buttonPicture[0], "PlayButton");
  Log sweep;
  for (int n = 21; n <= 108; ++n) sweep.push_back("player1 p(" + std::to_string(n) + ") 0");
  EXPECT_EQ(sound.Of(1), sweep);
}

TEST_F(PlaybackFixture, ListPlaysEveryRowInTurnAndWraps) {
  list.scores = {{NoteAt(136, 60)}, {NoteAt(136, 62)}, {NoteAt(136, 64)}};
  list.selected = 1;
  ASSERT_TRUE(Press(2, kLive));
  for (int piece = 0; piece < 3; ++piece, t0 = clock.now)  // each piece's end loads the next row
    ASSERT_TRUE(TickAt(480000, PlayTimer::ListSoundOnly) && TickAt(840000, PlayTimer::ListSoundOnly));
  EXPECT_EQ(sound.log, (Log{"load 1 reading", "player1 p(62) 75", "player1 p(62) 0", "select 2", "load 2 reading",  //
                            "player1 p(64) 75", "player1 p(64) 0", "select 0", "load 0 reading",  //
                            "player1 p(60) 75", "player1 p(60) 0", "select 1", "load 1 reading"}));
}
