// The arithmetic between a fixed-point pitch and what FluidSynth is asked for.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/score_renderer.h"
#include "platform/synth.h"

using namespace lirenza;

TEST(PitchToKey, TheNearestKeyWithinMidiRange) {
  struct Row {
    int pitch, key;
  } rows[] = {
      {15400, 60},      // C4 of C major, 264 Hz: 16 cents above the key
      {17664, 69},      // A4 exactly
      {69 * 256 + 127, 69},  // just under half a semitone up stays on its key
      {69 * 256 + 128, 70},  // half a semitone goes to the key above
      {69 * 256 - 128, 69},  // and half below to this one
      {69 * 256 - 129, 68},
      {0, 0},           // an unwritten entry of p
      {-300, 0},
      {127 * 256 + 100, 127},
      {200 * 256, 127},
  };
  for (const auto& r : rows) EXPECT_EQ(KeyOfPitch(r.pitch), r.key) << "pitch " << r.pitch;
}

TEST(PitchToKey, CentsFlooredByTheSynthAreRoundedToTheNearest) {
  // FluidSynth keeps the whole cent below what it is given: with the half cent added
  // that becomes the nearest whole cent, never more than half a cent away.
  for (int pitch = 50 * 256; pitch < 90 * 256; pitch += 7) {
    const double exact = pitch * 100.0 / 256.0;
    const double sounded = std::floor(TuningCents(pitch));
    EXPECT_LE(std::fabs(sounded - exact), 0.5) << "pitch " << pitch;
  }
}

TEST(EventFrames, TimeTimesDOnTheNearestBlock) {
  struct Row {
    double time, d;
    long long frame;
  } rows[] = {
      {0, 1.0, 0},
      {480000, 1.0, 21184},   // 21168 frames: 330.75 blocks, nearest boundary 331
      {720000, 1.0, 31744},   // 31752 frames: 496.1 blocks
      {480000, 1.5, 31744},   // the same instant reached through d
      {480000, 0.6, 12672},   // 12700.8 frames: 198.45 blocks
      {1000, 1.0, 64},        // 44.1 frames round up to the first block
      {700, 1.0, 0},          // 30.9 frames round down to the start
  };
  for (const auto& r : rows) EXPECT_EQ(EventFrame(r.time, r.d, 44100), r.frame) << r.time << " at d " << r.d;
}

TEST(EventFrames, NeverMoreThanHalfABlockFromTheExactInstant) {
  for (double d : {1.5, 1.0, 0.6})
    for (double t = 0; t < 3e8; t += 123457.0) {
      const double exact = t * d * 48000 / 1e6;
      EXPECT_LE(std::fabs(EventFrame(t, d, 48000) - exact), kSynthBlock / 2.0);
    }
}
