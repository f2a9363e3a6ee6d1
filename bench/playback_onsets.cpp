// How late playback sounds each event of a score: the real main window offscreen, on the
// program's own synthesizer and steady clock, its transport's own timer stepping the
// event list, Play pressed with the mouse. Each call that reaches the score's player is
// timed by the same clock, and its lateness is the time past the moment the event fell
// due: the piece's start plus the event's time at the tempo factor. A chord's notes and
// an off event beside the next on come one a turn of the event loop, so they count too.
// Prints median, p99 and max beside the target; never fails on time, only when the
// window did not play what it was given.
#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

#include "bench/window_sound_common.h"
#include "files/file_io.h"
#include "files/score_file.h"
#include "score/note_tables.h"
#include "violin/tempo_table.h"
#include "window/layout_table.h"
#include "window/menu_commands.h"

using namespace lirenza;
using namespace lirenza::bench;

namespace {

constexpr double kLatenessTargetMs = 2;
constexpr double kFullPieceSeconds = 120;
constexpr double kShortPieceSeconds = 5;

// A melody of mixed lengths over the violin's range, a two-note chord on every fifth
// column and a rest on every seventh, until the piece lasts `seconds` at the middle
// tempo. The chord's second note is at least as long as the melody's, so the melody
// note sets the step to the next column.
ScoreFile PieceOf(double seconds) {
  const char* naturals[] = {"G3", "A3", "B3", "C4", "D4", "E4", "F4", "G4", "A4", "B4", "C5",
                            "D5", "E5", "F5", "G5", "A5", "B5", "C6", "D6", "E6"};
  const int top = static_cast<int>(std::size(naturals)) - 1;
  const char* lengths = "488BBBB6AAA2";  // quarter, eighths, sixteenths, a dotted eighth, triplets, a half
  const char* loudness = "9ABCDEF5678";
  std::mt19937 rng(11);
  ScoreFile file;
  file.title = "二分の曲";
  file.tempoSlider = kTempoSliderStart;
  auto add = [&file](int left, const char* name, char velocity, char duration) {
    Note n;
    FillFromToken(n, std::string(name) + velocity + duration);
    n.linePitch = n.pitch;
    n.left = left;
    n.top = EntryTopOfPitch(n.pitch);
    n.stemDown = EntryFamily(n.top) == NoteFamily::StemDown;
    RespellToken(n);
    file.notes.push_back(n);
  };
  int step = 7;
  double total = 0;
  for (int column = 0; total < seconds * 1e6; ++column) {
    step = std::clamp(step + static_cast<int>(rng() % 5) - 2, 0, top - 2);
    const char duration = lengths[column % std::strlen(lengths)];
    const char velocity = column % 7 == 6 ? '0' : loudness[column % std::strlen(loudness)];
    const int left = kFirstColumn + 16 * column;
    add(left, naturals[step], velocity, duration);
    if (column % 5 == 4) add(left, naturals[step + 2], loudness[(column / 5) % std::strlen(loudness)], '2');
    total += MicrosecondsOfDigit(std::string(1, duration), 1.0);
  }
  return file;
}

int Fail(const char* why) {
  std::fprintf(stderr, "playback_onsets: %s\n", why);
  return 1;
}

}  // namespace

// --short: a piece of a few seconds, for CTest. --seconds S: the piece's length.
// --passes N: how often the looping piece is timed through (each pass is reported).
// --undrawn: a fingerboard that draws nothing, to see what the picture costs.
int main(int argc, char** argv) {
  double seconds = kFullPieceSeconds;
  int passes = 1;
  bool undrawn = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--undrawn") == 0) undrawn = true;
    if (std::strcmp(argv[i], "--short") == 0) seconds = kShortPieceSeconds;
    if (std::strcmp(argv[i], "--seconds") == 0 && i + 1 < argc) seconds = std::atof(argv[++i]);
    if (std::strcmp(argv[i], "--passes") == 0 && i + 1 < argc) passes = std::max(1, std::atoi(argv[++i]));
  }
  UseOffscreenPlatform();
  QApplication app(argc, argv);
  UseProgramFont();

  char dirTemplate[] = "/tmp/lirenza-bench-XXXXXX";
  const std::string dir = ::mkdtemp(dirTemplate);
  const std::string path = dir + "/piece.note";
  const ScoreFile piece = PieceOf(seconds);
  std::string error;
  if (!WriteFileAtomically(path, ScoreFileText(piece), &error)) return Fail(error.c_str());

  UndrawnFingerboard nothingDrawn;
  PlayedWindow played(undrawn ? &nothingDrawn : nullptr);
  MainWindow& window = *played.window;
  played.dialogs->path = QString::fromStdString(path);
  if (!window.RunMenuCommand(window::MenuCommand::OpenScore)) return Fail("no panel carries out the open command");
  QApplication::processEvents();
  if (window.State().staff.NoteCount() != static_cast<int>(piece.notes.size())) return Fail("the piece is not on the staff");

  // Every call the score's player gets while the piece plays must be the event at the
  // cursor; its lateness is measured against that event's due time.
  const window::WindowState& state = window.State();
  std::vector<std::vector<double>> lateMs(passes);
  // Events due at the same moment as the one before them come a turn of the event loop
  // later, after that one's sound and picture: reported apart, they show what it costs.
  std::vector<double> aloneMs, behindMs;
  int pass = 0, strayCalls = 0;
  QEventLoop loop;
  played.score.Listen([&](double at, int pitch, int velocity) {
    if (pass >= passes) return;
    const PlaybackState& playback = state.playback;
    const int i = playback.cursor;
    if (i < 1 || i > playback.lastEvent) {
      ++strayCalls;
      return;
    }
    const PlayEvent& event = playback.events[i];
    if (pitch != state.tuning.pitches[event.pitch] || velocity != event.velocity) ++strayCalls;
    const double late = (at - (playback.startT + event.time * state.tempoFactor)) / 1000.0;
    lateMs[pass].push_back(late);
    (i > 1 && playback.events[i - 1].time == event.time ? behindMs : aloneMs).push_back(late);
    if (i == playback.lastEvent && ++pass == passes) QTimer::singleShot(0, &loop, &QEventLoop::quit);
  });

  Click(window.Control(layout::ControlId::TransportButton, 0));
  if (!state.modes.playing) return Fail("Play did not start the piece");
  const double pieceSeconds = state.playback.events.back().time * state.tempoFactor / 1e6;
  std::printf("a piece of %zu notes, %d events, %.1f s at tempo factor %.2f, %d pass%s%s\n", piece.notes.size(),
              state.playback.lastEvent, pieceSeconds, state.tempoFactor, passes, passes == 1 ? "" : "es",
              undrawn ? ", the fingerboard drawing nothing" : "");
  std::fflush(stdout);
  QTimer::singleShot(static_cast<int>(1000 * (passes * (pieceSeconds + 2) + 10)), &loop, &QEventLoop::quit);
  loop.exec();
  played.score.Listen({});
  Click(window.Control(layout::ControlId::TransportButton, 1));
  std::remove(path.c_str());
  ::rmdir(dir.c_str());

  if (pass < passes) return Fail("the piece did not play to its end in time");
  if (strayCalls) return Fail("the score's player got calls that were not the event due");
  std::vector<double> all;
  for (int p = 0; p < passes; ++p) {
    if (passes > 1) ReportMs(("  pass " + std::to_string(p + 1)).c_str(), lateMs[p], kLatenessTargetMs);
    all.insert(all.end(), lateMs[p].begin(), lateMs[p].end());
  }
  ReportMs("lateness of an event's sound", all, kLatenessTargetMs);
  ReportMs("  due alone", aloneMs, kLatenessTargetMs);
  ReportMs("  due with the event before it", behindMs, kLatenessTargetMs);
  return 0;
}
