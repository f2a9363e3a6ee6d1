// The score library with a crowded genre: 2 000 score files in one genre folder of a
// data folder of the bench's own. Times choosing that genre's button until its list is
// filled and painted, and a file written into the folder from outside until its row
// shows in the list (the list is polled while the event loop runs). The real main window
// runs offscreen. Prints medians beside the targets; timings on a shared machine are
// noisy, so it never fails on time, only when the window did not do what is timed.
#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFont>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "files/file_io.h"
#include "files/score_file.h"
#include "files/score_library.h"
#include "window/layout_table.h"
#include "window/library_panel.h"
#include "window/main_window.h"
#include "window_sound_common.h"

using namespace lirenza;
using layout::ControlId;

namespace {

constexpr int kScoreCount = 2000;
constexpr int kCrowdedGenre = 5;
constexpr int kEmptyGenre = 6;
constexpr double kListTargetMs = 100;
constexpr double kOutsideWriteTargetMs = 1000;
constexpr int kGiveUpMs = 5000;

// Titles as a real library holds them: Japanese, Latin and numbers, mixed, so the
// list's ordering has every kind of comparison to make.
std::string TitleOf(int index) {
  static const char* const kWords[] = {"練習曲", "Allegro", "ワルツ", "Minuet", "夜想曲", "Étude", "子守歌", "Gavotte"};
  const std::string word = kWords[index % 8];
  switch (index % 3) {
    case 0: return word + " " + std::to_string(index);
    case 1: return std::to_string(index * 7 % 1000) + " " + word + " 第" + std::to_string(index % 50) + "番";
    default: return word + std::to_string(index % 97) + " Op." + std::to_string(index);
  }
}

// A short score: a title and one bar of notes.
std::string SmallScoreText(const std::string& title) {
  ScoreFile file;
  file.title = title;
  for (int i = 0; i < 8; ++i) {
    Note n;
    FillFromToken(n, "C498");
    n.left = kFirstColumn + 16 * i;
    n.top = kNoteTopMin + 3 * i;
    n.linePitch = 60 + i;
    RespellToken(n);
    file.notes.push_back(n);
  }
  return ScoreFileText(file);
}

int Fail(const char* why) {
  std::fprintf(stderr, "library_listing: %s\n", why);
  return 1;
}

bool Shows(QTreeWidget& list, const QString& title) {
  return !list.findItems(title, Qt::MatchExactly, 1).isEmpty();
}

// As another program writes a file: created in place, then filled, no rename.
bool WritePlainly(const std::string& path, const std::string& text) {
  std::FILE* out = std::fopen(path.c_str(), "wb");
  if (!out) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), out) == text.size();
  return std::fclose(out) == 0 && written;
}

// Lets the event loop run for a while, so a rebuild still pending lands before the next run.
void Settle(int ms) {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < ms) QApplication::processEvents(QEventLoop::AllEvents, 10);
}

}  // namespace

// --short: a few runs, for CTest.
int main(int argc, char** argv) {
  bool shortRun = false;
  for (int i = 1; i < argc; ++i)
    if (std::strcmp(argv[i], "--short") == 0) shortRun = true;
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");

  // A home of the bench's own, so the user's library is never touched, and no installed
  // scores come in beside the bench's.
  QTemporaryDir home(QDir::tempPath() + QStringLiteral("/lirenza-bench-XXXXXX"));
  if (!home.isValid()) return Fail("no temporary folder");
  qputenv("HOME", QFile::encodeName(home.path()));
  qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath("data")));
  qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath("config")));
  qputenv("LIRENZA_SCORES", QFile::encodeName(home.filePath("installed")));

  QApplication app(argc, argv);
  QApplication::setFont(QFont(QStringLiteral("IPAexGothic")));

  const QString folder = window::LibraryPanel::LibraryFolder() + '/' + QString::fromStdString(GenreFolderName(kCrowdedGenre));
  if (!QDir().mkpath(folder)) return Fail("the genre folder could not be made");
  std::string error;
  for (int i = 0; i < kScoreCount; ++i) {
    const std::string title = TitleOf(i);
    const std::string path = (folder + '/').toStdString() + title + ".note";
    if (!WriteFileAtomically(path, SmallScoreText(title), &error)) return Fail(error.c_str());
  }

  MainWindow window(bench::QuietServices());
  bench::ShowAndSettle(window);
  // The library shows once the start pause is over, as the user first sees it.
  QElapsedTimer started;
  started.start();
  while (!window.StartPauseOver() && started.elapsed() < 2 * MainWindow::kStartPauseMs + kGiveUpMs)
    QApplication::processEvents(QEventLoop::AllEvents, 10);
  QApplication::processEvents();
  if (!window.StartPauseOver()) return Fail("the start pause never ended");

  auto* list = qobject_cast<QTreeWidget*>(window.Control(ControlId::ScoreList));
  auto* crowded = qobject_cast<QAbstractButton*>(window.Control(ControlId::GenreButton, kCrowdedGenre));
  auto* empty = qobject_cast<QAbstractButton*>(window.Control(ControlId::GenreButton, kEmptyGenre));
  if (!list || !crowded || !empty) return Fail("the window has no score list or genre buttons");
  bench::PaintCounter listPaints;
  list->viewport()->installEventFilter(&listPaints);

  // Choosing the genre: the click reads the folder and fills the list, the event loop
  // then paints it. Another genre in between, so each choice starts from an empty list.
  std::vector<double> chooseMs;
  const int chooseRuns = shortRun ? 3 : 21;
  for (int run = 0; run < chooseRuns; ++run) {
    empty->click();
    QApplication::processEvents();
    if (list->topLevelItemCount() != 0) return Fail("the other genre's list is not empty");
    const int paintsBefore = listPaints.paints;
    QElapsedTimer timer;
    timer.start();
    crowded->click();
    QApplication::processEvents();
    chooseMs.push_back(timer.nsecsElapsed() / 1e6);
    if (list->topLevelItemCount() != kScoreCount) return Fail("the genre's list does not hold every score");
    if (listPaints.paints == paintsBefore) return Fail("the list was not painted after the choice");
  }

  // A file written from outside: the folder watcher and the list's rebuild, polled
  // every few milliseconds. Each run writes a new name, so the list grows by one.
  QTimer poll;
  poll.start(2);
  std::vector<double> outsideMs;
  const int outsideRuns = shortRun ? 3 : 15;
  for (int run = 0; run < outsideRuns; ++run) {
    Settle(300);
    const std::string title = "外から " + std::to_string(run) + " Arrival";
    const std::string path = (folder + '/').toStdString() + title + ".note";
    QElapsedTimer timer;
    timer.start();
    if (!WritePlainly(path, SmallScoreText(title))) return Fail("a file could not be written into the genre folder");
    const QString shown = QString::fromStdString(title);
    while (!Shows(*list, shown) && timer.elapsed() < kGiveUpMs) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    outsideMs.push_back(timer.nsecsElapsed() / 1e6);
    if (!Shows(*list, shown)) return Fail("a file written from outside never showed in the list");
    if (list->topLevelItemCount() != kScoreCount + run + 1) return Fail("the list lost or doubled a score");
  }

  std::printf("%d scores in one genre, in a window of %dx%d\n", kScoreCount, window.width(), window.height());
  bench::ReportMedianMs("choose the genre until its list is painted", chooseMs, kListTargetMs);
  bench::ReportMedianMs("a file written from outside until its row shows", outsideMs, kOutsideWriteTargetMs);
  return 0;
}
