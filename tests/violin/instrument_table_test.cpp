// The instrument menus: the numbers the players get must be the sound set's, row for
// row, or a user choosing "バイオリン" hears something else.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "violin/instrument_table.h"

using namespace lirenza;

namespace {

// Preset names of bank 0 by program, from a SoundFont's "phdr" records (the first
// sub-chunk of its "pdta" list): the sound the synthesizer really plays for a number.
std::map<int, std::string> GeneralMidiPresets(const std::string& path) {
  std::map<int, std::string> presets;
  std::ifstream in(path, std::ios::binary);
  char id[5] = {};
  std::uint32_t size = 0;  // little-endian, as on the host
  auto header = [&] { return bool(in.read(id, 4).read(reinterpret_cast<char*>(&size), 4)); };
  for (in.seekg(12); header();) {
    if (std::string(id) != "LIST") {
      in.seekg(size + (size & 1), std::ios::cur);
    } else if (in.read(id, 4); std::string(id) == "pdta") {
      break;
    } else {
      in.seekg(size - 4, std::ios::cur);
    }
  }
  if (!in || !header() || std::string(id) != "phdr") return presets;
  std::vector<unsigned char> data(size);
  in.read(reinterpret_cast<char*>(data.data()), size);
  for (std::size_t at = 0; at + 38 <= data.size(); at += 38) {
    const char* name = reinterpret_cast<const char*>(&data[at]);
    if ((data[at + 22] | data[at + 23] << 8) == 0) presets[data[at + 20] | data[at + 21] << 8] = std::string(name, strnlen(name, 20));
  }
  return presets;
}

}  // namespace

// A word of the preset's English name, where it is one of the words below, must show in
// the menu's name of the General MIDI row that plays it.
TEST(InstrumentTable, GeneralMidiNamesMatchTheSoundTheyPlay) {
  const std::string path = "/usr/share/sounds/sf2/FluidR3_GM.sf2";
  const auto presets = GeneralMidiPresets(path);
  if (presets.empty()) GTEST_SKIP() << path << " is not installed";
  const std::multimap<std::string, std::string> words = {
      {"piano", "ピアノ"}, {"organ", "オルガン"}, {"guitar", "ギター"}, {"bass", "ベース"}, {"bass", "バス"}, {"bass", "ペース"},
      {"violin", "バイオリン"}, {"viola", "ビオラ"}, {"cello", "チェロ"}, {"harp", "ハープ"}, {"trumpet", "トランペット"},
      {"trombone", "トロンボーン"}, {"horn", "ホルン"}, {"sax", "サックス"}, {"oboe", "オーボエ"}, {"flute", "フルート"},
      {"clarinet", "クラリネット"}, {"marimba", "マリンバ"}, {"xylophone", "シロフォン"}, {"synth", "シンセ"},
      {"harpsichord", "チェンバロ"}, {"sitar", "シタール"}, {"pad", "パッド"}, {"lead", "リード"}};
  int checked = 0;
  for (const InstrumentEntry& e : AllInstruments()) {
    const BankProgram bp = BankProgramOf(e.number);
    if (bp.bank != 0) continue;
    ASSERT_TRUE(presets.count(bp.program)) << e.number;
    std::string word;
    bool named = false;
    for (char c : presets.at(bp.program) + " ") {
      if (std::isalpha(static_cast<unsigned char>(c))) {
        word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        continue;
      }
      const auto [from, to] = words.equal_range(word);
      bool shows = from == to;
      for (auto it = from; it != to; ++it) shows = shows || e.name.find(it->second) != std::string_view::npos;
      EXPECT_TRUE(shows) << e.name << " plays " << presets.at(bp.program);
      named = named || from != to;
      word.clear();
    }
    checked += named;
  }
  EXPECT_GE(checked, 50) << "most of the 128 programs have a word to check by";
}

// Menu order, distinct numbers, the "(GS)" mark on every variation, and each melodic
// group opening with its eight General MIDI programs in order.
TEST(InstrumentTable, TheWholeSetIsDistinctNumbersInMenuOrder) {
  const auto all = AllInstruments();
  ASSERT_EQ(static_cast<int>(all.size()), kInstrumentCount);
  std::set<int> numbers;
  int previousGroup = -1, row = 0, first = 0, kits = 0;
  for (const auto& e : all) {
    numbers.insert(e.number);
    if (e.group != previousGroup) row = 0, first = e.number;
    EXPECT_EQ(e.row, row) << e.name;
    EXPECT_GE(e.group, previousGroup);
    previousGroup = e.group;
    EXPECT_EQ(e.groupName, InstrumentGroupAt(e.group)->name);
    EXPECT_EQ(e.name.substr(0, 4) == "(GS)", e.number > 128 && e.number != 16385) << e.number << " " << e.name;
    if (e.number > 16384) {
      ++kits;
      EXPECT_EQ(e.group, 17);
      EXPECT_LE(e.number, 16384 + 128);
    } else if (row < 8) {
      EXPECT_EQ(e.number, first + row) << e.name;
    } else {  // a variation keeps the program of the sound it varies
      EXPECT_GE(BankProgramOf(e.number).program, first - 1) << e.name;
      EXPECT_LE(BankProgramOf(e.number).program, first + 6) << e.name;
    }
    ++row;
  }
  EXPECT_EQ(numbers.size(), all.size()) << "no number appears twice";
  EXPECT_EQ(kits, 9);
}

// Numbers count from 1 through the 128 programs of bank 0, then bank 1, and so on.
TEST(InstrumentTable, BankAndProgramOfANumber) {
  for (int number = 1; number <= 16512; ++number) {
    const BankProgram bp = BankProgramOf(number);
    ASSERT_TRUE(bp.program >= 0 && bp.program < 128 && bp.bank * 128 + bp.program + 1 == number) << number;
  }
  EXPECT_EQ(BankProgramOf(kViolin).program, 40) << "General MIDI's violin";
  EXPECT_EQ(BankProgramOf(0).bank * 128 + BankProgramOf(0).program, 0) << "no instrument: the first program";
}

// A score stores the group and row of its instrument: a row that moves or changes
// makes every saved score that chose it play something else.
TEST(InstrumentTable, SavedMenuValuesKeepTheirInstrument) {
  std::uint64_t hash = 14695981039346656037ull;  // FNV-1a over every row in menu order
  for (const InstrumentEntry& e : AllInstruments()) {
    EXPECT_EQ(InstrumentFromMenus(e.group, e.row), e.number) << e.name;
    for (char c : std::to_string(e.group) + "," + std::to_string(e.row) + "," + std::to_string(e.number) + std::string(e.name) + ";")
      hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ull;
  }
  EXPECT_EQ(hash, 5976870562790487306ull) << "a row moved or changed";
  EXPECT_EQ(ChooseInstrumentGroup(5).instrument, kViolin) << "choosing a group selects its first row";
  EXPECT_EQ(ChooseInstrumentGroup(5).caption, "弦楽器系");
  for (auto [group, row] : {std::pair{kInstrumentSeparator, 0}, {0, 21}, {-1, 0}, {18, 0}, {5, -1}})
    EXPECT_EQ(InstrumentFromMenus(group, row), kViolin) << "no such row: " << group << "," << row;
}
