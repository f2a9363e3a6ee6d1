#include "violin/key_table.h"

namespace lirenza {

// Lower row X..Return and upper row Y..Return make one chromatic run from G3 to C6.
// Left Shift and Y both play C5, each with its own flag. The three place columns are
// the 1st, 3rd and 5th hand positions.
const std::array<KeyRow, kKeyRows> kKeyTable{{
    {7, "X", 2, 55, {{{4, 0}, {4, 0}, {4, 0}}}},
    {2, "D", 16, 56, {{{4, 1}, {4, 1}, {4, 1}}}},
    {8, "C", 3, 57, {{{4, 2}, {4, 2}, {4, 2}}}},
    {3, "F", 17, 58, {{{4, 3}, {4, 3}, {4, 3}}}},
    {9, "V", 4, 59, {{{4, 4}, {4, 4}, {4, 4}}}},
    {11, "B", 5, 60, {{{4, 5}, {4, 5}, {4, 5}}}},
    {4, "H", 19, 61, {{{4, 6}, {4, 6}, {4, 6}}}},
    {45, "N", 6, 62, {{{3, 0}, {4, 7}, {4, 7}}}},
    {38, "J", 20, 63, {{{3, 1}, {4, 8}, {4, 8}}}},
    {46, "M", 7, 64, {{{3, 2}, {4, 9}, {4, 9}}}},
    {43, ",", 8, 65, {{{3, 3}, {4, 10}, {4, 10}}}},
    {37, "L", 22, 66, {{{3, 4}, {4, 11}, {4, 11}}}},
    {47, ".", 9, 67, {{{3, 5}, {3, 5}, {4, 12}}}},
    {41, ";", 23, 68, {{{3, 6}, {3, 6}, {4, 13}}}},
    {44, "/", 10, 69, {{{2, 0}, {3, 7}, {4, 14}}}},
    {39, "'", 24, 70, {{{2, 1}, {3, 8}, {4, 15}}}},
    {94, "_", 11, 71, {{{2, 2}, {3, 9}, {3, 9}}}},
    {56, "left Shift", 12, 72, {{{2, 3}, {3, 10}, {3, 10}}}},
    {16, "Y", 32, 72, {{{2, 3}, {3, 10}, {3, 10}}}},
    {26, "7", 46, 73, {{{2, 4}, {3, 11}, {3, 11}}}},
    {32, "U", 33, 74, {{{2, 5}, {2, 5}, {3, 12}}}},
    {28, "8", 47, 75, {{{2, 6}, {2, 6}, {3, 13}}}},
    {34, "I", 34, 76, {{{1, 0}, {2, 7}, {3, 14}}}},
    {31, "O", 35, 77, {{{1, 1}, {2, 8}, {2, 8}}}},
    {29, "0", 49, 78, {{{1, 2}, {2, 9}, {2, 9}}}},
    {35, "P", 36, 79, {{{1, 3}, {2, 10}, {2, 10}}}},
    {27, "-", 50, 80, {{{1, 4}, {2, 11}, {2, 11}}}},
    {33, "[", 37, 81, {{{1, 5}, {1, 5}, {2, 12}}}},
    {24, "=", 51, 82, {{{1, 6}, {1, 6}, {2, 13}}}},
    {30, "]", 38, 83, {{{1, 7}, {1, 7}, {2, 14}}}},
    {36, "Return", 39, 84, {{{1, 8}, {1, 8}, {1, 8}}}},
}};

bool KeyboardHand::AnyPressed() const {
  for (bool pressed : flag)
    if (pressed) return true;
  return false;
}

namespace {

void Release(KeyboardHand& hand, int flagIndex, const SoundPorts& ports) {
  const StringCell drawn = hand.drawnAt[flagIndex];
  if (ports.view) ports.view->HideFinger(drawn.string, drawn.cell);
  if (NotePlayer* live = ports.players[kLivePlayer]) live->PlayNote(hand.pitchStarted[flagIndex], 0);
  hand.flag[flagIndex] = false;
}

}  // namespace

bool PollingPass(const KeyState& keys, KeyboardHand& hand, int position, const TuningTables& tuning,
                 const SoundPorts& ports) {
  if (position < 0 || position > 2) return false;
  for (const KeyRow& row : kKeyTable) {
    const bool down = keys.AsyncKeyDown(row.code);
    if (down == hand.flag[row.flagIndex]) continue;
    if (!down) {
      Release(hand, row.flagIndex, ports);
      return true;
    }
    // The picture comes first, then the sound: the finger is on the string as the
    // note starts.
    const StringCell sc = row.place[position];
    if (ports.view) ports.view->ShowFinger(sc.string, sc.cell);
    const int pitch = static_cast<int>(tuning.pitches[row.pitchIndex]);
    if (NotePlayer* live = ports.players[kLivePlayer]) live->PlayNote(pitch, kKeyVelocity);
    hand.flag[row.flagIndex] = true;
    hand.pitchStarted[row.flagIndex] = pitch;
    hand.drawnAt[row.flagIndex] = sc;
    return true;
  }
  return false;
}

bool PollRunningTimers(const PositionState& positions, const KeyState& keys, KeyboardHand& hand,
                       const TuningTables& tuning, const SoundPorts& ports) {
  bool acted = false;
  for (int position = 0; position < 3; ++position)
    if (positions.timerMode[position] != 0 && PollingPass(keys, hand, position, tuning, ports)) acted = true;
  return acted;
}

void ReleasePressedKeys(KeyboardHand& hand, const SoundPorts& ports) {
  for (const KeyRow& row : kKeyTable)
    if (hand.flag[row.flagIndex]) Release(hand, row.flagIndex, ports);
}

int ChoosePosition(PositionState& state, int button, const Modes& modes) {
  if (modes.Busy() || button < 0 || button > 2) return state.handPosition;
  state.timerMode = {0, 0, 0};
  state.timerMode[button] = 2;
  state.handPosition = button;
  return button;
}

void ChooseKeyboardMode(PositionState& state, int modeButton) { state.timerMode[0] = modeButton == 1 ? 2 : 0; }

void PanicSweep(const TuningTables& tuning, const SoundPorts& ports) {
  for (int i = 1; i <= 127; ++i)
    for (NotePlayer* player : ports.players)
      if (player) player->PlayNote(static_cast<int>(tuning.pitches[i]), 0);
  if (ports.view) ports.view->ShowCleanViolin();
}

KeyDownAction WindowKeyAction(int charCode) {
  switch (charCode) {
    case 13: return {true, -1, 0};
    case 30: return {false, 0, +1};
    case 31: return {false, 0, -1};
    case 29: return {false, 1, +1};
    case 28: return {false, 1, -1};
    default: return {};
  }
}

}  // namespace lirenza
