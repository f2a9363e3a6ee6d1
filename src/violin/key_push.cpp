#include "violin/key_push.h"

#include "violin/fingerboard.h"

namespace lirenza {

namespace {
// Lowest pitch index of strings 4, 3, 2, 1 in each position.
constexpr int kStringStarts[3][4] = {{55, 62, 69, 76}, {55, 67, 74, 81}, {55, 71, 77, 84}};
}  // namespace

StringCell PositionOf(int index, int handPosition) {
  if (index < 55 || index > 91 || handPosition < 0 || handPosition > 2) return {};
  int string = 4;
  for (int k = 3; k >= 1; --k)
    if (index >= kStringStarts[handPosition][k]) {
      string = 4 - k;
      break;
    }
  return {string, index - FingerboardPitch(string, 0)};
}

void PlayIndex(const SoundPorts& ports, int player, const TuningTables& tuning, int index, int velocity) {
  if (player < 0 || player >= kNotePlayers || !ports.players[player] || index < 0 || index >= kPitchTableSize) return;
  ports.players[player]->PlayNote(static_cast<int>(tuning.pitches[index]), velocity);
}

void PlayAndShow(const SoundPorts& ports, const TuningTables& tuning, int handPosition, int index, int velocity) {
  PlayIndex(ports, kScorePlayer, tuning, index, velocity);
  const StringCell sc = PositionOf(index, handPosition);
  if (sc.string == 0 || !ports.view) return;
  if (velocity != 0) ports.view->ShowFinger(sc.string, sc.cell);
  else ports.view->HideFinger(sc.string, sc.cell);
}

}  // namespace lirenza
