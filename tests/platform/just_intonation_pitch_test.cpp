// Every note sounds the pitch the key's table gives it, to within a cent: the fraction
// of a semitone reaches the sound through per-key tuning.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/synth_fixture.h"
#include "tuning/pure_scale.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

constexpr int kChannel = 1;
constexpr double kRate = 44100.0;

class JustIntonation : public ::testing::Test {
 protected:
  void SetUp() override {
    synth = DrySynth();
    LIRENZA_REQUIRE_FONTS(synth);
    synth->SelectInstrument(kChannel, kSineWave);
    synth->SelectInstrument(0, kSineWave);
    untuned = std::make_unique<UntunedKeys>(*synth, kChannel);
  }
  double Reference(int key) { return untuned->Frequency(key); }
  std::unique_ptr<Synth> synth;
  std::unique_ptr<UntunedKeys> untuned;
};

}  // namespace

TEST_F(JustIntonation, EveryKeysTableSoundsWithinOneCent) {
  // The open strings, the notes around them, and the top of the fingerboard.
  const int indexes[] = {55, 57, 60, 62, 64, 66, 69, 71, 73, 76, 79, 83, 88};
  for (int keySignature = 0; keySignature <= 14; ++keySignature) {
    TuningTables t;
    TuneToKey(t, keySignature);
    for (int i : indexes) {
      const int pitch = static_cast<int>(t.pitches[i]);
      EXPECT_NEAR(CentsBetween(SoundedFrequency(*synth, kChannel, pitch), Reference(KeyOfPitch(pitch))), CentsAboveKey(pitch), 1.0) << "key signature " << keySignature << ", index " << i << ", pitch " << pitch;
    }
  }
}

TEST_F(JustIntonation, RetuningForAnotherNoteNeverBendsOneThatSounds) {
  // The live player holds A4 sharp while the score player strikes the same key flat.
  const int sharp = 69 * 256 + 51, flat = 69 * 256 - 51;
  const double reference = Reference(69);
  synth->PlayNote(0, sharp, 100);
  RenderMono(*synth, static_cast<long>(0.3 * kRate));
  synth->PlayNote(kChannel, flat, 100);
  synth->PlayNote(kChannel, flat, 0);
  RenderMono(*synth, static_cast<long>(0.7 * kRate));  // the flat note's release ends here
  const auto frames = RenderMono(*synth, static_cast<long>(kRate));
  synth->PlayNote(0, sharp, 0);
  EXPECT_NEAR(CentsBetween(ZeroCrossingFrequency(frames, kRate, 0, frames.size()), reference), 51 * 100.0 / 256, 1.0);
}
