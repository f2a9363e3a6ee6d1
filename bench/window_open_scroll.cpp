// The window with a large score: opening a 10 000-note file through the open menu
// command until the staff has painted it, and one step of the scroll bar under a dense
// staff (some 900 notes in view) until the staff has painted the new bars. The real
// main window runs offscreen with silent players and a dialog that names the file
// (QT_QPA_PLATFORM=xcb runs it on an X server instead, paints sent to the server).
// Prints medians beside the targets; timings on a shared machine are noisy, so it
// never fails on time, only when the window did not do what is timed.
#include <QAbstractSlider>
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFont>
#include <QScrollBar>
#include <QPixmap>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

#include "files/file_io.h"
#include "files/score_file.h"
#include "window/layout_table.h"
#include "window/main_window.h"
#include "window/menu_commands.h"
#include "window/staff_view.h"
#include "window_sound_common.h"

using namespace lirenza;

namespace {

constexpr int kNoteCount = 10000;
constexpr int kNotesPerColumn = 9;  // a chord on every column: the densest staff a score file holds
constexpr double kOpenTargetMs = 300;
constexpr double kScrollTargetMs = 8;

// Chords of kNotesPerColumn notes on every column, bar after bar, as far as the scroll
// bar reaches: wherever the view stands it is full.
std::string DenseScoreText() {
  std::mt19937 rng(7);
  const char* hex = "0123456789ABCDEF";
  ScoreFile file;
  file.title = "密な楽譜";
  for (int i = 0; i < kNoteCount; ++i) {
    const int column = i / kNotesPerColumn;
    const int row = (i % kNotesPerColumn * 4 + column) % 36;
    Note n;
    FillFromToken(n, "C498");
    n.left = kFirstColumn + 8 * column + 16 * (column / 16);
    n.top = kNoteTopMin + 3 * row;
    n.linePitch = 48 + row;
    n.velocityDigit = std::string(1, hex[1 + rng() % 15]);
    n.durationDigit = std::string(1, hex[rng() % 16]);
    RespellToken(n);
    file.notes.push_back(n);
  }
  return ScoreFileText(file);
}

int Fail(const char* why) {
  std::fprintf(stderr, "window_open_scroll: %s\n", why);
  return 1;
}

}  // namespace

// --short: a few runs, for CTest. --shot FILE: the window as the last step left it, to
// see what was timed.
int main(int argc, char** argv) {
  bool shortRun = false;
  const char* shot = nullptr;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--short") == 0) shortRun = true;
    if (std::strcmp(argv[i], "--shot") == 0 && i + 1 < argc) shot = argv[++i];
  }
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QApplication::setFont(QFont(QStringLiteral("IPAexGothic")));

  char dirTemplate[] = "/tmp/lirenza-bench-XXXXXX";
  const std::string dir = ::mkdtemp(dirTemplate);
  const std::string path = dir + "/dense.note";
  std::string error;
  if (!WriteFileAtomically(path, DenseScoreText(), &error)) return Fail(error.c_str());

  auto dialogs = std::make_shared<bench::QuietDialogs>();
  dialogs->path = QString::fromStdString(path);
  MainWindow window(bench::QuietServices(dialogs));
  bench::ShowAndSettle(window);

  bench::PaintCounter staffPaints;
  window.Staff().installEventFilter(&staffPaints);
  Staff& staff = window.State().staff;

  // Open: the menu command reads, parses and fills the staff; the event loop then
  // paints what the open asked for.
  if (!window.HasMenuHandler(window::MenuCommand::OpenScore)) return Fail("no panel carries out the open command");
  std::vector<double> openMs;
  const int openRuns = shortRun ? 3 : 15;
  for (int run = 0; run < openRuns; ++run) {
    const int paintsBefore = staffPaints.paints;
    QElapsedTimer timer;
    timer.start();
    window.RunMenuCommand(window::MenuCommand::OpenScore);
    QApplication::processEvents();
    openMs.push_back(timer.nsecsElapsed() / 1e6);
    if (staff.NoteCount() != kNoteCount) return Fail("the opened score is not on the staff");
    if (staffPaints.paints == paintsBefore) return Fail("the staff was not painted after the open");
  }

  // One step of the scroll bar, the way its arrow moves it, across the whole staff
  // and back.
  auto* bar = qobject_cast<QScrollBar*>(window.Control(layout::ControlId::StaffScrollBar));
  if (!bar) return Fail("the staff has no scroll bar");
  std::vector<double> stepMs;
  const int steps = shortRun ? 20 : 3 * 2 * (bar->maximum() / bar->singleStep());
  auto action = QAbstractSlider::SliderSingleStepAdd;
  for (int step = 0; step < steps; ++step) {
    if (bar->value() == bar->maximum()) action = QAbstractSlider::SliderSingleStepSub;
    if (bar->value() == bar->minimum()) action = QAbstractSlider::SliderSingleStepAdd;
    const int scrollBefore = staff.scrollValue, paintsBefore = staffPaints.paints;
    QElapsedTimer timer;
    timer.start();
    bar->triggerAction(action);
    QApplication::processEvents();
    stepMs.push_back(timer.nsecsElapsed() / 1e6);
    if (staff.scrollValue == scrollBefore) return Fail("a scroll step did not move the staff");
    if (staffPaints.paints == paintsBefore) return Fail("the staff was not painted after a scroll step");
  }

  std::printf("a score of %d notes, %d on each column, in a window of %dx%d\n", kNoteCount, kNotesPerColumn,
              window.width(), window.height());
  bench::ReportMedianMs("open the score and paint the staff", openMs, kOpenTargetMs);
  bench::ReportMedianMs("one scroll step of the dense staff, painted", stepMs, kScrollTargetMs);
  if (shot && !window.grab().save(QString::fromLocal8Bit(shot))) return Fail("the picture could not be written");
  std::remove(path.c_str());
  ::rmdir(dir.c_str());
  return 0;
}
