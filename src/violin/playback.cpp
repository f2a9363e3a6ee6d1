#include "violin/playback.h"

#include "violin/fingerboard.h"
#include "violin/key_push.h"

namespace lirenza {

namespace {

constexpr int kSweepLow = 21;           // Stop silences the whole piano range
constexpr int kSweepHigh = 108;

int Index(PlayTimer t) { return static_cast<int>(t); }

void Run(PlaybackState& state, PlayTimer t, bool on) { state.running[Index(t)] = on; }

bool IsListTimer(PlayTimer t) { return t == PlayTimer::ListSoundOnly || t == PlayTimer::ListOnFingerboard || t == PlayTimer::ListFollowingStaff; }

// A note the event list points at is gone from the staff. Nothing sensible can be
// shown for it, so the timers stop where they are and the flags stay until Stop.
void StopOnMissingNote(PlaybackState& state) {
  Run(state, PlayTimer::LoopSoundOnly, false);
  Run(state, PlayTimer::LoopOnFingerboard, false);
  Run(state, PlayTimer::ListSoundOnly, false);
  Run(state, PlayTimer::ListOnFingerboard, false);
}

void SoundOnly(const PlayEvent& e, const PlaybackEnv& env) {
  PlayIndex(env.sound, kScorePlayer, env.tuning, e.pitch, e.velocity);
}

// Follows the score on the staff: pages the view when the note is off its right end,
// and moves the highlight from the previous event's note to this one.
bool FollowOnStaff(const PlaybackState& state, int i, bool repaint, const PlaybackEnv& env) {
  const PlayEvent& e = state.events[i];
  const int previous = state.events[i - 1].place;
  Staff& staff = env.staff;
  if (!staff.Exists(e.place) || !staff.Exists(previous)) return false;
  if (staff.notes[e.place].left >= kPageColumn) ScrollTo(staff, staff.scrollValue + kPageStep);
  PlayAndShow(env.sound, env.tuning, env.handPosition, e.pitch, e.velocity);
  staff.notes[previous].sounding = false;
  if (repaint) env.view.RefreshNote(previous);
  if (e.velocity != 0) {
    staff.notes[e.place].sounding = true;
    env.view.RefreshNote(e.place);
  }
  return true;
}

void SelectNextRow(ScoreList& list) {
  const int row = list.SelectedRow();
  list.Select(row >= list.Rows() - 1 || row < 0 ? 0 : row + 1);
}

// Loads the next score of the list and starts it; quiet leaves the labels alone.
void NextScore(PlaybackState& state, bool quiet, const PlaybackEnv& env) {
  SelectNextRow(env.list);
  if (!quiet) {
    state.playingLabel = false;
    env.modes.loading = true;
  }
  env.list.SetNotes();
  StartPiece(state, env);
  if (!quiet) {
    env.modes.loading = false;
    state.playingLabel = true;
  }
}

void EndOfPiece(PlaybackState& state, PlayTimer timer, int last, const PlaybackEnv& env) {
  if (IsListTimer(timer)) {
    NextScore(state, timer == PlayTimer::ListFollowingStaff, env);
    return;
  }
  if (timer == PlayTimer::LoopFollowingStaff && last >= 1 && env.staff.Exists(state.events[last].place))
    env.view.RefreshNote(state.events[last].place);
  state.cursor = 1;
  ScrollTo(env.staff, 0);
  state.startT = env.clock.Microseconds();
}

// Stop ends the live timer in live style, and both manual timers (play and edit mode)
// otherwise, since the mode may have changed while the score played.
void StopTimersOf(PlaybackState& state, bool list, PlayStyle style) {
  if (style.live) {
    Run(state, TimerFor(list, style), false);
    return;
  }
  Run(state, TimerFor(list, PlayStyle{false, true}), false);
  Run(state, TimerFor(list, PlayStyle{false, false}), false);
}

void Stop(PlaybackState& state, PlayStyle style, const PlaybackEnv& env) {
  state.listEnabled = true;
  Modes& modes = env.modes;
  const int i = state.cursor;
  if (modes.playing) {
    modes.playing = false;
    state.buttonPicture[0] = kTransportPictures[0].up;
    state.buttonPicture[2] = kTransportPictures[2].up;
    state.playingLabel = false;
    StopTimersOf(state, false, style);
    if (!style.live) {
      // A note removed while playing has no highlight to clear; Stop goes on, so that
      // nothing is left sounding.
      const int place = i >= 0 && i < static_cast<int>(state.events.size()) ? state.events[i].place : -1;
      if (place >= 1 && env.staff.Exists(place)) {
        env.staff.notes[place].sounding = false;
        env.view.RefreshNote(place);
      }
    }
  } else if (modes.listPlaying) {
    modes.listPlaying = false;
    modes.playing = false;
    state.buttonPicture[2] = kTransportPictures[2].up;
    state.buttonPicture[1] = kTransportPictures[1].down;
    state.playingLabel = false;
    StopTimersOf(state, true, style);
  }
  // Whatever still sounds on the score's player ends, and the fingerboard is cleared.
  for (int n = kSweepLow; n <= kSweepHigh; ++n) PlayAndShow(env.sound, env.tuning, env.handPosition, n, 0);
  const int before = i - 1;
  if (before >= 0 && before < static_cast<int>(state.events.size()) &&
      env.staff.Exists(state.events[before].place)) {
    env.view.RefreshNote(state.events[before].place);
    ScrollTo(env.staff, 0);
  }
}

}  // namespace

const std::array<ButtonPictures, kTransportButtons> kTransportPictures{{
    {"PlayButton", "PlayButtonB"},
    {"StopButton", "StopButtonB"},
    {"RepeatButton", "RepeatButtonB"},
    {"ChangeMidi0", "ChangeMidi1"},
    {"PlayMidi0", "PlayMidi1"},
    {"MidiToAiff0", "MidiToAiff1"},
    {"PlayAiff0", "PlayAiff1"},
}};

std::array<std::string, kTransportButtons> PlaybackState::UpPictures() {
  std::array<std::string, kTransportButtons> names;
  for (int k = 0; k < kTransportButtons; ++k) names[k] = kTransportPictures[k].up;
  return names;
}

bool PlaybackState::AnyRunning() const {
  for (bool r : running)
    if (r) return true;
  return false;
}

PlayTimer TimerFor(bool list, PlayStyle style) {
  if (style.live) return list ? PlayTimer::ListSoundOnly : PlayTimer::LoopSoundOnly;
  if (style.playMode) return list ? PlayTimer::ListOnFingerboard : PlayTimer::LoopOnFingerboard;
  return list ? PlayTimer::ListFollowingStaff : PlayTimer::LoopFollowingStaff;
}

void StartPiece(PlaybackState& state, const PlaybackEnv& env) {
  state.events = BuildEventList(env.staff.notes, env.tempoFactor, env.gate);
  state.startT = env.clock.Microseconds();
  state.cursor = 1;
  state.lastEvent = static_cast<int>(state.events.size()) - 1;
}

bool PlaybackTick(PlaybackState& state, PlayTimer timer, const PlaybackEnv& env) {
  if (!state.Running(timer)) return false;
  const int i = state.cursor;
  bool carried = false;
  if (i >= 1 && i <= state.lastEvent && i < static_cast<int>(state.events.size())) {
    const PlayEvent& e = state.events[i];
    if (e.time * env.tempoFactor > env.clock.Microseconds() - state.startT) return false;
    switch (timer) {
      case PlayTimer::LoopSoundOnly:
      case PlayTimer::ListSoundOnly:
        SoundOnly(e, env);
        break;
      case PlayTimer::LoopOnFingerboard:
      case PlayTimer::ListOnFingerboard:
        PlayAndShow(env.sound, env.tuning, env.handPosition, e.pitch, e.velocity);
        break;
      case PlayTimer::LoopFollowingStaff:
      case PlayTimer::ListFollowingStaff:
        if (!FollowOnStaff(state, i, timer == PlayTimer::LoopFollowingStaff, env)) {
          // This timer would meet the same gap at every tick: it stops too.
          StopOnMissingNote(state);
          Run(state, timer, false);
          return false;
        }
        break;
    }
    state.cursor = i + 1;
    carried = true;
  }
  if (state.cursor > state.lastEvent) EndOfPiece(state, timer, carried ? i : 0, env);
  if (timer == PlayTimer::LoopFollowingStaff) env.view.RefreshStaff();
  return carried;
}

double MicrosecondsUntilDue(const PlaybackState& state, const PlaybackEnv& env) {
  const int i = state.cursor;
  if (i < 1 || i > state.lastEvent || i >= static_cast<int>(state.events.size())) return 0;
  const double wait = state.events[i].time * env.tempoFactor - (env.clock.Microseconds() - state.startT);
  return wait > 0 ? wait : 0;
}

bool TransportMouseDown(PlaybackState& state, int index, PlayStyle style, const PlaybackEnv& env) {
  Modes& modes = env.modes;
  if (modes.loading) return false;
  switch (index) {
    case 0:
      // Whatever notes the staff holds are played, however they came there.
      if (!env.staff.Exists(1) || modes.playing) return false;
      state.listEnabled = false;
      ScrollTo(env.staff, 0);
      modes.playing = true;
      state.playingLabel = true;
      state.buttonPicture[0] = kTransportPictures[0].down;
      StartPiece(state, env);
      Run(state, TimerFor(false, style), true);
      return true;
    case 2:
      if (env.list.Rows() < 2 || modes.listPlaying) return false;
      state.listEnabled = false;
      ScrollTo(env.staff, 0);
      modes.listPlaying = true;
      state.buttonPicture[2] = kTransportPictures[2].down;
      modes.loading = true;
      env.list.SetNotes();
      StartPiece(state, env);
      modes.loading = false;
      state.playingLabel = true;
      Run(state, TimerFor(true, style), true);
      return true;
    case 1:
      Stop(state, style, env);
      return true;
    default:
      return false;
  }
}

void TransportMouseUp(PlaybackState& state, int index) {
  if (index >= 0 && index < kTransportButtons) state.buttonPicture[index] = kTransportPictures[index].up;
}

void TransportMouseEnter(PlaybackState& state, int index) {
  if (index >= 0 && index < kTransportButtons) state.buttonPicture[index] = kTransportPictures[index].down;
}

void TransportMouseExit(PlaybackState& state, int index, const Modes& modes) {
  if (index < 0 || index >= kTransportButtons) return;
  if ((index == 0 && modes.playing) || (index == 2 && modes.listPlaying)) return;
  state.buttonPicture[index] = kTransportPictures[index].up;
}

}  // namespace lirenza
