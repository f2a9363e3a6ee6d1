// From a key event's arrival to the synthesizer's note: the real main window offscreen
// on the program's own synthesizer and clock, key events sent to its toolkit window as
// the window system delivers them (the physical key as the native scan code), keys
// across the whole table pressed and released in turn. Each event is timed from just
// before it is sent to the live player's note-on (for a press) or note-off (for a
// release), whether the window plays it at once or on a later turn of its event loop.
// Return is also the panic key: its press silences every player before its note starts,
// so it is reported apart as well. Prints median, p99 and max beside the target; never
// fails on time, only when a key did not sound or did not stop.
#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QTimer>
#include <QWindow>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench/window_sound_common.h"
#include "violin/key_table.h"
#include "violin/physical_keys.h"

using namespace lirenza;
using namespace lirenza::bench;

namespace {

constexpr double kLatencyTargetMs = 1;
constexpr int kFullPresses = 1000;
constexpr int kShortPresses = 2 * kKeyRows;
constexpr int kGiveUpMs = 2000;  // a note that has not come by then never will
// X11 and Wayland report a key's evdev code plus this as its native scan code.
constexpr int kScanCodeOffset = 8;

// The toolkit's key for a row: a printable key is its upper-case character.
int QtKeyOf(std::string_view label) {
  if (label == "Return") return Qt::Key_Return;
  if (label == "left Shift") return Qt::Key_Shift;
  return std::toupper(static_cast<unsigned char>(label.front()));
}

// Runs the event loop for about `ms` milliseconds, or until `done` holds.
void RunEventLoop(int ms, const std::function<bool()>& done = {}) {
  QEventLoop loop;
  QTimer deadline;
  deadline.setSingleShot(true);
  QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
  deadline.start(ms);
  while (deadline.isActive() && !(done && done())) loop.processEvents(QEventLoop::WaitForMoreEvents);
}

int Fail(const std::string& why) {
  std::fprintf(stderr, "keyboard_latency: %s\n", why.c_str());
  return 1;
}

}  // namespace

// --short: two rounds of the table, for CTest. --presses N: how many presses.
// --undrawn: a fingerboard that draws nothing, to see what the picture costs a note.
int main(int argc, char** argv) {
  int presses = kFullPresses;
  bool undrawn = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--short") == 0) presses = kShortPresses;
    if (std::strcmp(argv[i], "--undrawn") == 0) undrawn = true;
    if (std::strcmp(argv[i], "--presses") == 0 && i + 1 < argc) presses = std::max(1, std::atoi(argv[++i]));
  }
  UseOffscreenPlatform();
  QApplication app(argc, argv);
  UseProgramFont();
  UndrawnFingerboard nothingDrawn;
  PlayedWindow played(undrawn ? &nothingDrawn : nullptr);
  MainWindow& window = *played.window;
  window.activateWindow();
  RunEventLoop(MainWindow::kStartPauseMs + 200);  // past the start pause, as a player would be
  QWindow* toolkitWindow = window.windowHandle();
  if (!toolkitWindow) return Fail("the window has no toolkit window");

  // The first call on the live player with the awaited pitch and kind of note.
  int awaitedPitch = -1;
  bool awaitingOn = false;
  double heardAt = 0;
  played.live.Listen([&](double at, int pitch, int velocity) {
    if (heardAt == 0 && pitch == awaitedPitch && (velocity > 0) == awaitingOn) heardAt = at;
  });
  auto timeKey = [&](QEvent::Type type, const KeyRow& row) -> double {
    awaitedPitch = static_cast<int>(window.State().tuning.pitches[row.pitchIndex]);
    awaitingOn = type == QEvent::KeyPress;
    heardAt = 0;
    QKeyEvent event(type, QtKeyOf(row.label), Qt::NoModifier, EvdevOfMacKeyCode(row.code) + kScanCodeOffset, 0, 0);
    const double sentAt = played.clock->Microseconds();
    event.setTimestamp(static_cast<quint64>(sentAt / 1000));  // the window system stamps in milliseconds
    QApplication::sendEvent(toolkitWindow, &event);
    if (heardAt == 0) RunEventLoop(kGiveUpMs, [&] { return heardAt != 0; });
    return heardAt == 0 ? -1 : (heardAt - sentAt) / 1000.0;
  };

  std::mt19937 rng(5);
  std::vector<double> onMs, offMs, returnOnMs;
  for (int i = 0; i < presses; ++i) {
    const KeyRow& row = kKeyTable[i % kKeyRows];
    const double on = timeKey(QEvent::KeyPress, row);
    if (on < 0) return Fail("the key " + std::string(row.label) + " did not sound");
    (row.label == "Return" ? returnOnMs : onMs).push_back(on);
    RunEventLoop(2 + static_cast<int>(rng() % 8));  // held a few milliseconds
    const double off = timeKey(QEvent::KeyRelease, row);
    if (off < 0) return Fail("the key " + std::string(row.label) + " did not stop");
    offMs.push_back(off);
    RunEventLoop(2 + static_cast<int>(rng() % 8));
  }
  played.live.Listen({});

  // What a press costs besides its note: the key event's way through the window, timed
  // on G, a key that plays nothing, and the finger painted on the violin and shown.
  constexpr int kUnplayedEvdev = 34;  // G: no black key lies there
  std::vector<double> deliveryMs;
  for (int i = 0; i < std::min(presses, 200); ++i)
    for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, Qt::Key_G, Qt::NoModifier, kUnplayedEvdev + kScanCodeOffset, 0, 0);
      const double before = played.clock->Microseconds();
      event.setTimestamp(static_cast<quint64>(before / 1000));
      QApplication::sendEvent(toolkitWindow, &event);
      deliveryMs.push_back((played.clock->Microseconds() - before) / 1000.0);
      RunEventLoop(1);
    }
  std::vector<double> fingerMs;
  FingerboardView* violin = window.Services().ports.view;
  for (int i = 0; violin && i < std::min(presses, 200); ++i) {
    const StringCell place = kKeyTable[i % kKeyRows].place[0];
    const double before = played.clock->Microseconds();
    violin->ShowFinger(place.string, place.cell);
    fingerMs.push_back((played.clock->Microseconds() - before) / 1000.0);
    violin->HideFinger(place.string, place.cell);
  }

  std::printf("%d presses and releases over the %d keys of the table%s\n", presses, kKeyRows,
              undrawn ? ", the fingerboard drawing nothing" : "");
  ReportMs("key press to note-on", onMs, kLatencyTargetMs);
  if (!returnOnMs.empty()) ReportMs("Return (panic first) to note-on", returnOnMs, kLatencyTargetMs);
  ReportMs("key release to note-off", offMs, kLatencyTargetMs);
  auto part = [](const char* what, const std::vector<double>& ms) {
    if (ms.empty()) return;
    std::printf("%-40s n %5zu  median %7.3f ms  p99 %7.3f ms   (part of a press's time)\n", what, ms.size(),
                Percentile(ms, 0.5), Percentile(ms, 0.99));
  };
  part("a key event's way through the window", deliveryMs);
  part("drawing the finger, shown at once", fingerMs);
  return 0;
}
