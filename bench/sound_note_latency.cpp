// From a PlayNote call to the note in the synthesizer's output. An audio driver asks
// the synth for one period at a time; a note-on is taken at the start of the next
// period it renders, so the call waits at most one period before its sound exists.
// This benchmark plays the driver's part (one period every period, on the clock) and
// times each call to the start of the first period that carries the note. What the
// listener waits on top of that is the driver's buffer: the periods queued ahead.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <random>
#include <thread>
#include <vector>

#include "bench/sound_bench_common.h"
#include "platform/audio_output.h"
#include "platform/sound_fonts.h"
#include "platform/sound_system.h"
#include "platform/synth.h"

using namespace lirenza;
using namespace lirenza::bench;
using Clock = std::chrono::steady_clock;
constexpr int kViolinNumber = 41;

int main(int argc, char** argv) {
  const bool shortRun = argc > 1 && std::strcmp(argv[1], "--short") == 0;
  const int notes = shortRun ? 20 : 200;
  const AudioSettings audio = Completed(AudioSettings{"alsa", 0, 0});
  const double rate = 44100;
  const auto period = std::chrono::duration<double>(audio.periodSize / rate);

  Synth synth;
  std::string error;
  if (!synth.LoadFonts(FindSoundFonts().files, &error)) {
    std::printf("sound_note_latency: no SoundFonts; nothing measured\n");
    return 0;
  }
  synth.SelectInstrument(0, 8 * 128 + 80 + 1);  // a sine: sound from its first sample

  std::atomic<bool> running{true};
  std::atomic<long long> callAt{0};    // ns of the pending PlayNote call, 0 when none
  std::atomic<long long> heardAt{0};   // ns of the start of the period that carried it
  std::thread driver([&] {
    std::vector<float> buffer(2 * audio.periodSize);
    auto next = Clock::now();
    while (running) {
      const long long start = Clock::now().time_since_epoch().count();
      const long long pending = callAt.load();
      synth.Render(buffer.data(), audio.periodSize);
      if (pending && !heardAt) {
        for (float s : buffer)
          if (std::fabs(s) > 1e-4f) {
            heardAt = start;
            break;
          }
      }
      next += std::chrono::duration_cast<Clock::duration>(period);
      std::this_thread::sleep_until(next);
    }
  });

  std::mt19937 rng(7);
  std::uniform_real_distribution<double> offset(0.0, period.count());
  std::vector<double> ms;
  for (int i = 0; i < notes; ++i) {
    std::this_thread::sleep_for(std::chrono::duration<double>(0.02 + offset(rng)));
    heardAt = 0;
    const long long now = Clock::now().time_since_epoch().count();
    callAt = now;
    synth.PlayNote(0, 69 * 256, 100);
    while (!heardAt) std::this_thread::sleep_for(std::chrono::microseconds(200));
    ms.push_back((heardAt - now) / 1e6);
    callAt = 0;
    synth.PlayNote(0, 69 * 256, 0);
    while (synth.ActiveVoices() > 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  running = false;
  driver.join();
  // A call made while a period is being rendered waits for the next one: the bound is
  // one period plus the time one period takes to render.
  const double periodMs = 1e3 * period.count();
  std::sort(ms.begin(), ms.end());
  std::printf("PlayNote to the period that carries it: median %.2f ms, max %.2f ms   target <= one period %.2f ms   %s\n",
              Median(ms), ms.back(), periodMs, Median(ms) <= periodMs ? "ok" : "OVER");
  std::printf("period %d frames x %d periods at 44.1 kHz: %.1f ms buffered ahead of the listener\n",
              audio.periodSize, audio.periods, BufferMilliseconds(audio, rate));

  // Without a sound card the players run into the silent sink: it must keep real time
  // without spinning a core.
  SoundSystem sound({}, {}, [](const std::string&) {});
  const SoundStatus& status = sound.WaitReady();
  sound.Player(1).Instrument(kViolinNumber);
  sound.Player(1).PlayNote(69 * 256, 100);
  const std::clock_t cpu0 = std::clock();
  const double wall = Seconds([&] { std::this_thread::sleep_for(std::chrono::milliseconds(shortRun ? 500 : 3000)); });
  const double cpu = 100.0 * (std::clock() - cpu0) / CLOCKS_PER_SEC / wall;
  std::printf("output \"%s\"%s, one violin note held: %.1f %% of a core\n", status.driver.c_str(),
              status.audible ? "" : " (silent sink)", cpu);
  return 0;
}
