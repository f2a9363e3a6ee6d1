#pragma once
// Score playback: the notes on the staff become a time-ordered list of note-on and
// note-off events, stepped by a timer against the microsecond clock. A tick carries
// out one event at most, so a late tick plays late without shifting what follows,
// and a run of overdue events comes one a tick.
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/event_list.h"
#include "ports/ports.h"

namespace lirenza {

// The six playback timers: what is played (this score over and over, or the score
// list in turn) times how it is shown (sound only; sound and fingerboard; and also
// following the notes on the staff).
enum class PlayTimer { LoopSoundOnly, LoopOnFingerboard, LoopFollowingStaff, ListSoundOnly, ListOnFingerboard, ListFollowingStaff };
inline constexpr int kPlayTimers = 6;

// The notes on the staff, as playback refreshes them on screen.
class StaffDisplay {
 public:
  virtual ~StaffDisplay() = default;
  virtual void RefreshNote(int index) = 0;  // one note of notes, to show its highlight
  virtual void RefreshStaff() = 0;          // the whole staff canvas
};

// The score list beside the staff, which List plays row after row.
class ScoreList {
 public:
  virtual ~ScoreList() = default;
  virtual int Rows() const = 0;
  virtual int SelectedRow() const = 0;
  virtual void Select(int row) = 0;
  // Loads the score of the selected row onto the staff.
  virtual void SetNotes() = 0;
};

// What playback works on. tempoFactor (the tempo row's d, larger is slower) and
// gate are read where they are used: moving the tempo
// slider mid-piece moves every event still to come.
struct PlaybackEnv {
  Staff& staff;
  Modes& modes;
  const TuningTables& tuning;
  const int& handPosition;
  const double& tempoFactor;
  const double& gate;
  const Clock& clock;
  SoundPorts sound;
  StaffDisplay& view;
  ScoreList& list;
};

// The two radio groups that pick the timer: live (sound only) or manual, and in
// manual, edit mode (follow the staff) or play mode.
struct PlayStyle {
  bool live = false;
  bool playMode = false;
};
PlayTimer TimerFor(bool list, PlayStyle style);

inline constexpr int kTransportButtons = 7;
struct ButtonPictures {
  std::string_view up;
  std::string_view down;
};
extern const std::array<ButtonPictures, kTransportButtons> kTransportPictures;

struct PlaybackState {
  std::vector<PlayEvent> events{PlayEvent{}};  // element 0 is a blank, never played
  int cursor = 1;                              // the next event to carry out
  int lastEvent = 0;                           // index of the last event
  double startT = 0;                           // clock at the start of the piece
  std::array<bool, kPlayTimers> running{};
  // What the window shows of the transport.
  std::array<std::string, kTransportButtons> buttonPicture = UpPictures();
  bool playingLabel = false;  // the label that says a score is playing
  bool listEnabled = true;    // the score list accepts choices

  bool Running(PlayTimer t) const { return running[static_cast<int>(t)]; }
  bool AnyRunning() const;
  static std::array<std::string, kTransportButtons> UpPictures();
};

// Builds the event list from the staff and starts the clock at the first event.
void StartPiece(PlaybackState& state, const PlaybackEnv& env);

// One tick of a running timer. Returns true when it carried out an event.
bool PlaybackTick(PlaybackState& state, PlayTimer timer, const PlaybackEnv& env);

// How long the window's timer may sleep before the event at the cursor is due; 0 when
// it is due now (or the piece is over and its end is due).
double MicrosecondsUntilDue(const PlaybackState& state, const PlaybackEnv& env);

// The transport buttons: 0 Play, 1 Stop, 2 List. Returns whether the press acted (the
// window then delivers the mouse-up); buttons 3 to 6 are the MIDI ones, not handled here.
bool TransportMouseDown(PlaybackState& state, int index, PlayStyle style, const PlaybackEnv& env);
void TransportMouseUp(PlaybackState& state, int index);
void TransportMouseEnter(PlaybackState& state, int index);
// The button that is running keeps its pressed look when the pointer leaves.
void TransportMouseExit(PlaybackState& state, int index, const Modes& modes);

}  // namespace lirenza
