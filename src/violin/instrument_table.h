#pragma once
// The instrument menus: 17 groups of General MIDI and GS sounds with their Japanese
// names, the separator at menu index 16 and the drum kits at 17. An instrument number
// is bank × 128 + program; the drum kits start at 16385 (bank 128).
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace lirenza {

struct InstrumentGroup {
  int menuIndex;
  std::string_view name;
  std::string_view numbers;  // comma list: field row + 1 is the number of row `row`
  std::vector<std::string_view> names;
};

inline constexpr int kInstrumentGroupMenuItems = 18;  // 16 groups, separator, drum kits
inline constexpr int kInstrumentSeparator = 16;
inline constexpr int kViolin = 41;
inline constexpr int kInstrumentCount = 235;

// The 17 groups in menu order (the separator has no entry).
const std::vector<InstrumentGroup>& InstrumentGroups();
// The group at an index of the group menu; null for the separator or outside the menu.
const InstrumentGroup* InstrumentGroupAt(int menuIndex);

// What choosing a group does: the group's numbers become groupNumbers, its first number
// the instrument, and its names the rows of the instrument menu.
struct GroupChoice {
  int instrument = 0;
  std::string groupNumbers;
  std::string caption;
  std::vector<std::string_view> rows;
};
GroupChoice ChooseInstrumentGroup(int menuIndex);
// The instrument of a row of the current group; 0 when the row has no number.
int ChooseInstrument(std::string_view groupNumbers, int row);

// The instrument a score's stored menu values name; the violin when they name none.
int InstrumentFromMenus(int group, int row);

// Bank and program a number selects on a synthesizer: bank (n - 1) / 128, program
// (n - 1) mod 128. Drum kits come out as bank 128.
struct BankProgram {
  int bank;
  int program;
};
BankProgram BankProgramOf(int inst);

// Every instrument of the menus in menu order, with its place.
struct InstrumentEntry {
  int group;
  int row;
  int number;
  std::string_view name;
  std::string_view groupName;
};
std::vector<InstrumentEntry> AllInstruments();

}  // namespace lirenza
