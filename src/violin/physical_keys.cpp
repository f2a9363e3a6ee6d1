#include "violin/physical_keys.h"

#include <utility>

namespace lirenza {
namespace {

// {evdev, Macintosh} for every key of the main block the two keyboards share,
// the JIS keys and the arrows. Keys with two evdev codes on some keyboards (the
// ISO key left of Z, the JIS yen) are listed by the code the kernel gives them.
constexpr std::pair<int, int> kPairs[] = {
    // Digits row.
    {41, 50},   // ` (the key left of 1; 半角/全角 on JIS)
    {2, 18}, {3, 19}, {4, 20}, {5, 21}, {6, 23}, {7, 22}, {8, 26}, {9, 28}, {10, 25}, {11, 29},
    {12, 27},   // -
    {13, 24},   // =
    {124, 93},  // JIS yen, right of ^
    {14, 51},   // Backspace (the Macintosh Delete)
    // Upper letter row.
    {15, 48},   // Tab
    {16, 12}, {17, 13}, {18, 14}, {19, 15}, {20, 17}, {21, 16}, {22, 32}, {23, 34}, {24, 31}, {25, 35},
    {26, 33},   // [
    {27, 30},   // ]
    {28, 36},   // Return
    // Home row.
    {30, 0}, {31, 1}, {32, 2}, {33, 3}, {34, 5}, {35, 4}, {36, 38}, {37, 40}, {38, 37},
    {39, 41},   // ;
    {40, 39},   // '
    {43, 42},   // backslash (] on JIS, beside Return)
    // Lower letter row.
    {42, 56},   // left Shift
    {86, 10},   // the ISO key left of Z
    {44, 6}, {45, 7}, {46, 8}, {47, 9}, {48, 11}, {49, 45}, {50, 46},
    {51, 43},   // ,
    {52, 47},   // .
    {53, 44},   // /
    {89, 94},   // JIS ろ, right of /
    {54, 60},   // right Shift
    // Space and the keys around it.
    {57, 49},   // Space
    {1, 53},    // Escape
    {29, 59},   // left Control
    {56, 58},   // left Alt (Option)
    {100, 61},  // right Alt
    // Arrows.
    {105, 123}, {106, 124}, {108, 125}, {103, 126},
};

}  // namespace

int MacKeyCodeOfEvdev(int evdevCode) {
  for (auto [evdev, mac] : kPairs)
    if (evdev == evdevCode) return mac;
  return kNoKey;
}

int EvdevOfMacKeyCode(int macCode) {
  for (auto [evdev, mac] : kPairs)
    if (mac == macCode) return evdev;
  return kNoKey;
}

bool HeldKeys::Set(int evdevCode, bool down) {
  const int mac = MacKeyCodeOfEvdev(evdevCode);
  if (mac < 0 || mac >= kMacKeyCodes || held_.test(static_cast<std::size_t>(mac)) == down) return false;
  held_.set(static_cast<std::size_t>(mac), down);
  return true;
}

}  // namespace lirenza
