#pragma once
// PlayAndShow: sound a pitch index on the score's player and show it on the fingerboard in
// the present hand position. Playback, the Stop sweep and hovering over notes use it.
#include "tuning/pure_scale.h"
#include "ports/ports.h"

namespace lirenza {

struct StringCell {
  int string = 0;  // 1 E, 2 A, 3 D, 4 G
  int cell = 0;    // semitones above the open string
};

// Where pitch index 55..91 is played in hand position handPosition (0 first, 1 third, 2 fifth);
// string 0 outside that range.
StringCell PositionOf(int index, int handPosition);

// Sounds pitch index `index` on one player at the pitch the tuning gives it; velocity 0
// ends it. An index outside the table, or no player, sounds nothing.
void PlayIndex(const SoundPorts& ports, int player, const TuningTables& tuning, int index, int velocity);

void PlayAndShow(const SoundPorts& ports, const TuningTables& tuning, int handPosition, int index, int velocity);

}  // namespace lirenza
