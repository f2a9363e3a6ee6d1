#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>

#include "violin/instrument_table.h"

using namespace lirenza;

// Bank 0's preset names by program, from the "phdr" records that open a SoundFont's "pdta".
static std::map<int, std::string> GeneralMidiPresets(const std::string& path) {
  std::map<int, std::string> presets;
  std::ifstream in(path, std::ios::binary);
  char id[5] = {};
  std::uint32_t size = 0;  // little-endian, as on the host
  auto header = [&] { return bool(in.read(id, 4).read(reinterpret_cast<char*>(&size), 4)); };
  for (in.seekg(12); header();) {
    const bool list = std::string(id) == "LIST";
    if (list && in.read(id, 4) && std::string(id) == "pdta") break;
    in.seekg(size + (size & 1) - (list ? 4 : 0), std::ios::cur);
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

// A word of the preset's English name, if one below, must show in the name of its row.
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
    if (bp.bank != 0 || !presets.count(bp.program)) { EXPECT_GT(bp.bank, 0) << e.number; continue; }
    std::string word;
    bool named = false;
    for (char c : presets.at(bp.program) + " ") {
      if (std::isalpha(static_cast<unsigned char>(c))) { word += static_cast<char>(std::tolower(c)); continue; }
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

// Groups open with their eight General MIDI programs; numbers count banks from 1.
TEST(InstrumentTable, GroupsOpenWithTheirProgramsAndNumbersAreBankAndProgram) {
  int first = 0;
  for (const auto& e : AllInstruments()) {
    if (e.row == 0) first = e.number;
    EXPECT_EQ(e.name.substr(0, 4) == "(GS)", e.number > 128 && e.number != 16385) << e.number << " " << e.name;
    if (e.group != 17 && e.row < 8) EXPECT_EQ(e.number, first + e.row) << e.name;
  }
  for (int number = 1; number <= 16512; ++number) {
    const BankProgram bp = BankProgramOf(number);
    ASSERT_TRUE(bp.program >= 0 && bp.program < 128 && bp.bank * 128 + bp.program + 1 == number) << number;
  }
}

// A saved score stores group and row: a row that moves makes old scores sound wrong.
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
