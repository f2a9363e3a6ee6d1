// Every note sounds the pitch p gives it, in every key, to within a cent: the fraction
// of a semitone reaches the sound through per-key tuning.
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "platform/audio_analysis.h"
#include "platform/synth_fixture.h"
#include "tuning/pure_scale.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

constexpr int kChannel = 1;
constexpr double kRate = 44100.0;

// Frequency of a note held for a second, measured after its attack.
double SoundedFrequency(Synth& synth, int channel, int pitch) {
  synth.PlayNote(channel, pitch, 100);
  const auto frames = Mono(RenderFrames(synth, static_cast<long>(1.3 * kRate)));
  synth.PlayNote(channel, pitch, 0);
  RenderUntilSilent(synth);
  return ZeroCrossingFrequency(frames, kRate, static_cast<long>(0.25 * kRate), static_cast<long>(1.0 * kRate));
}

class JustIntonation : public ::testing::Test {
 protected:
  void SetUp() override {
    synth = DrySynth();
    LIRENZA_REQUIRE_FONTS(synth);
    synth->SelectInstrument(kChannel, kSineWave);
    synth->SelectInstrument(0, kSineWave);
  }
  // The preset's own pitch of a key, untuned: samples are not perfectly in tune, so
  // the tuned notes are measured against it.
  double Reference(int key) {
    auto it = references.find(key);
    if (it != references.end()) return it->second;
    return references[key] = SoundedFrequency(*synth, kChannel, key * 256);
  }
  std::unique_ptr<Synth> synth;
  std::map<int, double> references;
};

}  // namespace

TEST_F(JustIntonation, EveryKeysTableSoundsWithinOneCent) {
  // The open strings, the notes around them, and the top of the fingerboard.
  const int indexes[] = {55, 57, 60, 62, 64, 66, 69, 71, 73, 76, 79, 83, 88};
  double worst = 0;
  for (int keySignature = 0; keySignature <= 14; ++keySignature) {
    TuningTables t;
    TuneToKey(t, keySignature);
    for (int i : indexes) {
      const int pitch = static_cast<int>(t.pitches[i]);
      const int key = KeyOfPitch(pitch);
      const double wanted = (pitch - key * 256) * 100.0 / 256.0;
      const double got = CentsBetween(SoundedFrequency(*synth, kChannel, pitch), Reference(key));
      worst = std::max(worst, std::fabs(got - wanted));
      EXPECT_NEAR(got, wanted, 1.0) << "keyN " << keySignature << ", pitch index " << i << ", p " << pitch;
    }
  }
  RecordProperty("worst_cents", std::to_string(worst));
  std::printf("largest pitch error over 15 keys: %.3f cent\n", worst);
}

TEST_F(JustIntonation, FractionsAcrossOneSemitoneAreResolved) {
  // Every 32nd of a semitone from a quarter-tone below A4 to a quarter-tone above:
  // the half-cent added against FluidSynth's whole-cent floor keeps each within 1 c.
  for (int step = -128; step <= 127; step += 32) {
    const int pitch = 69 * 256 + step;
    const int key = KeyOfPitch(pitch);
    const double wanted = (pitch - key * 256) * 100.0 / 256.0;
    EXPECT_NEAR(CentsBetween(SoundedFrequency(*synth, kChannel, pitch), Reference(key)), wanted, 1.0)
        << "pitch " << pitch;
  }
}

TEST_F(JustIntonation, RetuningForAnotherNoteNeverBendsOneThatSounds) {
  // The live player holds A4 a fifth of a semitone sharp while the score player plays the same key flat, as
  // when a key change comes while a live note rings. The held note keeps its pitch.
  const int sharp = 69 * 256 + 51, flat = 69 * 256 - 51;
  const double reference = Reference(69);
  synth->PlayNote(0, sharp, 100);
  RenderFrames(*synth, static_cast<long>(0.3 * kRate));
  synth->PlayNote(kChannel, flat, 100);
  synth->PlayNote(kChannel, flat, 0);
  // The flat note's release is over long before the window measured below.
  RenderFrames(*synth, static_cast<long>(0.7 * kRate));
  const auto frames = Mono(RenderFrames(*synth, static_cast<long>(1.0 * kRate)));
  synth->PlayNote(0, sharp, 0);
  EXPECT_NEAR(CentsBetween(ZeroCrossingFrequency(frames, kRate, 0, frames.size()), reference), 51 * 100.0 / 256,
              1.0);
}
