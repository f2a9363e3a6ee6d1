#include "violin/key_push.h"
#include "violin/fingerboard.h"

#include <charconv>

namespace lirenza {

const std::string_view kCellPositions =
    "90,115,140,165,190,215,240,265,290,315,340,365,390,415,440,465,490,515,540,565";

namespace {

constexpr int kOpenPitch[5] = {0, 76, 69, 62, 55};

// Field n (from 1) of the cell list, or -1 when there is none.
int CellPositionField(int n) {
  std::string_view rest = kCellPositions;
  for (int k = 1; k < n; ++k) {
    const auto comma = rest.find(',');
    if (comma == std::string_view::npos) return -1;
    rest.remove_prefix(comma + 1);
  }
  int value = -1;
  std::from_chars(rest.data(), rest.data() + rest.size(), value);
  return value;
}

}  // namespace

int StringRow(int y) {
  const int row = static_cast<int>((y - 174) / 11.0);
  return row >= 1 && row <= 4 ? row : 0;
}

int CellOfX(int x) {
  if (x >= 90 && x < 110) return 0;
  if (x >= 110 && x < 360) return (x - 110) / 25 + 1;
  if (x >= 385 && x < 585) return (x - 385) / 25 + 11;
  return 0;
}

int FingerboardPitch(int string, int cell) {
  return string >= 1 && string <= 4 ? kOpenPitch[string] + cell : 0;
}

Spelling SpellForScore(int index, bool option) {
  switch (((index % 12) + 12) % 12) {
    case 1: case 3: case 6: case 8: case 10:
      return option ? Spelling{index + 1, 2} : Spelling{index - 1, 1};
    default:
      return {index, 0};
  }
}

HandGeometry HandGeometryAt(int string, int cell) {
  if (cell < 0 || cell >= kFirstUndrawnCell || string < 1 || string > 4) return {};
  const int x = CellPositionField(cell + 1);
  HandGeometry g;
  g.drawn = true;
  g.fingertip = cell != 0;
  g.finger = {x, 11 * string + 174, 15, 15};
  g.string = {x + 14, 11 * string + 179, 620 - x, 3};
  return g;
}

MouseDownResult FingerboardMouseDown(int x, int y, const Modifiers& mods, const Modes& modes, Staff& staff,
                                     FingerPress& press, const TuningTables& tuning, const SoundPorts& ports) {
  if (modes.playing || modes.listPlaying) return {};
  // The note about to be entered would fall right of the staff: turn the page first,
  // even when the click then misses the strings.
  if (staff.entryLeft >= kPageColumn) {
    ScrollTo(staff, staff.scrollValue + kPageStep);
    staff.entryLeft = kColumnAfterPage;
  }
  const int row = StringRow(y);
  if (row == 0) return {};
  const int cell = CellOfX(x);
  const int index = FingerboardPitch(row, cell);
  PlayIndex(ports, kLivePlayer, tuning, index, kMouseVelocity);
  if (ports.view) ports.view->ShowFinger(row, cell);
  press = {index, row, cell};
  const Spelling s = SpellForScore(index, mods.option);
  return {true, s.index, s.accidental};
}

void FingerboardMouseUp(const FingerPress& press, const TuningTables& tuning, const SoundPorts& ports) {
  const int index = press[0];
  PlayIndex(ports, kLivePlayer, tuning, index, 0);
  if (ports.view) ports.view->HideFinger(press[1], press[2]);
}

}  // namespace lirenza
