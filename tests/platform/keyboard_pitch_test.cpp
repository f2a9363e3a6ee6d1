// The computer keyboard heard through the real synthesizer: each physical key, pressed
// alone and read by the polling pass, sounds its pitch of the key's just tuning on the live
// player to within a cent, whatever the hand position, and its release ends the note.
#include <gtest/gtest.h>

#include "platform/fluid_note_player.h"
#include "platform/synth_fixture.h"
#include "tuning/pure_scale.h"
#include "violin/key_table.h"
#include "violin/physical_keys.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

// Keys of different character: none, four sharps, three flats. Each is played in
// another hand position, which must not move a pitch.
struct KeyCase {
  int signature;
  const char* name;
  int handPosition;
};
constexpr KeyCase kKeys[] = {{0, "C major", 0}, {4, "E major", 1}, {10, "E-flat major", 2}};

}  // namespace

TEST(KeyboardPitch, EveryKeySoundsItsJustPitchAndStopsOnRelease) {
  auto synth = DrySynth();
  LIRENZA_REQUIRE_FONTS(synth);
  FluidNotePlayer live(*synth, kLivePlayer);
  live.Instrument(kSineWave);
  SoundPorts ports;
  ports.players[kLivePlayer] = &live;
  UntunedKeys untuned(*synth, kLivePlayer);  // shared by the three keys
  HeldKeys keys;
  KeyboardHand hand;

  for (const KeyCase& key : kKeys) {
    TuningTables tuning;
    TuneToKey(tuning, key.signature);
    for (const KeyRow& row : kKeyTable) {
      SCOPED_TRACE(std::string(key.name) + ", key " + std::string(row.label));
      const int evdev = EvdevOfMacKeyCode(row.code);
      auto pass = [&](bool down) {
        EXPECT_TRUE(down ? keys.Press(evdev) : keys.Release(evdev)) << "the key is not a physical key";
        EXPECT_TRUE(PollingPass(keys, hand, key.handPosition, tuning, ports)) << "the pass saw no change";
      };
      const double sounded = HeldFrequency(*synth, [&] { pass(true); }, [&] { pass(false); });
      const int pitch = static_cast<int>(tuning.pitches[row.pitchIndex]);
      EXPECT_NEAR(CentsBetween(sounded, untuned.Frequency(KeyOfPitch(pitch))), CentsAboveKey(pitch), 1.0);
      EXPECT_EQ(synth->ActiveVoices(), 0) << "the note still sounds after the key came up";
    }
  }
}
