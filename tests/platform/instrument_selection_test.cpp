// Every number of the instrument menus selects a preset, variations missing from the
// fonts fall back as a GS module does, and drum kits play drums on any player.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/audio_analysis.h"
#include "platform/synth_fixture.h"
#include "violin/instrument_table.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

bool DefaultFonts() { return !FindSoundFonts().fromEnvironment; }

float Peak(const std::vector<float>& frames) {
  float peak = 0;
  for (float s : frames) peak = std::max(peak, std::fabs(s));
  return peak;
}

}  // namespace

TEST(InstrumentSelection, EveryMenuNumberSelectsAPresetOnEveryPlayer) {
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  for (const auto& entry : AllInstruments()) {
    const int channel = entry.number % kNotePlayers;
    synth->SelectInstrument(channel, entry.number);
    const PresetChoice asked = synth->Resolve(entry.number);
    const PresetChoice sounding = synth->ChannelPreset(channel);
    ASSERT_TRUE(sounding.found) << entry.number << " " << entry.name;
    EXPECT_EQ(sounding.soundingBank, asked.soundingBank) << entry.number;
    EXPECT_EQ(sounding.soundingProgram, asked.soundingProgram) << entry.number;
    EXPECT_EQ(sounding.drums, entry.number > 16384) << entry.number;
    if (asked.exact) {
      EXPECT_EQ(sounding.soundingBank, entry.number > 16384 ? 128 : (entry.number - 1) / 128);
      EXPECT_EQ(sounding.soundingProgram, (entry.number - 1) % 128);
    } else if (asked.drums) {
      EXPECT_EQ(sounding.soundingBank, 128) << "a missing kit plays the standard kit";
      EXPECT_EQ(sounding.soundingProgram, 0);
    } else {
      EXPECT_EQ(sounding.soundingBank, 0) << "a missing variation plays its capital tone";
      EXPECT_EQ(sounding.soundingProgram, (entry.number - 1) % 128);
    }
  }
}

TEST(InstrumentSelection, FluidR3GmAndGsHold199OfThe235Exactly) {
  if (!DefaultFonts()) GTEST_SKIP() << "other fonts are chosen through the environment";
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  int exact = 0, gm = 0, kits = 0;
  for (const auto& entry : AllInstruments()) {
    if (!synth->Resolve(entry.number).exact) continue;
    ++exact;
    gm += entry.number <= 128;
    kits += entry.number > 16384;
  }
  EXPECT_EQ(exact, 199);
  EXPECT_EQ(gm, 128);
  EXPECT_EQ(kits, 9);
  // The one kit only the GS file holds: the sound-effect set.
  EXPECT_TRUE(synth->Resolve(16441).exact);
  EXPECT_EQ(synth->Resolve(16441).soundingProgram, 56);
}

TEST(InstrumentSelection, DrumKitsSoundDrumsOnEveryPlayer) {
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  const int kits[] = {16385, 16393, 16401, 16409, 16410, 16417, 16425, 16433, 16441};
  for (int kit : kits) {
    for (int channel = 0; channel < kNotePlayers; ++channel) {
      synth->SelectInstrument(channel, kit);
      const PresetChoice sounding = synth->ChannelPreset(channel);
      EXPECT_EQ(sounding.soundingBank, 128) << "kit " << kit << " on player " << channel;
      EXPECT_TRUE(sounding.drums);
    }
  }
  // A snare (key 38) from the standard kit on each player makes a sound, whatever
  // fraction of a semitone the pitch carries: a kit is not tuned.
  for (int channel = 0; channel < kNotePlayers; ++channel) {
    synth->SelectInstrument(channel, 16385);
    synth->PlayNote(channel, 38 * 256 + 40, 110);
    EXPECT_GT(Peak(RenderFrames(*synth, 8192)), 0.01f) << "player " << channel;
    synth->PlayNote(channel, 38 * 256 + 40, 0);
    RenderUntilSilent(*synth);
  }
}

TEST(InstrumentSelection, APlayerLeavesTheDrumsWhenGivenAMelodicInstrument) {
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  synth->SelectInstrument(4, 16385);
  synth->SelectInstrument(4, kViolin);
  const PresetChoice sounding = synth->ChannelPreset(4);
  EXPECT_FALSE(sounding.drums);
  EXPECT_EQ(sounding.soundingBank, 0);
  EXPECT_EQ(sounding.soundingProgram, 40);
}

TEST(InstrumentSelection, AChoiceMadeBeforeTheFontsArriveIsKept) {
  SynthOptions options;
  options.effects = false;
  Synth synth(options);
  synth.SelectInstrument(2, 16393);
  synth.PlayNote(2, 60 * 256, 100);  // silent, and no harm
  EXPECT_FALSE(synth.ChannelPreset(2).found);
  std::string error;
  if (!synth.LoadFonts(FindSoundFonts().files, &error)) GTEST_SKIP() << "no SoundFonts";
  EXPECT_EQ(synth.InstrumentOf(2), 16393);
  EXPECT_EQ(synth.ChannelPreset(2).soundingBank, 128);
  EXPECT_EQ(synth.ChannelPreset(0).soundingProgram, 0) << "the others start on the grand piano";
}
