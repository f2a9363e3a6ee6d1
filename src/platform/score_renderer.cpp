#include "platform/score_renderer.h"

#include <algorithm>
#include <cmath>

namespace lirenza {

namespace {
constexpr int kChunk = 64 * kSynthBlock;  // 4096 frames
}

RenderJob RenderJobFor(const Staff& staff, double tempoFactor, double gate) {
  RenderJob job;
  job.tempoFactor = tempoFactor;
  job.events = BuildEventList(staff.notes, tempoFactor, gate);
  TuningTables tables;
  TuneToKey(tables, staff.keySignature);
  job.pitches = tables.pitches;
  return job;
}

long long EventFrame(double timeMicroseconds, double tempoFactor, double sampleRate) {
  const double frame = timeMicroseconds * tempoFactor * sampleRate / 1e6;
  return std::max(0LL, std::llround(frame / kSynthBlock) * kSynthBlock);
}

RenderResult RenderEvents(Synth& synth, const RenderJob& job, const FrameSink& finalSink,
                          const RenderProgress& progress) {
  RenderResult result;
  PeakLimiter limiter(kCeilingDb, synth.SampleRate());
  std::vector<float> limited;
  auto deliver = [&](const float* frames, int n) {
    for (int i = 0; i < 2 * n; ++i) result.peak = std::max(result.peak, std::fabs(frames[i]));
    return n == 0 || finalSink(frames, n);
  };
  // The limiter hands back as many frames as it takes, a look-ahead later; the last
  // ones come out of Flush, so the sound keeps its length and its timing.
  auto sink = [&](const float* frames, int n) {
    if (!job.limitPeaks) return deliver(frames, n);
    limiter.Process(frames, n, &limited);
    return deliver(limited.data(), static_cast<int>(limited.size() / 2));
  };
  const double rate = synth.SampleRate();
  std::vector<float> buffer(2 * kChunk);
  const long long lastFrame =
      job.events.size() > 1 ? EventFrame(job.events.back().time, job.tempoFactor, rate) : 0;
  result.lastEventFrame = lastFrame;
  const double expected = static_cast<double>(lastFrame) + rate;  // a second of tail, roughly
  long long pos = 0;
  int lastPercent = -1;

  // Renders whole blocks up to `until`, so the synthesizer's block grid stays on ours.
  auto renderTo = [&](long long until) {
    if (result.stopped) return false;
    while (pos < until) {
      const int n = static_cast<int>(std::min<long long>(kChunk, until - pos));
      synth.Render(buffer.data(), n);
      pos += n;
      if (!sink(buffer.data(), n)) {
        result.stopped = true;
        return false;
      }
      if (progress) {
        const int percent = static_cast<int>(std::min(1.0, pos / expected) * 100);
        if (percent != lastPercent) progress(percent / 100.0);
        lastPercent = percent;
      }
    }
    return true;
  };

  for (std::size_t i = 1; i < job.events.size(); ++i) {
    const PlayEvent& e = job.events[i];
    if (!renderTo(EventFrame(e.time, job.tempoFactor, rate))) break;
    const int pitch = (e.pitch >= 0 && e.pitch < kPitchTableSize) ? static_cast<int>(job.pitches[e.pitch]) : 0;
    synth.PlayNote(job.channel, pitch, e.velocity);
  }
  if (!result.stopped) {
    const long long tailEnd = pos + static_cast<long long>(job.maxTailSeconds * rate);
    while (synth.ActiveVoices() > 0 && pos < tailEnd)
      if (!renderTo(std::min(tailEnd, pos + kChunk))) break;
    renderTo((pos + static_cast<long long>(job.afterSeconds * rate)) / kSynthBlock * kSynthBlock);
  }
  if (job.limitPeaks && !result.stopped) {
    limiter.Flush(&limited);
    if (!deliver(limited.data(), static_cast<int>(limited.size() / 2))) result.stopped = true;
    result.limitedDb = limiter.LargestReductionDb();
  }
  if (progress && !result.stopped) progress(1.0);
  result.frames = pos;
  return result;
}

}  // namespace lirenza
