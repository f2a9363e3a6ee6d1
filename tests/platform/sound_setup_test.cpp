// Where the sound comes from: which fonts, which output, and what the user is told
// when either is missing. None of it may crash, hang or hold up the window.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/audio_output.h"
#include "platform/sound_fonts.h"
#include "platform/sound_system.h"
#include "violin/instrument_table.h"

using namespace lirenza;
namespace fs = std::filesystem;

namespace {

fs::path TempDir() {
  fs::path dir = fs::temp_directory_path() / ("lirenza-sound-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  return dir;
}

std::string Touch(const fs::path& path) {
  std::ofstream(path) << "x";
  return path.string();
}

}  // namespace

TEST(SoundFonts, TheEnvironmentListReplacesTheDefaults) {
  const fs::path dir = TempDir();
  const std::string a = Touch(dir / "a.sf2"), b = Touch(dir / "b.sf2");
  const std::string gone = (dir / "gone.sf2").string();
  struct Row {
    std::string value;
    std::vector<std::string> files, missing;
  } rows[] = {
      {a, {a}, {}},
      {a + ":" + b, {a, b}, {}},           // in stacking order, bottom first
      {b + "::" + a + ":", {b, a}, {}},    // empty entries are no files
      {gone + ":" + a, {a}, {gone}},
      {gone, {}, {gone}},
      {(dir).string(), {}, {dir.string()}},  // a folder is not a font
  };
  for (const auto& r : rows) {
    const SoundFontList list = SoundFontsFor(r.value.c_str());
    EXPECT_TRUE(list.fromEnvironment);
    EXPECT_EQ(list.files, r.files) << r.value;
    EXPECT_EQ(list.missing, r.missing) << r.value;
  }
  EXPECT_FALSE(SoundFontsFor("").fromEnvironment) << "an empty variable counts as unset";
  EXPECT_FALSE(SoundFontsFor(nullptr).fromEnvironment);
  fs::remove_all(dir);
}

TEST(SoundFonts, TheMessageSaysWhatToInstallOrWhichFileIsMissing) {
  SoundFontList defaults;
  defaults.missing = {"/usr/share/sounds/sf2/FluidR3_GM.sf2"};
  EXPECT_NE(NoSoundFontMessage(defaults).find("fluid-soundfont-gm"), std::string::npos);
  SoundFontList fromEnv;
  fromEnv.fromEnvironment = true;
  fromEnv.missing = {"/nowhere/x.sf2"};
  const std::string line = NoSoundFontMessage(fromEnv);
  EXPECT_NE(line.find("/nowhere/x.sf2"), std::string::npos);
  EXPECT_NE(line.find(kSoundFontEnv), std::string::npos);
  EXPECT_EQ(line.find('\n'), std::string::npos);
}

TEST(AudioSettings, EachDriverGetsAPlayableBuffer) {
  for (const char* driver : {"alsa", "pulseaudio", "jack", "oss", "sdl2", ""}) {
    const AudioSettings s = Completed(AudioSettings{driver, 0, 0});
    EXPECT_GE(s.periods, 2) << driver;
    EXPECT_LE(s.periods, 4) << driver;
    EXPECT_GE(s.periodSize, 64) << driver;
    EXPECT_LE(s.periodSize, 256) << driver;
    EXPECT_LT(BufferMilliseconds(s, 44100), 15.0) << driver;
  }
  const AudioSettings chosen = Completed(AudioSettings{"alsa", 64, 0});
  EXPECT_EQ(chosen.periodSize, 64) << "what the user sets is kept";
  EXPECT_EQ(chosen.periods, 3) << "what the user leaves open takes the default";
}

TEST(SoundSystem, StartsAtOnceAndPlaysSilentlyWithoutASoundCard) {
  if (!AudioDriverCandidates().empty()) GTEST_SKIP() << "this computer has an audio output";
  std::vector<std::string> reports;
  const auto started = std::chrono::steady_clock::now();
  SoundSystem sound({}, {}, [&](const std::string& line) { reports.push_back(line); });
  const double startMs =
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
  // The window may play before the sounds are ready: the calls are taken.
  sound.Player(0).Instrument(kViolin);
  sound.Player(0).PlayNote(69 * 256, 100);
  sound.Player(0).PlayNote(69 * 256, 0);
  const SoundStatus& status = sound.WaitReady();
  const double readyMs =
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
  // Compared with the load itself rather than with a fixed time, so a busy machine
  // cannot make it fail: the constructor must not have waited for the fonts.
  if (status.fontsLoaded) {
    EXPECT_LT(startMs * 2, readyMs) << "fonts and output load behind the window's back";
  }
  EXPECT_FALSE(status.audible);
  EXPECT_EQ(status.driver, "file");
  ASSERT_EQ(reports.size(), 1u) << "said once";
  EXPECT_EQ(reports[0].find('\n'), std::string::npos) << "in one line";
  if (status.fontsLoaded) {
    EXPECT_EQ(reports[0].rfind("no sound:", 0), 0u) << reports[0];
    EXPECT_EQ(sound.synth().ChannelPreset(0).soundingProgram, 40) << "the violin chosen early sounds";
  }
  for (int i = 0; i < kNotePlayers; ++i) {
    sound.Player(i).PlayNote(60 * 256 + 40, 90);
    sound.Player(i).PlayNote(60 * 256 + 40, 0);
  }
}

TEST(SoundSystem, WithoutFontsItSaysWhatToInstallAndStillTakesEveryCall) {
  ::setenv(kSoundFontEnv, "/nowhere/GM.sf2", 1);
  std::vector<std::string> reports;
  {
    SoundSystem sound({}, {}, [&](const std::string& line) { reports.push_back(line); });
    for (int i = 0; i < kNotePlayers; ++i) {
      sound.Player(i).Instrument(16385);
      sound.Player(i).PlayNote(62 * 256, 100);
      sound.Player(i).PlayNote(62 * 256, 0);
    }
    EXPECT_FALSE(sound.WaitReady().fontsLoaded);
    EXPECT_EQ(sound.WaitReady().exact, 0);
  }
  ::unsetenv(kSoundFontEnv);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_NE(reports[0].find("/nowhere/GM.sf2"), std::string::npos) << reports[0];
}

TEST(SoundSystem, EachFontSkippedIsReportedOnItsOwnLineAndTheOthersPlay) {
  const std::string good = "/usr/share/sounds/sf2/FluidR3_GS.sf2";
  if (!fs::exists(good)) GTEST_SKIP() << "FluidR3_GS.sf2 is not installed";
  const fs::path dir = TempDir();
  const std::string junk = Touch(dir / "junk.sf2");
  const std::string empty = (dir / "empty.sf2").string();
  std::ofstream(empty, std::ios::binary) << std::string("RIFF\x04\0\0\0sfbk", 12);
  ::setenv(kSoundFontEnv, (junk + ":" + good + ":" + empty).c_str(), 1);
  std::vector<std::string> reports;
  {
    SoundSystem sound({}, {}, [&](const std::string& line) { reports.push_back(line); });
    EXPECT_TRUE(sound.WaitReady().fontsLoaded);
  }
  ::unsetenv(kSoundFontEnv);
  fs::remove_all(dir);
  ASSERT_GE(reports.size(), 2u);
  EXPECT_NE(reports[0].find(junk), std::string::npos) << reports[0];
  EXPECT_NE(reports[0].find("not a SoundFont"), std::string::npos) << reports[0];
  EXPECT_NE(reports[1].find(empty), std::string::npos) << reports[1];
  for (const auto& line : reports) EXPECT_EQ(line.find('\n'), std::string::npos) << line;
}
