// Every number of the instrument menus selects a preset: a variation missing from the
// fonts plays its capital tone as a GS module does, a missing kit the standard kit.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/synth_fixture.h"
#include "violin/instrument_table.h"

using namespace lirenza;
using namespace lirenza::testing;

TEST(InstrumentSelection, EveryMenuNumberSelectsItsPresetOrTheFallbackOnAnyPlayer) {
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  for (const auto& entry : AllInstruments()) {
    const int channel = entry.number % kNotePlayers;
    const bool kit = entry.number > 16384, exact = synth->Resolve(entry.number).exact;
    synth->SelectInstrument(channel, entry.number);
    const PresetChoice sounding = synth->ChannelPreset(channel);
    ASSERT_TRUE(sounding.found) << entry.number << " " << entry.name;
    EXPECT_EQ(sounding.drums, kit) << entry.number;
    EXPECT_EQ(sounding.soundingBank, kit ? 128 : exact ? (entry.number - 1) / 128 : 0) << entry.number;
    EXPECT_EQ(sounding.soundingProgram, kit && !exact ? 0 : (entry.number - 1) % 128) << entry.number;
  }
  // The standard kit sounds on every player, and a violin takes the player back.
  for (int channel = 0; channel < kNotePlayers; ++channel) {
    synth->SelectInstrument(channel, 16385);
    synth->PlayNote(channel, 38 * 256 + 40, 110);  // a kit is not tuned: the fraction is ignored
    EXPECT_GT(PeakDb(RenderMono(*synth, 8192)), -40.0) << "player " << channel;
    synth->PlayNote(channel, 38 * 256 + 40, 0);
    RenderUntilSilent(*synth);
    synth->SelectInstrument(channel, kViolin);
    EXPECT_FALSE(synth->ChannelPreset(channel).drums) << "player " << channel;
    EXPECT_EQ(synth->ChannelPreset(channel).soundingProgram, 40) << "player " << channel;
  }
}
