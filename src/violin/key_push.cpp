#include "violin/key_push.h"

namespace lirenza {

namespace {
// Lowest pitch index of strings 4, 3, 2, 1 in each position.
constexpr int kStringStarts[3][4] = {{55, 62, 69, 76}, {55, 67, 74, 81}, {55, 71, 77, 84}};
constexpr int kOpenPitch[5] = {0, 76, 69, 62, 55};
}  // namespace

StringCell PositionOf(int index, int pFlag) {
  if (index < 55 || index > 91 || pFlag < 0 || pFlag > 2) return {};
  int string = 4;
  for (int k = 3; k >= 1; --k)
    if (index >= kStringStarts[pFlag][k]) {
      string = 4 - k;
      break;
    }
  return {string, index - kOpenPitch[string]};
}

void KeyPush(const SoundPorts& ports, const TuningTables& tuning, int pFlag, int index, int velocity) {
  if (ports.np[1] && index >= 0 && index < kPitchTableSize)
    ports.np[1]->PlayNote(static_cast<int>(tuning.p[index]), velocity);
  const StringCell sc = PositionOf(index, pFlag);
  if (sc.string == 0 || !ports.view) return;
  if (velocity != 0) ports.view->LHandG(sc.string, sc.cell);
  else ports.view->LHandGF(sc.string, sc.cell);
}

}  // namespace lirenza
