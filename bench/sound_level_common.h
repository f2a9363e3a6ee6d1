#pragma once
// Renders a score into memory the way `lirenza-cli render` does and reports its peak.
#include <cmath>
#include <string>
#include <vector>

#include "platform/score_renderer.h"
#include "platform/sound_fonts.h"
#include "platform/synth.h"
#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/event_list.h"
#include "violin/tempo_table.h"

namespace lirenza::bench {

inline double Db(double amplitude) { return amplitude > 0 ? 20 * std::log10(amplitude) : -200.0; }

struct LevelRender {
  double peakDb = -200;
  double limitedDb = 0;
};

// `options` and `limit` choose between the program's own level (the defaults) and the
// raw synthesizer the level table is measured on.
inline LevelRender RenderLevel(const std::string& line, int instrument, const SynthOptions& options, bool limit,
                               const std::vector<std::string>& fonts) {
  Synth synth(options);
  std::string error;
  if (!synth.LoadFonts(fonts, &error)) return {};
  Staff staff;
  LoadKestraLine(staff, line);
  RenderJob job = RenderJobFor(staff, TempoForSlider(kTempoSliderStart).tempoFactor, 0.95);
  job.limitPeaks = limit;
  synth.SelectInstrument(job.channel, instrument);
  const RenderResult r = RenderEvents(synth, job, [](const float*, int) { return true; });
  return {Db(r.peak), r.limitedDb};
}

}  // namespace lirenza::bench
