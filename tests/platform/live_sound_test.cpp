// Live sound: what the keyboard player hears must never clip, must be the synthesizer's
// own sound whenever that fits under the ceiling, and must come no later than the
// synthesizer made it. The capture file must hold that same limited sound, in real time.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "platform/audio_output.h"
#include "platform/synth_fixture.h"
#include "violin/instrument_table.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

const float kCeiling = static_cast<float>(std::pow(10.0, kCeilingDb / 20));

// A synthesizer as the program plays it live: master gain, reverb and chorus.
std::unique_ptr<Synth> LiveSynth(int instrument) {
  auto synth = std::make_unique<Synth>();
  std::string error;
  if (!synth->LoadFonts(FindSoundFonts().files, &error)) return nullptr;
  synth->SelectInstrument(0, instrument);
  return synth;
}

struct Strike {
  double seconds;
  std::vector<int> keys;
  int velocity;  // 0 ends the keys
};

// The same notes on two fresh synthesizers, rendered in blocks of one size: one as
// the synthesizer makes them, one through the live path. Each strike is given before
// the block its time falls in, as a key press lands on a card's period.
struct TwoTakes {
  std::vector<float> raw, live;  // interleaved stereo
  double reductionDb = 0;
};

TwoTakes PlayTwice(int instrument, int block, double seconds, const std::vector<Strike>& score) {
  TwoTakes takes;
  auto plain = LiveSynth(instrument), limited = LiveSynth(instrument);
  LiveSound live(*limited);
  const double rate = plain->SampleRate();
  std::vector<float> left(block), right(block), interleaved(2 * block);
  std::size_t next = 0;
  for (long frame = 0; frame < static_cast<long>(seconds * rate); frame += block) {
    for (; next < score.size() && score[next].seconds * rate < frame + block; ++next)
      for (Synth* synth : {plain.get(), limited.get()})
        for (int key : score[next].keys) synth->PlayNote(0, key * 256, score[next].velocity);
    plain->Render(interleaved.data(), block);
    takes.raw.insert(takes.raw.end(), interleaved.begin(), interleaved.end());
    EXPECT_TRUE(live.Render(left.data(), right.data(), block));
    for (int i = 0; i < block; ++i) takes.live.insert(takes.live.end(), {left[i], right[i]});
  }
  takes.reductionDb = live.LargestReductionDb();
  return takes;
}

const std::vector<int> kViolinChord = {60, 68, 75};

}  // namespace

TEST(LiveSound, ChordsThatOverloadTheSynthesizerStayUnderTheCeiling) {
  LIRENZA_REQUIRE_FONTS(LiveSynth(kViolin));
  struct Row {
    const char* what;
    int instrument;
    std::vector<Strike> score;
    int block;
  } rows[] = {
      {"violin chord, a sound server's period", kViolin, {{0, kViolinChord, 100}}, 512},
      {"violin notes added one by one, a period the synthesizer does not divide", kViolin,
       {{0, {55}, 100}, {0.4, {62}, 100}, {0.8, {69}, 100}}, 100},
      {"grand piano struck as hard as MIDI allows", 1, {{0.1, {48, 55, 64, 67}, 127}}, 64},
  };
  for (const auto& row : rows) {
    const TwoTakes takes = PlayTwice(row.instrument, row.block, 2.0, row.score);
    ASSERT_GT(PeakDb(takes.raw), 0.0) << row.what << " must overload without the limiter";
    // Limited, not silenced: the chord still reaches the ceiling.
    EXPECT_NEAR(PeakDb(takes.live), kCeilingDb, 0.4) << row.what;
    EXPECT_LE(PeakDb(takes.live), kCeilingDb + 1e-5) << row.what;
  }
}

TEST(LiveSound, WhatFitsUnderTheCeilingIsTheSynthesizersOwnSound) {
  LIRENZA_REQUIRE_FONTS(LiveSynth(kViolin));
  struct Row {
    const char* what;
    std::vector<Strike> score;
    double comparedFrom;  // seconds
  } rows[] = {
      {"a quiet note", {{0.05, {69}, 40}}, 0},
      {"a quiet note once a loud chord has died away",
       {{0, kViolinChord, 100}, {0.6, kViolinChord, 0}, {3.0, {69}, 40}}, 3.0},
  };
  for (const auto& row : rows) {
    const TwoTakes takes = PlayTwice(kViolin, 128, 3.5, row.score);
    const auto from = static_cast<std::ptrdiff_t>(2 * std::lround(row.comparedFrom * 44100));
    const std::vector<float> raw(takes.raw.begin() + from, takes.raw.end());
    const std::vector<float> live(takes.live.begin() + from, takes.live.end());
    ASSERT_GT(PeakDb(raw), -30.0) << row.what << ": nothing sounded";
    // The live path mixes the effects in its own order: float rounding apart, untouched.
    // Any gain short of 1 would move these samples by far more.
    float largest = 0;
    for (std::size_t i = 0; i < raw.size(); ++i) largest = std::max(largest, std::fabs(live[i] - raw[i]));
    EXPECT_LE(largest, 1e-6f) << row.what;
  }
}

TEST(LiveSound, AStrokeSoundsInTheSameFrameAsWithoutTheLimiter) {
  LIRENZA_REQUIRE_FONTS(LiveSynth(kViolin));
  for (int block : {64, 100}) {
    // A loud piano chord struck from silence: sound rises within a frame or two.
    const TwoTakes takes = PlayTwice(1, block, 0.6, {{0.2, {48, 52, 55, 60, 64}, 127}});
    ASSERT_GT(takes.reductionDb, 1.0) << "block " << block << ": the stroke must be limited";
    // Sample by sample the live sound is the synthesizer's scaled by a gain between
    // the deepest reduction and 1: a delay of even one frame breaks that at the stroke.
    const float deepest = static_cast<float>(std::pow(10.0, -takes.reductionDb / 20));
    int outside = 0;
    for (std::size_t i = 0; i < takes.raw.size(); ++i) {
      const float raw = takes.raw[i], live = takes.live[i];
      if (std::fabs(raw) < 1e-3f) {
        outside += std::fabs(live) > 1e-3f;
      } else {
        const float gain = live / raw;
        outside += gain < deepest - 1e-4f || gain > 1.0f + 1e-6f;
      }
    }
    EXPECT_EQ(outside, 0) << "block " << block;
  }
}

TEST(AudioCapture, HoldsTheLimitedLiveSoundOnTheClockOrSaysWhyNot) {
  auto synth = LiveSynth(kViolin);
  LIRENZA_REQUIRE_FONTS(synth);
  const std::string file = ::testing::TempDir() + "lirenza-live-" + std::to_string(::getpid()) + ".raw";
  ::setenv(kAudioCaptureEnv, file.c_str(), 1);
  AudioOutput output;
  output.Open(*synth, AudioSettings{"file", 0, 0});
  ::unsetenv(kAudioCaptureEnv);
  ASSERT_EQ(output.Driver(), "file") << output.Problem();
  const auto start = std::chrono::steady_clock::now();
  // Silence first: it belongs on the file's timeline as much as the chord.
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  for (int key : kViolinChord) synth->PlayNote(0, key * 256, 100);
  std::this_thread::sleep_for(std::chrono::milliseconds(700));
  output.Close();
  const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

  std::ifstream in(file, std::ios::binary);
  const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  std::filesystem::remove(file);
  ASSERT_EQ(bytes.size() % 4, 0u) << "whole stereo frames of two bytes a sample";
  EXPECT_NEAR(bytes.size() / 4 / synth->SampleRate(), elapsed, 0.05) << "its length is the time it ran";
  int peak = 0;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    peak = std::max(peak, std::abs(static_cast<std::int16_t>(bytes[i] | bytes[i + 1] << 8)));
  EXPECT_LT(peak, 32767 * kCeiling + 1);
  EXPECT_GT(peak, 0.9 * 32767 * kCeiling) << "the chord, limited, reaches the ceiling";

  // A file that cannot be written is named in the one line of trouble; the players go
  // on silently.
  const std::string nowhere = ::testing::TempDir() + "no-such-folder/live.raw";
  ::setenv(kAudioCaptureEnv, nowhere.c_str(), 1);
  output.Open(*synth, AudioSettings{"file", 0, 0});
  ::unsetenv(kAudioCaptureEnv);
  EXPECT_EQ(output.Driver(), kSilentDriver);
  EXPECT_NE(output.Problem().find(nowhere), std::string::npos) << output.Problem();
}
