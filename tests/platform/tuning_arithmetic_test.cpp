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

TEST(EventFrames, NeverMoreThanHalfABlockFromTheExactInstant) {
  for (double d : {1.5, 1.0, 0.6})
    for (double t = 0; t < 3e8; t += 123457.0) {
      const double exact = t * d * 48000 / 1e6;
      EXPECT_LE(std::fabs(EventFrame(t, d, 48000) - exact), kSynthBlock / 2.0);
    }
}
