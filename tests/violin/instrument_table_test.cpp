// The instrument menus: the numbers the players get must be exactly the sound set's,
// row for row, or a user choosing "バイオリン" hears something else.
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

// Preset names of a SoundFont by bank and program, read from its "phdr" records: the
// sound the synthesizer will really play for a number.
std::map<std::pair<int, int>, std::string> SoundFontPresets(const std::string& path) {
  std::map<std::pair<int, int>, std::string> presets;
  std::ifstream in(path, std::ios::binary);
  auto u32 = [&in] {
    unsigned char b[4] = {};
    in.read(reinterpret_cast<char*>(b), 4);
    return std::uint32_t{b[0]} | std::uint32_t{b[1]} << 8 | std::uint32_t{b[2]} << 16 | std::uint32_t{b[3]} << 24;
  };
  auto id = [&in] {
    std::string four(4, '\0');
    in.read(four.data(), 4);
    return four;
  };
  in.seekg(12);
  while (in) {
    const std::string chunk = id();
    const std::uint32_t size = u32();
    if (!in) break;
    if (chunk != "LIST") {
      in.seekg(size + (size & 1), std::ios::cur);
      continue;
    }
    const std::streamoff end = in.tellg() + std::streamoff(size);
    if (id() != "pdta") {
      in.seekg(end);
      continue;
    }
    while (in && in.tellg() < end) {
      const std::string sub = id();
      const std::uint32_t subSize = u32();
      if (sub != "phdr") {
        in.seekg(subSize + (subSize & 1), std::ios::cur);
        continue;
      }
      std::vector<unsigned char> data(subSize);
      in.read(reinterpret_cast<char*>(data.data()), subSize);
      for (std::size_t at = 0; at + 38 <= data.size(); at += 38) {
        const char* name = reinterpret_cast<const char*>(&data[at]);
        const int program = data[at + 20] | data[at + 21] << 8;
        const int bank = data[at + 22] | data[at + 23] << 8;
        presets[{bank, program}] = std::string(name, strnlen(name, 20));
      }
      return presets;
    }
  }
  return presets;
}

std::vector<std::string> LowerWords(const std::string& text) {
  std::vector<std::string> words;
  std::string word;
  for (char c : text + " ") {
    if (std::isalpha(static_cast<unsigned char>(c))) {
      word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    } else if (!word.empty()) {
      words.push_back(word);
      word.clear();
    }
  }
  return words;
}

}  // namespace

// Each General MIDI row's Japanese name names the sound the program plays in the
// SoundFont we ship with: a word of the preset's English name, where it is one of the
// words below, must show in the menu's name.
TEST(InstrumentTable, GeneralMidiNamesMatchTheSoundTheyPlay) {
  const std::string path = "/usr/share/sounds/sf2/FluidR3_GM.sf2";
  const auto presets = SoundFontPresets(path);
  if (presets.empty()) GTEST_SKIP() << path << " is not installed";
  const std::multimap<std::string, std::string> words = {
      {"piano", "ピアノ"}, {"organ", "オルガン"}, {"guitar", "ギター"}, {"bass", "ベース"}, {"bass", "バス"},
      {"bass", "ペース"},  // the menu's own spelling of one bass
      {"violin", "バイオリン"}, {"viola", "ビオラ"}, {"cello", "チェロ"}, {"contrabass", "コントラバス"},
      {"harp", "ハープ"}, {"timpani", "ティンパニ"}, {"choir", "合唱"}, {"trumpet", "トランペット"},
      {"trombone", "トロンボーン"}, {"tuba", "チューバ"}, {"horn", "ホルン"}, {"horns", "ホルン"},
      {"brass", "ブラス"}, {"sax", "サックス"}, {"oboe", "オーボエ"}, {"clarinet", "クラリネット"},
      {"bassoon", "ファゴット"}, {"piccolo", "ピッコロ"}, {"flute", "フルート"}, {"recorder", "リコーダー"},
      {"shakuhachi", "尺八"}, {"whistle", "口笛"}, {"ocarina", "オカリナ"}, {"sitar", "シタール"},
      {"banjo", "バンジョー"}, {"shamisen", "三味線"}, {"koto", "琴"}, {"kalimba", "カリンバ"},
      {"bagpipe", "バグパイプ"}, {"fiddle", "フィドル"}, {"agogo", "アゴゴ"}, {"marimba", "マリンバ"},
      {"xylophone", "シロフォン"}, {"glockenspiel", "グロッケンスピール"}, {"celesta", "チェレスタ"},
      {"harpsichord", "チェンバロ"}, {"clavinet", "クラビネット"}, {"accordian", "アコーディオン"},
      {"harmonica", "ハーモニカ"}, {"bandoneon", "タンゴ"}, {"synth", "シンセ"}, {"telephone", "電話"},
      {"helicopter", "ヘリコプター"}, {"applause", "拍手"}, {"taiko", "太鼓"}, {"tubular", "チュブラー"},
      {"dulcimer", "ダルシマー"}, {"music", "オルゴール"}, {"pizzicato", "ピチカート"},
      {"tremolo", "トレモロ"}, {"hit", "ヒット"}, {"distortion", "ディストーション"},
      {"overdrive", "オーバードライブ"}, {"jazz", "ジャズ"}, {"nylon", "ナイロン"},
      {"harmonics", "ハーモニクス"}, {"fretless", "フレットレス"}, {"slap", "スラップ"}, {"honky", "ホンキー"},
      {"reverse", "逆"}, {"woodblock", "ウッドブロック"}, {"tom", "タム"}, {"bird", "鳥"}, {"sea", "海"},
      {"gun", "ピストル"}, {"church", "教会"}, {"rock", "ロック"}, {"muted", "ミュート"},
      {"english", "イングリシュ"}, {"french", "フレンチ"}, {"alto", "アルト"}, {"tenor", "テナー"},
      {"baritone", "バリトン"}, {"pad", "パッド"}, {"lead", "リード"}};
  int checked = 0;
  for (const InstrumentEntry& e : AllInstruments()) {
    const BankProgram bp = BankProgramOf(e.number);
    if (bp.bank != 0) continue;
    const auto preset = presets.find({0, bp.program});
    ASSERT_NE(preset, presets.end()) << e.number;
    bool named = false;
    for (const std::string& word : LowerWords(preset->second)) {
      const auto [from, to] = words.equal_range(word);
      if (from == to) continue;
      bool shows = false;
      for (auto it = from; it != to; ++it) shows = shows || e.name.find(it->second) != std::string_view::npos;
      EXPECT_TRUE(shows) << e.name << " plays " << preset->second;
      named = true;
    }
    checked += named;
  }
  EXPECT_GE(checked, 90) << "most of the 128 programs have a word to check by";
}

TEST(InstrumentTable, TheWholeSetIs235DistinctNumbersInMenuOrder) {
  const auto all = AllInstruments();
  ASSERT_EQ(static_cast<int>(all.size()), kInstrumentCount);
  std::set<int> numbers;
  int previousGroup = -1, expectedRow = 0, kits = 0;
  for (const auto& e : all) {
    numbers.insert(e.number);
    if (e.group != previousGroup) expectedRow = 0;
    EXPECT_EQ(e.row, expectedRow++) << e.name;
    EXPECT_GE(e.group, previousGroup);
    previousGroup = e.group;
    EXPECT_EQ(e.groupName, InstrumentGroupAt(e.group)->name);
    // "(GS)" marks every variation; the General MIDI sounds and the standard kit
    // carry no mark.
    const bool gs = e.name.substr(0, 4) == "(GS)";
    EXPECT_EQ(gs, e.number > 128 && e.number != 16385) << e.number << " " << e.name;
    if (e.number > 16384) {
      ++kits;
      EXPECT_EQ(e.group, 17);
      EXPECT_LE(e.number, 16384 + 128);
    }
  }
  EXPECT_EQ(numbers.size(), all.size()) << "no number appears twice";
  EXPECT_EQ(kits, 9);
}

TEST(InstrumentTable, EveryMelodicGroupHoldsItsEightGmProgramsAndTheirVariations) {
  for (const auto& g : InstrumentGroups()) {
    if (g.menuIndex == 17) continue;
    const int first = ChooseInstrument(g.numbers, 0);
    for (int row = 0; row < static_cast<int>(g.names.size()); ++row) {
      const int n = ChooseInstrument(g.numbers, row);
      if (row < 8) {
        EXPECT_EQ(n, first + row) << g.name;
      }
      // A variation keeps the program of the General MIDI sound it varies.
      const int program = BankProgramOf(n).program;
      EXPECT_GE(program, first - 1) << g.name << " " << n;
      EXPECT_LE(program, first + 6) << g.name << " " << n;
    }
  }
}

// Numbers count from 1 through the 128 programs of bank 0, then bank 1, and so on:
// every number is one bank and program, and back again.
TEST(InstrumentTable, BankAndProgramOfANumber) {
  for (int number = 1; number <= 16512; ++number) {
    const BankProgram bp = BankProgramOf(number);
    ASSERT_GE(bp.program, 0);
    ASSERT_LT(bp.program, 128);
    ASSERT_EQ(bp.bank * 128 + bp.program + 1, number);
  }
  EXPECT_EQ(BankProgramOf(kViolin).program, 40) << "General MIDI's violin";
  EXPECT_EQ(BankProgramOf(16385).bank, 128) << "the first drum kit";
  EXPECT_EQ(BankProgramOf(0).program, 0) << "no instrument: the first program rather than a negative one";
  EXPECT_EQ(BankProgramOf(0).bank, 0);
}

TEST(InstrumentTable, ChoosingAGroupSelectsItsFirstRow) {
  const GroupChoice strings = ChooseInstrumentGroup(5);
  EXPECT_EQ(strings.instrument, kViolin);
  EXPECT_EQ(strings.caption, "弦楽器系");
  EXPECT_EQ(strings.rows.size(), 9u);
  EXPECT_EQ(ChooseInstrument(strings.groupNumbers, 8), 1065);

  const GroupChoice kits = ChooseInstrumentGroup(17);
  EXPECT_EQ(kits.instrument, 16385);
  EXPECT_GT(ChooseInstrument(kits.groupNumbers, 8), 16384) << "a drum kit sets a number above 16384";

  const GroupChoice separator = ChooseInstrumentGroup(kInstrumentSeparator);
  EXPECT_EQ(separator.instrument, 0);
  EXPECT_TRUE(separator.rows.empty());
}

TEST(InstrumentTable, AScoresMenuValuesNameAnInstrumentOrTheViolin) {
  struct Row {
    int group, row, number;
  } rows[] = {
      {5, 0, 41}, {0, 20, 3079}, {17, 4, 16410}, {15, 40, 512},
      {16, 0, kViolin},   // the separator
      {0, 21, kViolin},   // past the last row
      {-1, 0, kViolin}, {18, 0, kViolin}, {5, -1, kViolin},
  };
  for (const auto& r : rows) EXPECT_EQ(InstrumentFromMenus(r.group, r.row), r.number) << r.group << "," << r.row;
}
