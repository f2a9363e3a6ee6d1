// The instrument menus: the numbers the players get must be exactly the sound set's,
// row for row, or a user choosing "バイオリン" hears something else.
#include <gtest/gtest.h>

#include <set>

#include "violin/instrument_table.h"

using namespace lirenza;

TEST(InstrumentTable, GroupsHaveTheirCountsFirstNumbersAndEndNames) {
  struct Row {
    int menuIndex;
    std::string_view name;
    int count, first;
    std::string_view firstName, lastName;
  } rows[] = {
      {0, "ピアノ系", 21, 1, "グランドピアノ(普通の)", "(GS)チェンバロ(キーオフ付)"},
      {1, "音階打楽器系", 12, 9, "チェレスタピアノ(柔らかい)", "(GS)カリロン"},
      {2, "オルガン系", 16, 17, "電子オルガン(濁った)", "(GS)アコーディオン(イタリアン)"},
      {3, "ギター系", 19, 25, "ナイロンギター(滑らか)", "(GS)フィードバックギター2"},
      {4, "ベース系", 12, 33, "ウッドベース", "(GS)ラバーバス"},
      {5, "弦楽器系", 9, 41, "バイオリン", "(GS)スローバイオリン"},
      {6, "アンサンブル系", 11, 49, "オーケストラバイオリン1(派手な)", "(GS)合唱2(ア-)"},
      {7, "管楽器系", 15, 57, "トランペット", "(GS)シンセブラス1(ミュート)"},
      {8, "リード楽器系", 8, 65, "ソブラノサックス", "クラリネット"},
      {9, "木管楽器系", 8, 73, "ピッコロ", "オカリナ"},
      {10, "シンセリード系", 12, 81, "シンセリード1(フユージョン)", "(GS)シンセリード2(ミュート)"},
      {11, "シンセパッド系", 8, 89, "シンセパッド1(ガラス)", "シンセパッド8(うねるような)"},
      {12, "シンセエフェクト系", 11, 97, "シンセエフェクト1(雨)", "(GS)シンセエフェクト7(エコーパン)"},
      {13, "民族楽器系", 10, 105, "シタール(インド)", "(GS)大正琴"},
      {14, "打楽器系", 13, 113, "ディンクルベル(鉄琴鈴)", "(GS)メロディクタム(ミュート)"},
      {15, "効果音(SFX)系", 41, 121, "ギター擦過音", "(GS)爆発"},
      {17, "ドラムセット", 9, 16385, "標準的セット", "(GS)効果音セット"},
  };
  ASSERT_EQ(InstrumentGroups().size(), std::size(rows));
  for (const auto& r : rows) {
    const InstrumentGroup* g = InstrumentGroupAt(r.menuIndex);
    ASSERT_NE(g, nullptr) << r.menuIndex;
    EXPECT_EQ(g->name, r.name);
    EXPECT_EQ(static_cast<int>(g->names.size()), r.count) << r.name;
    EXPECT_NE(ChooseInstrument(g->numbers, r.count - 1), 0) << r.name << ": a number for every row";
    EXPECT_EQ(ChooseInstrument(g->numbers, r.count), 0) << r.name << ": no number past the last row";
    EXPECT_EQ(ChooseInstrument(g->numbers, 0), r.first) << r.name;
    EXPECT_EQ(g->names.front(), r.firstName);
    EXPECT_EQ(g->names.back(), r.lastName);
  }
  EXPECT_EQ(InstrumentGroupAt(kInstrumentSeparator), nullptr);
  EXPECT_EQ(InstrumentGroupAt(18), nullptr);
  EXPECT_EQ(InstrumentGroupAt(-1), nullptr);
}

TEST(InstrumentTable, NamesAndNumbersAtTheIrregularPlaces) {
  // Numbers below 1025 that are GS variations, names that repeat, spellings kept as
  // the menu has them.
  struct Row {
    int group, row, number;
    std::string_view name;
  } rows[] = {
      {0, 15, 3077, "(GS)エレクトリックピアノ1(60年代)"},
      {1, 8, 1036, "(GS)ビブラプォンワイド"},
      {1, 11, 1167, "(GS)カリロン"},
      {2, 8, 1041, "(GS)電子オルガン(調子外れ)"},
      {2, 11, 1042, "(GS)電子オルガン(調子外れ)"},
      {2, 10, 4113, "(GS)電子オルガン(バリエーション)"},
      {4, 3, 36, "フレットレスペース(弱い)"},
      {4, 8, 167, "(GS)シンセバス101"},
      {5, 0, 41, "バイオリン"},
      {7, 8, 186, "(GS)トロンボーン2"},
      {7, 9, 189, "(GS)ホルン(フレンチ)2"},
      {8, 0, 65, "ソブラノサックス"},
      {10, 8, 209, "(GS)シンセリード1(単純)"},
      {10, 4, 85, "シンセリード5(ギター＆サックス)"},
      {12, 10, 359, "(GS)シンセエフェクト7(エコーパン)"},
      {13, 8, 233, "(GS)シタール(オクターブ重ね)"},
      {14, 0, 113, "ディンクルベル(鉄琴鈴)"},
      {14, 12, 1271, "(GS)メロディクタム(ミュート)"},
      {15, 8, 249, "(GS)ギタ−(カッティング)"},
      {15, 32, 1278, "(GS)バーストノイズ"},
      {15, 40, 512, "(GS)爆発"},
      {17, 3, 16409, "(GS)電子ドラムセット"},
      {17, 4, 16410, "(GS)ドラムマシンセット"},
  };
  for (const auto& r : rows) {
    const InstrumentGroup* g = InstrumentGroupAt(r.group);
    ASSERT_NE(g, nullptr);
    EXPECT_EQ(ChooseInstrument(g->numbers, r.row), r.number) << r.name;
    EXPECT_EQ(g->names.at(r.row), r.name) << r.number;
  }
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

TEST(InstrumentTable, BankAndProgramOfANumber) {
  struct Row {
    int number, bank, program;
  } rows[] = {
      {1, 0, 0},       {41, 0, 40},     {128, 0, 127},   {129, 1, 0},     {186, 1, 57},
      {359, 2, 102},   {1025, 8, 0},    {2049, 16, 0},   {3077, 24, 4},   {4113, 32, 16},
      {16385, 128, 0}, {16393, 128, 8}, {16441, 128, 56}, {16512, 128, 127},
      {0, 0, 0},  // no instrument: the first program rather than a negative one
  };
  for (const auto& r : rows) {
    const BankProgram bp = BankProgramOf(r.number);
    EXPECT_EQ(bp.bank, r.bank) << r.number;
    EXPECT_EQ(bp.program, r.program) << r.number;
  }
}

TEST(InstrumentTable, ChoosingAGroupSelectsItsFirstRow) {
  const GroupChoice strings = ChooseInstrumentGroup(5);
  EXPECT_EQ(strings.inst, kViolin);
  EXPECT_EQ(strings.caption, "弦楽器系");
  EXPECT_EQ(strings.rows.size(), 9u);
  EXPECT_EQ(strings.instgroup, "41,42,43,44,45,46,47,48,1065");
  EXPECT_EQ(ChooseInstrument(strings.instgroup, 8), 1065);

  const GroupChoice kits = ChooseInstrumentGroup(17);
  EXPECT_EQ(kits.inst, 16385);
  EXPECT_GT(ChooseInstrument(kits.instgroup, 8), 16384) << "a drum kit sets a number above 16384";

  const GroupChoice separator = ChooseInstrumentGroup(kInstrumentSeparator);
  EXPECT_EQ(separator.inst, 0);
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
