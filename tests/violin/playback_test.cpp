// Score playback against a fake clock: each event at its time, one a tick, the tempo
// slider moving what is still to come, the ends of a piece, and the transport buttons.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "violin/playback.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

Note NoteAt(int left, int pitch, const char* duration = "4", const char* velocity = "9") {
  Note n;
  n.left = left;
  n.pitch = pitch;
  n.durationDigit = duration;
  n.velocityDigit = velocity;
  return n;
}

constexpr PlayStyle kLive{true, false};
constexpr PlayStyle kManualPlay{false, true};
constexpr PlayStyle kManualEdit{false, false};

struct PlaybackFixture : ::testing::Test {
  FakeSound sound;
  Staff staff;
  Modes modes;
  TuningTables tuning = MarkedTuning();
  int handPosition = 0;
  double d = 1.0;
  double gate = 0.75;
  FakeClock clock;
  FakeStaffView view{sound.log};
  FakeScoreList list{sound.log, staff, modes};
  PlaybackEnv env{staff, modes, tuning, handPosition, d, gate, clock, sound.ports, view, list};
  PlaybackState state;
  double t0 = 0;

  void Add(const Note& n) {
    staff.AddNote(n);
    staff.hasChanges = true;
  }
  bool Press(int index, PlayStyle style) {
    const bool acted = TransportMouseDown(state, index, style, env);
    t0 = clock.now;
    return acted;
  }
  // One tick with the clock at `elapsed` microseconds after the start.
  bool TickAt(double elapsed, PlayTimer t) {
    clock.now = t0 + elapsed;
    return PlaybackTick(state, t, env);
  }
  // The log lines a tick added.
  Log TickLog(double elapsed, PlayTimer t) {
    sound.log.clear();
    TickAt(elapsed, t);
    return sound.log;
  }
};

// Three notes one after another: a crotchet, a quaver, a minim.
void AddMelody(PlaybackFixture& f) {
  f.Add(NoteAt(136, 60, "4"));
  f.Add(NoteAt(168, 64, "8"));
  f.Add(NoteAt(200, 67, "2"));
}

}  // namespace

TEST_F(PlaybackFixture, EveryEventSoundsAtItsDueTimeAndNotBefore) {
  AddMelody(*this);
  ASSERT_TRUE(Press(0, kLive));
  // The first note waits for the template's crotchet; each sounds 0.75 of its length.
  const std::pair<double, const char*> due[] = {
      {480000, "player1 p(60) 75"}, {840000, "player1 p(60) 0"},   {960000, "player1 p(64) 75"},
      {1140000, "player1 p(64) 0"}, {1200000, "player1 p(67) 75"}, {1920000, "player1 p(67) 0"},
  };
  for (auto [time, line] : due) {
    EXPECT_FALSE(TickAt(time - 1, PlayTimer::LoopSoundOnly)) << time;
    sound.log.clear();
    EXPECT_TRUE(TickAt(time, PlayTimer::LoopSoundOnly)) << time;
    EXPECT_EQ(sound.log, Log{line}) << time;
  }
  // The loop starts over from the last event's tick.
  EXPECT_EQ(state.cursor, 1);
  EXPECT_EQ(state.startT, t0 + 1920000);
}

TEST_F(PlaybackFixture, OverdueEventsComeOneATick) {
  AddMelody(*this);
  ASSERT_TRUE(Press(0, kLive));
  clock.now = t0 + 10e6;
  Log expected{"player1 p(60) 75", "player1 p(60) 0", "player1 p(64) 75", "player1 p(64) 0", "player1 p(67) 75", "player1 p(67) 0"};
  for (std::size_t k = 0; k < expected.size(); ++k) {
    EXPECT_TRUE(PlaybackTick(state, PlayTimer::LoopSoundOnly, env));
    ASSERT_EQ(sound.log.size(), k + 1);
  }
  EXPECT_EQ(sound.log, expected);
  // The last tick ended the piece: the loop starts at the present time.
  EXPECT_FALSE(PlaybackTick(state, PlayTimer::LoopSoundOnly, env));
  EXPECT_EQ(sound.log.size(), expected.size());
}

TEST_F(PlaybackFixture, ATempoChangeMovesTheEventsStillToCome) {
  AddMelody(*this);
  ASSERT_TRUE(Press(0, kLive));
  EXPECT_TRUE(TickAt(480000, PlayTimer::LoopSoundOnly));
  d = 2.0;  // slower: the note-off at 840000 now falls at 1680000
  EXPECT_FALSE(TickAt(840000, PlayTimer::LoopSoundOnly));
  EXPECT_EQ(MicrosecondsUntilDue(state, env), 840000);
  EXPECT_FALSE(TickAt(1679999, PlayTimer::LoopSoundOnly));
  EXPECT_TRUE(TickAt(1680000, PlayTimer::LoopSoundOnly));
  d = 0.6;  // faster: three events are overdue at once and come one a tick
  clock.now = t0 + 1000000;
  EXPECT_EQ(MicrosecondsUntilDue(state, env), 0);
  EXPECT_TRUE(PlaybackTick(state, PlayTimer::LoopSoundOnly, env));   // 960000 × 0.6
  EXPECT_TRUE(PlaybackTick(state, PlayTimer::LoopSoundOnly, env));   // 1140000 × 0.6
  EXPECT_TRUE(PlaybackTick(state, PlayTimer::LoopSoundOnly, env));   // 1200000 × 0.6
  EXPECT_FALSE(PlaybackTick(state, PlayTimer::LoopSoundOnly, env));  // 1920000 × 0.6 still ahead
  EXPECT_DOUBLE_EQ(MicrosecondsUntilDue(state, env), 152000);
  EXPECT_EQ(sound.Of(1).back(), "player1 p(67) 75");
}

TEST_F(PlaybackFixture, TheTempoAtStartCountsTwice) {
  // The list is built at the slider's factor and compared at it again.
  Add(NoteAt(136, 60));
  d = 2.0;
  ASSERT_TRUE(Press(0, kLive));
  EXPECT_EQ(MicrosecondsUntilDue(state, env), 1920000);
  EXPECT_FALSE(TickAt(1919999, PlayTimer::LoopSoundOnly));
  EXPECT_TRUE(TickAt(1920000, PlayTimer::LoopSoundOnly));
}

TEST_F(PlaybackFixture, AChordSoundsTogetherAndTheNextStepIsItsLastNote) {
  Add(NoteAt(136, 60, "4"));
  Add(NoteAt(136, 64, "8"));
  Add(NoteAt(168, 67, "4"));
  ASSERT_TRUE(Press(0, kManualPlay));
  ASSERT_TRUE(state.Running(PlayTimer::LoopOnFingerboard));
  const std::pair<double, Log> due[] = {
      {480000, {"player1 p(60) 75", "G 4/5"}}, {480000, {"player1 p(64) 75", "G 3/2"}},
      {660000, {"player1 p(64) 0", "GF 3/2"}}, {720000, {"player1 p(67) 75", "G 3/5"}},
      {840000, {"player1 p(60) 0", "GF 4/5"}}, {1080000, {"player1 p(67) 0", "GF 3/5"}},
  };
  for (const auto& [time, lines] : due) {
    EXPECT_FALSE(TickAt(time - 1, PlayTimer::LoopOnFingerboard)) << time;
    EXPECT_EQ(TickLog(time, PlayTimer::LoopOnFingerboard), lines) << time;
  }
}

TEST_F(PlaybackFixture, ARestKeepsItsTimeSilently) {
  Add(NoteAt(136, 60, "4", "0"));
  Add(NoteAt(168, 62, "4", "F"));
  ASSERT_TRUE(Press(0, kLive));
  clock.now = t0 + 10e6;
  for (int k = 0; k < 4; ++k) PlaybackTick(state, PlayTimer::LoopSoundOnly, env);
  EXPECT_EQ(sound.log, (Log{"player1 p(60) 0", "player1 p(60) 0", "player1 p(62) 127", "player1 p(62) 0"}));
}

TEST_F(PlaybackFixture, EveryNoteStartedIsEndedOnceThePieceIsOver) {
  std::mt19937 rng(11);
  const char* digits[] = {"0", "2", "4", "6", "8", "A", "C", "F"};
  const char* vels[] = {"0", "5", "9", "F"};
  for (int k = 0; k < 60; ++k)
    Add(NoteAt(136 + 8 * static_cast<int>(rng() % 100), 40 + static_cast<int>(rng() % 60), digits[rng() % 8],
             vels[rng() % 4]));
  ASSERT_TRUE(Press(0, kManualPlay));
  clock.now = t0 + 1e12;
  for (int k = 0; k < 120; ++k) ASSERT_TRUE(PlaybackTick(state, PlayTimer::LoopOnFingerboard, env));
  EXPECT_EQ(state.cursor, 1) << "the whole piece was played";
  std::map<std::string, int> sounding;
  for (const std::string& line : sound.Of(1)) {
    const auto space = line.rfind(' ');
    const std::string pitch = line.substr(0, space);
    if (line.substr(space + 1) != "0") ++sounding[pitch];
    else if (sounding[pitch] > 0) --sounding[pitch];
  }
  for (const auto& [pitch, count] : sounding) EXPECT_EQ(count, 0) << pitch << " still sounds";
}

TEST_F(PlaybackFixture, LoopStartsOverUnscrolled) {
  AddMelody(*this);
  ASSERT_TRUE(Press(0, kManualPlay));
  ScrollTo(staff, 288);
  for (double t : {480000, 840000, 960000, 1140000, 1200000}) ASSERT_TRUE(TickAt(t, PlayTimer::LoopOnFingerboard));
  EXPECT_EQ(staff.scrollValue, 288);
  ASSERT_TRUE(TickAt(1920000, PlayTimer::LoopOnFingerboard));
  EXPECT_EQ(staff.scrollValue, 0);
  EXPECT_EQ(state.cursor, 1);
  EXPECT_TRUE(modes.playing);
  EXPECT_FALSE(TickAt(1920000 + 479999, PlayTimer::LoopOnFingerboard));
  EXPECT_EQ(TickLog(1920000 + 480000, PlayTimer::LoopOnFingerboard), (Log{"player1 p(60) 75", "G 4/5"}));
}

TEST_F(PlaybackFixture, FollowingTheStaffMovesTheHighlightAndRepaints) {
  Add(NoteAt(136, 60));
  Add(NoteAt(168, 62));
  ASSERT_TRUE(Press(0, kManualEdit));
  ASSERT_TRUE(state.Running(PlayTimer::LoopFollowingStaff));
  EXPECT_EQ(TickLog(480000, PlayTimer::LoopFollowingStaff), (Log{"player1 p(60) 75", "G 4/5", "refresh 0", "refresh 1", "refresh staff"}));
  EXPECT_TRUE(staff.notes[1].sounding);
  EXPECT_EQ(TickLog(840000, PlayTimer::LoopFollowingStaff), (Log{"player1 p(60) 0", "GF 4/5", "refresh 1", "refresh staff"}));
  EXPECT_FALSE(staff.notes[1].sounding);
  EXPECT_EQ(TickLog(960000, PlayTimer::LoopFollowingStaff), (Log{"player1 p(62) 75", "G 3/0", "refresh 1", "refresh 2", "refresh staff"}));
  EXPECT_TRUE(staff.notes[2].sounding);
  // The last event, then the end of the piece repaints its note and the staff.
  EXPECT_EQ(TickLog(1320000, PlayTimer::LoopFollowingStaff),
            (Log{"player1 p(62) 0", "GF 3/0", "refresh 2", "refresh 2", "refresh staff"}));
  EXPECT_FALSE(staff.notes[2].sounding);
}

TEST_F(PlaybackFixture, FollowingPagesTheStaffWhenANoteIsPastTheView) {
  Add(NoteAt(976, 60));
  Add(NoteAt(984, 62));
  ASSERT_TRUE(Press(0, kManualEdit));
  // Time does not follow the distance in pixels: the first note starts a crotchet in,
  // however far right it stands.
  ASSERT_TRUE(TickAt(480000, PlayTimer::LoopFollowingStaff));
  ASSERT_TRUE(TickAt(840000, PlayTimer::LoopFollowingStaff));
  EXPECT_EQ(staff.scrollValue, 0) << "976 is still in view";
  ASSERT_TRUE(TickAt(960000, PlayTimer::LoopFollowingStaff));
  EXPECT_EQ(staff.scrollValue, 720) << "840 cut to whole bars";
  EXPECT_EQ(staff.notes[2].left, 264);
  EXPECT_EQ(staff.notes[1].left, 256);
  ASSERT_TRUE(TickAt(1320000, PlayTimer::LoopFollowingStaff));
  EXPECT_EQ(staff.scrollValue, 0) << "the loop starts unscrolled";
  EXPECT_EQ(staff.notes[2].left, 984);
}

// Play refuses an empty staff and a press while busy, and plays whatever notes the
// staff holds, whether or not they were changed since they were loaded or saved.
TEST_F(PlaybackFixture, PlayDependsOnTheNotesNotOnTheChangedFlag) {
  struct Case {
    const char* name;
    int notes;
    bool changed;
    Modes modes;
    bool plays;
  } cases[] = {
      {"no notes", 0, true, {}, false},
      {"already playing", 1, true, {false, true, false}, false},
      {"reading a score", 1, true, {true, false, false}, false},
      {"one note loaded, unchanged", 1, false, {}, true},
      {"a few notes, unchanged", 4, false, {}, true},
      {"changed", 1, true, {}, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    staff = Staff{};
    for (int k = 0; k < c.notes; ++k) staff.AddNote(NoteAt(136 + 32 * k, 60 + k));
    staff.hasChanges = c.changed;
    modes = c.modes;
    state = PlaybackState{};
    sound.log.clear();
    EXPECT_EQ(Press(0, kManualPlay), c.plays);
    EXPECT_EQ(state.AnyRunning(), c.plays);
    EXPECT_EQ(modes.playing, c.modes.playing || c.plays);
    EXPECT_EQ(state.listEnabled, !c.plays);
    EXPECT_EQ(state.buttonPicture[0], c.plays ? "PlayButtonB" : "PlayButton");
    EXPECT_EQ(staff.hasChanges, c.changed) << "play leaves the changed flag alone";
    if (c.plays) EXPECT_EQ(state.lastEvent, 2 * c.notes) << "every note on and off is in the piece";
    else EXPECT_TRUE(sound.log.empty());
  }
}

TEST_F(PlaybackFixture, PlayTakesTheTimerOfTheStyle) {
  const std::pair<PlayStyle, PlayTimer> cases[] = {
      {kLive, PlayTimer::LoopSoundOnly}, {kManualPlay, PlayTimer::LoopOnFingerboard}, {kManualEdit, PlayTimer::LoopFollowingStaff}};
  for (auto [style, timer] : cases) {
    staff = Staff{};
    Add(NoteAt(136, 60));
    ScrollTo(staff, 432);
    modes = {};
    state = PlaybackState{};
    ASSERT_TRUE(Press(0, style));
    for (int k = 0; k < kPlayTimers; ++k)
      EXPECT_EQ(state.running[k], k == static_cast<int>(timer)) << "timer " << k;
    EXPECT_TRUE(modes.playing);
    EXPECT_FALSE(state.listEnabled);
    EXPECT_TRUE(state.playingLabel);
    EXPECT_EQ(state.buttonPicture[0], "PlayButtonB");
    EXPECT_EQ(staff.scrollValue, 0);
    EXPECT_EQ(state.lastEvent, 2);
    EXPECT_EQ(MicrosecondsUntilDue(state, env), 480000);
  }
  EXPECT_EQ(TimerFor(true, kLive), PlayTimer::ListSoundOnly);
  EXPECT_EQ(TimerFor(true, kManualPlay), PlayTimer::ListOnFingerboard);
  EXPECT_EQ(TimerFor(true, kManualEdit), PlayTimer::ListFollowingStaff);
}

TEST_F(PlaybackFixture, StopSilencesTheScorePlayerAndClearsTheHighlight) {
  AddMelody(*this);
  ASSERT_TRUE(Press(0, kManualEdit));
  ASSERT_TRUE(TickAt(480000, PlayTimer::LoopFollowingStaff));
  ScrollTo(staff, 144);
  sound.log.clear();
  EXPECT_TRUE(Press(1, kManualEdit));
  EXPECT_FALSE(modes.playing);
  EXPECT_FALSE(state.AnyRunning());
  EXPECT_FALSE(staff.notes[1].sounding);
  EXPECT_EQ(staff.scrollValue, 0);
  EXPECT_TRUE(state.listEnabled);
  EXPECT_FALSE(state.playingLabel);
  EXPECT_EQ(state.buttonPicture[0], "PlayButton");
  EXPECT_EQ(state.buttonPicture[2], "RepeatButton");
  Log sweep;
  for (int n = 21; n <= 108; ++n) sweep.push_back("player1 p(" + std::to_string(n) + ") 0");
  EXPECT_EQ(sound.Of(1), sweep);
  // The cursor's note (the first note's end) is refreshed first, the note before it last.
  EXPECT_EQ(sound.log.front(), "refresh 1");
  EXPECT_EQ(sound.log.back(), "refresh 1");
  EXPECT_EQ(std::count(sound.log.begin(), sound.log.end(), "GF 1/0"), 1);
  EXPECT_EQ(std::count_if(sound.log.begin(), sound.log.end(), [](auto& l) { return l.rfind("G ", 0) == 0; }), 0);
}

TEST_F(PlaybackFixture, StopWhileIdleStillSweeps) {
  EXPECT_TRUE(Press(1, kLive));
  EXPECT_EQ(sound.Of(1).size(), 88u);
  EXPECT_FALSE(modes.playing || modes.listPlaying);
}

TEST_F(PlaybackFixture, ListPlaysEveryRowInTurnAndWraps) {
  list.scores = {{NoteAt(136, 60)}, {NoteAt(136, 62)}, {NoteAt(136, 64)}};
  list.selected = 1;
  ASSERT_TRUE(Press(2, kLive));
  EXPECT_TRUE(modes.listPlaying);
  EXPECT_FALSE(modes.loading);
  EXPECT_TRUE(state.Running(PlayTimer::ListSoundOnly));
  EXPECT_EQ(state.buttonPicture[2], "RepeatButtonB");
  EXPECT_TRUE(state.playingLabel);
  EXPECT_EQ(sound.log, Log{"load 1 reading"});
  sound.log.clear();
  for (int piece = 0; piece < 3; ++piece) {
    ASSERT_TRUE(TickAt(480000, PlayTimer::ListSoundOnly));
    ASSERT_TRUE(TickAt(840000, PlayTimer::ListSoundOnly));  // the end loads the next row
    t0 = clock.now;
  }
  EXPECT_EQ(sound.log, (Log{"player1 p(62) 75", "player1 p(62) 0", "select 2", "load 2 reading",  //
                            "player1 p(64) 75", "player1 p(64) 0", "select 0", "load 0 reading",  //
                            "player1 p(60) 75", "player1 p(60) 0", "select 1", "load 1 reading"}));
  EXPECT_FALSE(modes.loading);
  EXPECT_TRUE(state.playingLabel);
  EXPECT_EQ(state.startT, clock.now);
}

TEST_F(PlaybackFixture, QuietListFollowingLoadsWithoutReadingAndKeepsOldHighlights) {
  list.scores = {{NoteAt(136, 60), NoteAt(168, 62)}, {NoteAt(136, 64)}};
  ASSERT_TRUE(Press(2, kManualEdit));
  ASSERT_TRUE(state.Running(PlayTimer::ListFollowingStaff));
  EXPECT_EQ(TickLog(480000, PlayTimer::ListFollowingStaff), (Log{"player1 p(60) 75", "G 4/5", "refresh 1"}));
  // The first note's end is not repainted: its highlight stays on screen.
  EXPECT_EQ(TickLog(840000, PlayTimer::ListFollowingStaff), (Log{"player1 p(60) 0", "GF 4/5"}));
  EXPECT_FALSE(staff.notes[1].sounding);
  TickAt(960000, PlayTimer::ListFollowingStaff);
  EXPECT_EQ(TickLog(1320000, PlayTimer::ListFollowingStaff), (Log{"player1 p(62) 0", "GF 3/0", "select 1", "load 1"}));
}

TEST_F(PlaybackFixture, ListNeedsTwoRowsAndOnlyOneListAtATime) {
  list.scores = {{NoteAt(136, 60)}};
  EXPECT_FALSE(Press(2, kLive));
  list.scores.clear();
  EXPECT_FALSE(Press(2, kLive));
  EXPECT_FALSE(modes.listPlaying);
  list.scores = {{NoteAt(136, 60)}, {NoteAt(136, 62)}};
  modes.listPlaying = true;
  EXPECT_FALSE(Press(2, kLive));
  modes = Modes{true, false, false};
  EXPECT_FALSE(Press(2, kLive));
  EXPECT_FALSE(Press(1, kLive));
  EXPECT_TRUE(sound.log.empty()) << "reading a score blocks every button";
  EXPECT_FALSE(state.AnyRunning());
}

TEST_F(PlaybackFixture, PlayAndListTogetherStopOneAtATime) {
  list.scores = {{NoteAt(136, 60)}, {NoteAt(136, 62)}};
  Add(NoteAt(136, 67));
  ASSERT_TRUE(Press(0, kManualPlay));
  ASSERT_TRUE(Press(2, kManualPlay));
  EXPECT_TRUE(state.Running(PlayTimer::LoopOnFingerboard));
  EXPECT_TRUE(state.Running(PlayTimer::ListOnFingerboard));
  ASSERT_TRUE(Press(1, kManualPlay));
  EXPECT_FALSE(modes.playing);
  EXPECT_TRUE(modes.listPlaying);
  EXPECT_FALSE(state.Running(PlayTimer::LoopOnFingerboard));
  EXPECT_TRUE(state.Running(PlayTimer::ListOnFingerboard));
  ASSERT_TRUE(Press(1, kManualPlay));
  EXPECT_FALSE(modes.listPlaying);
  EXPECT_FALSE(state.AnyRunning());
  EXPECT_EQ(state.buttonPicture[1], "StopButtonB");
  EXPECT_EQ(state.buttonPicture[2], "RepeatButton");
}

TEST_F(PlaybackFixture, ANoteRemovedDuringPlaybackStopsTheTimersWithoutACrash) {
  AddMelody(*this);
  ASSERT_TRUE(Press(0, kManualEdit));
  ASSERT_TRUE(TickAt(480000, PlayTimer::LoopFollowingStaff));
  staff.RemoveNote(3);
  staff.RemoveNote(2);
  ASSERT_TRUE(TickAt(840000, PlayTimer::LoopFollowingStaff));
  EXPECT_FALSE(TickAt(960000, PlayTimer::LoopFollowingStaff));
  EXPECT_FALSE(state.AnyRunning());
  EXPECT_TRUE(modes.playing) << "the flags stay for Stop to clear";
  // Stop meets the missing note at the cursor, passes over its highlight and still
  // silences everything: no note may be left hanging.
  sound.log.clear();
  EXPECT_TRUE(Press(1, kManualEdit));
  EXPECT_FALSE(modes.playing);
  EXPECT_EQ(sound.Of(1).size(), 88u);
}

TEST_F(PlaybackFixture, AnEmptyScoreInTheListIsPassedOver) {
  list.scores = {{}, {NoteAt(136, 62)}};
  ASSERT_TRUE(Press(2, kLive));
  EXPECT_EQ(state.lastEvent, 0);
  EXPECT_EQ(MicrosecondsUntilDue(state, env), 0);
  EXPECT_FALSE(PlaybackTick(state, PlayTimer::ListSoundOnly, env));
  EXPECT_EQ(list.selected, 1);
  EXPECT_EQ(state.lastEvent, 2);
}

TEST_F(PlaybackFixture, ATimerThatIsNotRunningDoesNothing) {
  AddMelody(*this);
  ASSERT_TRUE(Press(0, kLive));
  sound.log.clear();
  EXPECT_FALSE(TickAt(10e6, PlayTimer::LoopOnFingerboard));
  EXPECT_TRUE(sound.log.empty());
  EXPECT_EQ(state.cursor, 1);
}

// Entering a button shows it pressed and the mouse-up releases it; leaving releases
// it too, except the Play or List button whose piece is running.
TEST(TransportPictures, EnterPressesExitReleasesUnlessRunning) {
  const Modes playing{false, true, false}, listing{false, false, true};
  for (int index = 0; index < kTransportButtons; ++index) {
    SCOPED_TRACE(index);
    const auto& pictures = kTransportPictures[index];
    EXPECT_NE(pictures.up, pictures.down);
    for (const Modes& modes : {Modes{}, playing, listing}) {
      PlaybackState state;
      TransportMouseEnter(state, index);
      EXPECT_EQ(state.buttonPicture[index], pictures.down);
      TransportMouseExit(state, index, modes);
      const bool held = (index == 0 && modes.playing) || (index == 2 && modes.listPlaying);
      EXPECT_EQ(state.buttonPicture[index], held ? pictures.down : pictures.up);
      TransportMouseEnter(state, index);
      TransportMouseUp(state, index);
      EXPECT_EQ(state.buttonPicture[index], pictures.up);
    }
  }
}
