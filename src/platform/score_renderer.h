#pragma once
// Renders what playback sounds, faster than real time: the event list stepped against
// a clock made of samples instead of a timer. Event i sounds at its time × the tempo
// factor (the list was built at that factor and playback compares time × factor with
// the clock, so the factor counts twice), with the pitch the table gives its index, on
// the score's player.
#include <array>
#include <functional>
#include <vector>

#include "platform/synth.h"
#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/event_list.h"

namespace lirenza {

// FluidSynth starts a note on the boundary of its 64-frame blocks.
inline constexpr int kSynthBlock = 64;

struct RenderJob {
  std::vector<PlayEvent> events;  // element 0 is the blank
  double tempoFactor = 1.0;
  std::array<long long, kPitchTableSize> pitches{};  // pitch (1/256 semitone) of each index
  int channel = kScorePlayer;
  double maxTailSeconds = 6.0;   // after the last event, while voices still ring
  double afterSeconds = 0.3;     // then room for the reverb to fade
  bool limitPeaks = true;        // hold peaks under kCeilingDb (a sound file must not clip)
};

struct RenderResult {
  long long frames = 0;
  long long lastEventFrame = 0;
  bool stopped = false;  // the sink asked to stop
  float peak = 0;        // the largest sample handed to the sink
  double limitedDb = 0;  // the most the limiter took off a peak (0: it never acted)
};

// Interleaved stereo frames; return false to stop.
using FrameSink = std::function<bool(const float* interleaved, int frames)>;
using RenderProgress = std::function<void(double fraction)>;

// What the score player sounds for a staff: its events at this tempo factor and gate,
// tuned to the staff's key.
RenderJob RenderJobFor(const Staff& staff, double tempoFactor, double gate);

RenderResult RenderEvents(Synth& synth, const RenderJob& job, const FrameSink& sink,
                          const RenderProgress& progress = {});

// The frame an event starts on: time × tempo factor, moved to the nearest block
// boundary, so a note is never more than half a block (0.73 ms at 44.1 kHz) early or late.
long long EventFrame(double timeMicroseconds, double tempoFactor, double sampleRate);

}  // namespace lirenza
