// lirenza-help-shots: the pictures of the help pages, taken from the real window as
// the program is built, so the pages always show the window as it is.
//
//   lirenza-help-shots OUT_DIR SCORE.note
//
// The window runs offscreen on silent players; it opens SCORE, chooses a genre of the
// library, holds a key of the violin, and each picture is the window or a part of it.
#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFont>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <memory>

#include "window/main_window.h"

namespace {

struct SilentPlayer : lirenza::NotePlayer {
  void Instrument(int) override {}
  void PlayNote(int, int) override {}
};
struct NoDialogs : lirenza::window::Dialogs {
  std::optional<QString> OpenScorePath(QWidget*) override { return std::nullopt; }
  std::optional<QString> SaveScorePath(QWidget*, const QString&) override { return std::nullopt; }
  std::optional<QString> SaveMidiPath(QWidget*, const QString&) override { return std::nullopt; }
  void Tell(QWidget*, const QString& sentence) override { std::fprintf(stderr, "lirenza-help-shots: the window said: %s\n", qPrintable(sentence)); }
};
struct NoConfirm : lirenza::Confirm {
  bool Ask(const std::string&, const std::string&, const std::string&) override { return false; }
};
struct DiscardChanges : lirenza::CloseQuestion {
  Answer Ask(QWidget*, const QString&, const QString&, const QString&, const QString&) override { return Answer::DontSave; }
};

void Wait(int ms) {
  QEventLoop loop;
  QTimer::singleShot(ms, &loop, &QEventLoop::quit);
  loop.exec();
}

// A key of the violin as the window system reports it: by its place (evdev code + 8).
void Key(QWidget& window, QEvent::Type type, int evdev, Qt::Key key, const QString& text) {
  QKeyEvent event(type, key, Qt::NoModifier, static_cast<quint32>(evdev + 8), 0, 0, text);
  QApplication::sendEvent(&window, &event);
}

struct Shot {
  const char* name;
  QRect part;  // of the window; empty: the whole window
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: lirenza-help-shots OUT_DIR SCORE.note\n");
    return 2;
  }
  // A library and settings of its own, filled from the scores of the source tree.
  QTemporaryDir home;
  qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(QStringLiteral("data"))));
  qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("config"))));
  QApplication app(argc, argv);
  QApplication::setFont(QFont(QStringLiteral("IPAexGothic")));
  const QDir out(QString::fromLocal8Bit(argv[1]));
  if (!out.mkpath(QStringLiteral("."))) {
    std::fprintf(stderr, "lirenza-help-shots: cannot make %s\n", argv[1]);
    return 1;
  }

  SilentPlayer players[lirenza::kNotePlayers];
  lirenza::window::WindowServices services;
  for (int i = 0; i < lirenza::kNotePlayers; ++i) services.ports.players[i] = &players[i];
  services.dialogs = std::make_shared<NoDialogs>();
  services.confirm = std::make_shared<NoConfirm>();
  services.closeQuestion = std::make_shared<DiscardChanges>();
  lirenza::MainWindow window(services);
  window.show();
  Wait(lirenza::MainWindow::kStartPauseMs + 200);

  window.OpenDocument(QString::fromLocal8Bit(argv[2]));
  if (auto* genre = qobject_cast<QAbstractButton*>(window.Control(lirenza::layout::ControlId::GenreButton, 9)))
    genre->click();
  Wait(100);
  // B, held: C4 on the G string, its finger on the violin.
  constexpr int kEvdevB = 48;
  Key(window, QEvent::KeyPress, kEvdevB, Qt::Key_B, QStringLiteral("b"));
  Wait(100);

  const Shot shots[] = {
      {"window", {}},
      {"staff", {50, 55, 940, 160}},
      {"entry", {60, 235, 515, 70}},
      {"conversion", {585, 235, 150, 60}},
      {"tuning", {180, 300, 730, 64}},
      {"library", {1005, 10, 180, 310}},
      {"violin", {200, 420, 930, 332}},
  };
  const QImage whole = window.grab().toImage();
  int failures = 0;
  for (const Shot& shot : shots) {
    const QImage picture = shot.part.isEmpty() ? whole : whole.copy(shot.part);
    if (!picture.save(out.filePath(QString::fromLatin1(shot.name) + QStringLiteral(".png")))) {
      std::fprintf(stderr, "lirenza-help-shots: cannot write %s.png\n", shot.name);
      ++failures;
    }
  }
  Key(window, QEvent::KeyRelease, kEvdevB, Qt::Key_B, QStringLiteral("b"));
  Wait(50);
  return failures == 0 ? 0 : 1;
}
