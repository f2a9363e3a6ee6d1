// Loads, saves and MIDI-exports a 10 000-note score and prints the medians beside the
// targets. The reversed run enters the notes right to left, the worst case for an
// insertion walk; the large runs show that the playing order stays O(n log n) however
// the notes were entered, a chord of 100 000 notes included. Timings on a shared
// machine are noisy: medians, no verdicts.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

#include "files/file_io.h"
#include "files/midi_writer.h"
#include "files/score_file.h"
#include "score/staff.h"
#include "violin/event_list.h"
#include "violin/tempo_table.h"

using namespace lirenza;

namespace {

double MedianMs(int runs, const std::function<void()>& work) {
  std::vector<double> ms;
  for (int i = 0; i < runs; ++i) {
    const auto t0 = std::chrono::steady_clock::now();
    work();
    ms.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count());
  }
  std::sort(ms.begin(), ms.end());
  return ms[ms.size() / 2];
}

enum class Entry { InOrder, RightToLeft, OneChord };

Staff ManyNotes(int count, Entry entry) {
  std::mt19937 rng(1);
  const char* hex = "0123456789ABCDEF";
  Staff s;
  s.notes.reserve(static_cast<std::size_t>(count) + 1);
  for (int i = 0; i < count; ++i) {
    const int column = entry == Entry::RightToLeft ? count - 1 - i : entry == Entry::OneChord ? 0 : i;
    Note n;
    FillFromToken(n, "C498");
    n.left = 136 + 8 * column + 16 * (column / 16);
    n.top = 57 + 3 * static_cast<int>(rng() % 36);
    n.linePitch = 48 + static_cast<int>(rng() % 36);
    n.velocityDigit = std::string(1, hex[1 + rng() % 15]);
    n.durationDigit = std::string(1, hex[rng() % 16]);
    RespellToken(n);
    n.picture = "n" + n.durationDigit;
    s.AddNote(n);
  }
  return s;
}

Staff TenThousandNotes(bool reversed) { return ManyNotes(10000, reversed ? Entry::RightToLeft : Entry::InOrder); }

void Report(const char* what, double ms, double target) {
  std::printf("%-44s median %8.2f ms   target < %5.0f ms   %s\n", what, ms, target, ms < target ? "ok" : "OVER");
}

// The same notes entered another way must cost at most kMaxRatio times the notes
// entered in order: MIDI export and the playback list, which both order the notes.
constexpr double kMaxRatio = 1.5;

void ReportRatio(const char* what, int runs, const Staff& inOrder, const Staff& other) {
  auto work = [](const Staff& staff) {
    return [&staff] {
      MidiFileBytes(staff.notes, 0.95, TempoForSlider(7).tempo, 41);
      BuildEventList(staff.notes, 1.0, 0.95);
    };
  };
  const double base = MedianMs(runs, work(inOrder));
  const double ms = MedianMs(runs, work(other));
  const double ratio = ms / base;
  std::printf("%-44s median %8.2f ms against %.2f ms in order: %.2fx   target <= %.1fx   %s\n", what, ms, base,
              ratio, kMaxRatio, ratio <= kMaxRatio ? "ok" : "OVER");
}

}  // namespace

int main(int argc, char** argv) {
  const bool shortRun = argc > 1 && std::strcmp(argv[1], "--short") == 0;
  const int runs = shortRun ? 3 : 21;
  char dirTemplate[] = "/tmp/lirenza-bench-XXXXXX";
  const std::string dir = ::mkdtemp(dirTemplate);
  const std::string notePath = dir + "/bench.note", midiPath = dir + "/bench.mid";
  WindowSettings settings;
  std::string error;

  for (bool reversed : {false, true}) {
    Staff staff = TenThousandNotes(reversed);
    const std::string text = SaveFileText(staff, settings);
    WriteFileAtomically(notePath, text, &error);
    std::printf("10 000 notes%s, file of %zu bytes\n", reversed ? " entered right to left" : "", text.size());

    Report("  load (read file, parse, fill the staff)", MedianMs(runs, [&] {
             Staff s;
             LoadScoreText(s, *ReadWholeFile(notePath, &error));
           }), 50);
    Report("  save (build text, write and rename)", MedianMs(runs, [&] {
             Staff s = staff;
             WriteFileAtomically(notePath, SaveFileText(s, settings), &error);
           }), 50);
    Report(reversed ? "  MIDI export, reversed entry" : "  MIDI export (order, events, write)", MedianMs(runs, [&] {
             WriteFileAtomically(midiPath, MidiFileBytes(staff.notes, 0.95, TempoForSlider(7).tempo, 41), &error);
           }), 50);
    Report("  playback event list", MedianMs(runs, [&] { BuildEventList(staff.notes, 1.0, 0.95); }), 50);
  }
  {
    const int runs300k = shortRun ? 1 : 9;
    const Staff inOrder = ManyNotes(300000, Entry::InOrder);
    ReportRatio("300 000 notes right to left, MIDI + list", runs300k, inOrder,
                ManyNotes(300000, Entry::RightToLeft));
    ReportRatio("one chord of 100 000 notes, MIDI + list", runs300k, ManyNotes(100000, Entry::InOrder),
                ManyNotes(100000, Entry::OneChord));
  }
  std::remove(notePath.c_str());
  std::remove(midiPath.c_str());
  ::rmdir(dir.c_str());
  return error.empty() ? 0 : 1;
}
