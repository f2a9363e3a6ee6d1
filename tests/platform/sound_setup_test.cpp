// Where the sound comes from: which fonts, which output, and what the user is told
// when either is missing. None of it may crash, hang or hold up the window.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <thread>

#include "platform/audio_output.h"
#include "platform/sound_fonts.h"
#include "platform/sound_system.h"
#include "violin/instrument_table.h"

using namespace lirenza;

TEST(SoundFonts, TheEnvironmentListReplacesTheDefaults) {
  // Any readable file counts as present; whether it is a font is for the loader to say.
  const std::string a = "/etc/passwd", b = "/etc/group", gone = "/nowhere/gone.sf2";
  struct Row {
    std::string value;
    std::vector<std::string> files, missing;
  } rows[] = {
      {b + "::" + a + ":", {b, a}, {}},  // in stacking order, bottom first; empty entries are no files
      {gone + ":" + a, {a}, {gone}},
      {"/etc", {}, {"/etc"}},  // a folder is not a font
  };
  for (const auto& r : rows) {
    const SoundFontList list = SoundFontsFor(r.value.c_str());
    EXPECT_TRUE(list.fromEnvironment);
    EXPECT_EQ(list.files, r.files) << r.value;
    EXPECT_EQ(list.missing, r.missing) << r.value;
  }
  EXPECT_FALSE(SoundFontsFor("").fromEnvironment) << "an empty variable counts as unset";
}

TEST(SoundSystem, TakesEveryCallAndSaysOnceThatItPlaysSilentlyWithoutASoundCard) {
  if (!AudioDriverCandidates().empty()) GTEST_SKIP() << "this computer has an audio output";
  std::vector<std::string> reports;
  SoundSystem sound({}, {}, [&](const std::string& line) { reports.push_back(line); });
  sound.Player(0).Instrument(kViolin);  // before the fonts are ready, as the window may
  sound.Player(0).PlayNote(69 * 256, 100);
  const SoundStatus& status = sound.WaitReady();
  EXPECT_TRUE(!status.audible && status.driver == kSilentDriver) << status.driver;
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_TRUE(reports[0].rfind("no sound:", 0) == 0 && reports[0].find('\n') == std::string::npos) << reports[0];
  EXPECT_TRUE(!status.fontsLoaded || sound.synth().ChannelPreset(0).soundingProgram == 40) << "the early choice holds";
  if (!status.fontsLoaded) return;
  // The silent sink renders while a note sounds: a note given and ended dies away, as
  // it would on a card (unrendered voices never end).
  sound.Player(0).PlayNote(69 * 256, 100);
  sound.Player(0).PlayNote(69 * 256, 0);
  for (int i = 0; i < 500 && sound.synth().ActiveVoices() > 0; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(sound.synth().ActiveVoices(), 0);
}

TEST(SoundSystem, AskedToWaitLoadsNothingUntilStartedAndThenOnlyOnce) {
  // With no font to find, a started load ends at once and says so in one line.
  ::setenv(kSoundFontEnv, "/nowhere/gone.sf2", 1);
  std::vector<std::string> reports;
  {
    SoundSystem sound({}, {}, [&](const std::string& line) { reports.push_back(line); }, /*loadNow=*/false);
    sound.Player(0).PlayNote(69 * 256, 100);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_FALSE(sound.Ready());
    EXPECT_TRUE(reports.empty());
    sound.StartLoading();
    sound.StartLoading();
    EXPECT_FALSE(sound.WaitReady().fontsLoaded);
    EXPECT_TRUE(sound.Ready());
  }
  ::unsetenv(kSoundFontEnv);
  EXPECT_EQ(reports.size(), 1u);
}
