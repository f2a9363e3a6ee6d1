// The settings file: what is written reads back the same, the text has the one form
// other copies of the program read, and a damaged file costs only what it damaged.
#include <gtest/gtest.h>

#include <string>

#include "files/preferences.h"

using namespace lirenza;

namespace {

std::string AllBytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return bytes;
}

Preferences Changed() {
  Preferences p;
  p.windowPlace = WindowPlace{-40, 1200};
  p.keyboardLayout = 1;
  p.volumeSlider = 0;
  p.tempoSlider = 15;
  p.backPicture = 11;
  p.printerSetup = "paper=A4\n\"quoted\"\\";
  return p;
}

}  // namespace

TEST(Preferences, WhatIsWrittenReadsBackTheSame) {
  Preferences noPlace = Changed();
  noPlace.windowPlace.reset();
  Preferences binary = Changed();
  binary.printerSetup = AllBytes();
  for (const Preferences& p : {Preferences{}, Changed(), noPlace, binary}) {
    const std::string text = PreferencesText(p);
    EXPECT_EQ(ReadPreferences(text), p) << text;
  }
}

TEST(Preferences, TextIsCompactInItsKeyOrderWithTheSetupInLinesOf76) {
  Preferences p = Changed();
  p.printerSetup = std::string(58, '\0');  // 58 bytes: 80 digits, one break after the 76th
  EXPECT_EQ(PreferencesText(p),
            "{\"MWLeft\":-40,\"MWTop\":1200,\"keyboardFlag\":1,\"Sl0Value\":0,\"Sl1Value\":15,\"backFlag\":11,"
            "\"printerSetupStr\":\"" +
                std::string(76, 'A') + "\\r\\nAA==\"}");
  EXPECT_EQ(PreferencesText(Preferences{}),
            "{\"keyboardFlag\":0,\"Sl0Value\":5,\"Sl1Value\":7,\"backFlag\":0,\"printerSetupStr\":\"\"}");
}

TEST(Preferences, Base64KnownValuesAndLineBreaks) {
  const struct {
    std::string bytes, encoded;
  } cases[] = {{"", ""},         {"f", "Zg=="},         {"fo", "Zm8="},
               {"foo", "Zm9v"},  {"foob", "Zm9vYg=="},  {"foobar", "Zm9vYmFy"},
               {"\xff\xfe", "//4="}};
  for (const auto& c : cases) {
    EXPECT_EQ(EncodeBase64Lines(c.bytes), c.encoded) << c.bytes;
    EXPECT_EQ(DecodeBase64(c.encoded), c.bytes) << c.encoded;
  }
  EXPECT_EQ(EncodeBase64Lines(std::string(57, 'x')).find('\r'), std::string::npos);  // exactly one full line
  EXPECT_EQ(EncodeBase64Lines("foobar", 4), "Zm9v\r\nYmFy");
}

TEST(Preferences, Base64ReadsBrokenLinesAndRefusesDamage) {
  const struct {
    std::string text;
    std::optional<std::string> bytes;
  } cases[] = {
      {"Zm9v\r\nYmFy", "foobar"}, {"Zm9v\nYm Fy\n", "foobar"}, {"Zg", "f"},       {"Zm8", "fo"},
      {"Zg=", std::nullopt},      {"Z", std::nullopt},         {"====", std::nullopt},
      {"Zg==Zg==", std::nullopt}, {"Zm9v!", std::nullopt},     {"Zm9v\x80", std::nullopt},
  };
  for (const auto& c : cases) EXPECT_EQ(DecodeBase64(c.text), c.bytes) << c.text;
}

TEST(Preferences, DamagedFilesKeepStartValuesForWhatCannotBeRead) {
  const std::string full = PreferencesText(Changed());
  const Preferences start;
  auto with = [](auto change) {
    Preferences p;
    change(p);
    return p;
  };
  const struct {
    std::string name, text;
    Preferences expected;
  } cases[] = {
      {"empty", "", start},
      {"not JSON", "volume=3", start},
      {"an array", "[1,2]", start},
      {"cut inside the last member", full.substr(0, full.size() - 20),
       with([](Preferences& p) { p = Changed(), p.printerSetup.clear(); })},
      {"cut after the place", "{\"MWLeft\":3,\"MWTop\":4,\"keyb",
       with([](Preferences& p) { p.windowPlace = WindowPlace{3, 4}; })},
      {"left without top", "{\"MWLeft\":3,\"Sl0Value\":2}", with([](Preferences& p) { p.volumeSlider = 2; })},
      {"out of range, both ends",
       "{\"keyboardFlag\":2,\"Sl0Value\":10,\"Sl1Value\":-1,\"backFlag\":12}", start},
      {"the ends of each range", "{\"keyboardFlag\":1,\"Sl0Value\":9,\"Sl1Value\":0,\"backFlag\":11}",
       with([](Preferences& p) { p.keyboardLayout = 1, p.volumeSlider = 9, p.tempoSlider = 0, p.backPicture = 11; })},
      {"not whole numbers", "{\"Sl0Value\":3.0,\"Sl1Value\":\"4\",\"backFlag\":true,\"MWLeft\":1e2,\"MWTop\":0}",
       start},
      {"too large for a number", "{\"MWLeft\":99999999999,\"MWTop\":1,\"Sl0Value\":-99999999999}", start},
      {"unknown keys, any value", "{\"x\":{\"a\":[1,{\"b\":null}],\"c\":\"}\"},\"Sl0Value\":1,\"y\":[]}",
       with([](Preferences& p) { p.volumeSlider = 1; })},
      {"spaces, byte order mark and a later duplicate",
       "\xEF\xBB\xBF { \"Sl1Value\" : 3 ,\n \"Sl1Value\":4 }", with([](Preferences& p) { p.tempoSlider = 4; })},
      {"escapes in the setup", "{\"printerSetupStr\":\"Zm\\u0039v\\r\\n\\/\\/4=\"}",
       with([](Preferences& p) { p.printerSetup = "foo\xFF\xFE"; })},
      {"setup that is no Base64", "{\"printerSetupStr\":\"not base64!\",\"backFlag\":3}",
       with([](Preferences& p) { p.backPicture = 3; })},
      {"setup that is no string", "{\"printerSetupStr\":12}", start},
      {"nested past any sense", "{\"Sl0Value\":1,\"deep\":" + std::string(100000, '[') + ",\"Sl1Value\":2}",
       with([](Preferences& p) { p.volumeSlider = 1; })},
      {"a broken escape stops the reading", "{\"Sl0Value\":1,\"k\\q\":0,\"Sl1Value\":2}",
       with([](Preferences& p) { p.volumeSlider = 1; })},
  };
  for (const auto& c : cases) EXPECT_EQ(ReadPreferences(c.text), c.expected) << c.name;
}
