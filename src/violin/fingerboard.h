#pragma once
// The drawn violin as the left hand: where the strings and finger cells lie, what a
// click on them plays and enters, and where a finger and a vibrating string are drawn.
// The picture itself is the window's; this holds the numbers it draws by.
#include <array>
#include <string_view>

#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "ports/ports.h"

namespace lirenza {

inline constexpr int kMouseVelocity = 80;   // softer than the keyboard's 100
inline constexpr int kFirstUndrawnCell = 17;
// A column this far right is off the visible staff: the view pages on by kPageStep.
inline constexpr int kPageColumn = 984;
inline constexpr int kPageStep = 840;
inline constexpr int kColumnAfterPage = 280;

// x of finger cell n in the fingerboard canvas is field n + 1: 25 pixels a semitone
// all the way up.
extern const std::string_view kCellPositions;

// String row of a click: (y - 174) / 11 truncated, 1 (E) to 4 (G); 0 above or below
// the strings.
int StringRow(int y);
// Finger cell of a click. The bands leave out 360 to 385, which gives cell 0 like any x
// in no band, and the bands after it go on counting as if it were not there.
int CellOfX(int x);
// Pitch index of a string and cell: the open string plus one semitone a cell.
int FingerboardPitch(int string, int cell);

// How a clicked pitch goes into the score: a black key is spelled as a flat of the
// key above with Option down, otherwise as a sharp of the key below.
struct Spelling {
  int index = 0;
  int accidental = 0;  // 0 none, 1 sharp, 2 flat
};
Spelling SpellForScore(int index, bool option);

// Where a note on a string is drawn. The finger's 15 x 15 square is also what a note
// off wipes, open string or not; the vibrating string runs from behind the finger to
// the bridge.
struct Rect {
  int x = 0, y = 0, width = 0, height = 0;
  bool operator==(const Rect&) const = default;
};
struct HandGeometry {
  bool drawn = false;      // cells past 16 (and nonsense) are not drawn at all
  bool fingertip = false;  // an open string has no finger
  Rect finger;             // Yubi on, the clean square off
  Rect string;             // GenS on, Gen off, scaled to this rectangle
};
HandGeometry HandGeometryAt(int string, int cell);

// The press of the mouse on the fingerboard, x and y in the canvas. When handled, the
// caller enters `index` with `accidental` into the score.
struct MouseDownResult {
  bool handled = false;
  int index = 0;
  int accidental = 0;
};
using FingerPress = std::array<int, 3>;  // sounding pitch index, string, cell of the press

MouseDownResult FingerboardMouseDown(int x, int y, const Modifiers& mods, const Modes& modes, Staff& staff,
                                     FingerPress& press, const TuningTables& tuning, const SoundPorts& ports);
// Ends what the press started, wherever the pointer is now.
void FingerboardMouseUp(const FingerPress& press, const TuningTables& tuning, const SoundPorts& ports);

}  // namespace lirenza
