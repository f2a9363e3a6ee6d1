// The evdev translation checked against the kernel's own key names: each row of the
// violin's key table must come from the physical key its label names.
#include <linux/input-event-codes.h>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string_view>

#include "violin/key_table.h"
#include "violin/physical_keys.h"

namespace lirenza {
namespace {

TEST(PhysicalKeys, EveryViolinKeyComesFromTheKeyItsLabelNames) {
  // The US label of each key the violin uses, by the kernel's name for that place.
  const std::map<std::string_view, int> kernelKey{
      {"X", KEY_X}, {"D", KEY_D}, {"C", KEY_C}, {"F", KEY_F}, {"V", KEY_V}, {"B", KEY_B},
      {"H", KEY_H}, {"N", KEY_N}, {"J", KEY_J}, {"M", KEY_M}, {",", KEY_COMMA}, {"L", KEY_L},
      {".", KEY_DOT}, {";", KEY_SEMICOLON}, {"/", KEY_SLASH}, {"'", KEY_APOSTROPHE}, {"_", KEY_RO},
      {"left Shift", KEY_LEFTSHIFT}, {"Y", KEY_Y}, {"7", KEY_7}, {"U", KEY_U}, {"8", KEY_8},
      {"I", KEY_I}, {"O", KEY_O}, {"0", KEY_0}, {"P", KEY_P}, {"-", KEY_MINUS}, {"[", KEY_LEFTBRACE},
      {"=", KEY_EQUAL}, {"]", KEY_RIGHTBRACE}, {"Return", KEY_ENTER}};
  for (const KeyRow& row : kKeyTable) {
    SCOPED_TRACE(std::string(row.label));
    ASSERT_TRUE(kernelKey.count(row.label));
    EXPECT_EQ(MacKeyCodeOfEvdev(kernelKey.at(row.label)), row.code);
    EXPECT_EQ(EvdevOfMacKeyCode(row.code), kernelKey.at(row.label));
  }
}

TEST(PhysicalKeys, TheTranslationIsOneToOneAndKnowsWhatItLacks) {
  std::set<int> macCodes;
  for (int evdev = 0; evdev < 256; ++evdev) {
    const int mac = MacKeyCodeOfEvdev(evdev);
    if (mac == kNoKey) continue;
    EXPECT_TRUE(macCodes.insert(mac).second) << "two keys give " << mac;
    EXPECT_EQ(EvdevOfMacKeyCode(mac), evdev);
  }
  EXPECT_EQ(MacKeyCodeOfEvdev(KEY_F1), kNoKey);  // no function keys in the table
  EXPECT_EQ(EvdevOfMacKeyCode(200), kNoKey);
}

// Events may arrive twice (window, then widget) or repeat: only real changes count.
TEST(PhysicalKeys, HeldKeysChangeOnlyOnRealChanges) {
  HeldKeys keys;
  EXPECT_TRUE(keys.Press(KEY_X));
  EXPECT_FALSE(keys.Press(KEY_X));
  EXPECT_FALSE(keys.Press(KEY_F1)) << "a key the table cannot name";
  EXPECT_TRUE(keys.Press(KEY_LEFTSHIFT));
  EXPECT_TRUE(keys.AsyncKeyDown(7) && keys.AsyncKeyDown(56) && !keys.AsyncKeyDown(16));
  EXPECT_TRUE(keys.Release(KEY_X));
  EXPECT_FALSE(keys.Release(KEY_X));
  EXPECT_FALSE(keys.AsyncKeyDown(7));
  EXPECT_FALSE(keys.AsyncKeyDown(-1) || keys.AsyncKeyDown(500));
  EXPECT_TRUE(keys.ReleaseAll());
  EXPECT_FALSE(keys.AsyncKeyDown(56));
  EXPECT_FALSE(keys.ReleaseAll());
}

}  // namespace
}  // namespace lirenza
