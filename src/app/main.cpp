// lirenza: the window program.
#include <QApplication>
#include <QEvent>
#include <QFont>
#include <QIcon>
#include <QTimer>
#include <cstdlib>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "app/app_start.h"
#include "app/single_instance.h"
#include "platform/alsa_midi_input.h"
#include "platform/sound_system.h"
#include "platform/traced_note_player.h"
#include "window/main_window.h"
#include "window/preferences_panel.h"

namespace {

// Loading the sound fonts takes a core for a while; on a busy machine it would hold
// up the window's first paint. They start loading once that paint is done, or after
// a second at the latest should no paint come (a window started hidden).
constexpr int kLatestSoundStartMs = 1000;

class AfterFirstPaint : public QObject {
 public:
  AfterFirstPaint(QWidget& widget, std::function<void()> work) : QObject(&widget), work_(std::move(work)) {
    widget.installEventFilter(this);
    QTimer::singleShot(kLatestSoundStartMs, this, &AfterFirstPaint::Run);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      watched->removeEventFilter(this);
      // Queued, so the paint reaches the screen first.
      QMetaObject::invokeMethod(this, &AfterFirstPaint::Run, Qt::QueuedConnection);
    }
    return false;
  }

 private:
  void Run() {
    if (work_) std::exchange(work_, nullptr)();
  }

  std::function<void()> work_;
};

}  // namespace

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Lirenza"));
  QApplication::setOrganizationName(QStringLiteral("Lirenza"));
  // The desktop finds the program's entry and icon by this name (Wayland's app id).
  QGuiApplication::setDesktopFileName(QStringLiteral("io.github.lirenza.Lirenza"));
  QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("io.github.lirenza.Lirenza")));
  // The installed Japanese face, named outright, so every machine draws the same text.
  QApplication::setFont(QFont(QStringLiteral("IPAexGothic")));
  lirenza::InstallToolkitTranslation(app);

  // One window for every score: when a program of this user already runs, the files
  // named here go to it, and this one ends before it loads any sound.
  const QStringList files = lirenza::AbsoluteFiles(QApplication::arguments().mid(1));
  lirenza::SingleInstance instance(lirenza::SingleInstance::DefaultServerName());
  if (instance.HandOverOrListen(files) == lirenza::SingleInstance::Start::HandedOver) return 0;

  // The sound fonts load on a thread of their own once the window has painted; the
  // players take every call meanwhile and sound as soon as the fonts are in.
  lirenza::SoundSystem sound(lirenza::AudioSettingsFromEnvironment(), {}, {}, /*loadNow=*/false);
  lirenza::window::WindowServices services;
  for (int i = 0; i < lirenza::kNotePlayers; ++i) services.ports.players[i] = &sound.Player(i);
  // LIRENZA_NOTE_TRACE=FILE writes every note the players are given to FILE.
  std::unique_ptr<lirenza::NoteTrace> trace;
  std::vector<std::unique_ptr<lirenza::TracedNotePlayer>> traced;
  if (const char* path = std::getenv("LIRENZA_NOTE_TRACE"); path && *path) {
    trace = std::make_unique<lirenza::NoteTrace>(path);
    for (int i = 0; i < lirenza::kNotePlayers; ++i)
      services.ports.players[i] = traced.emplace_back(std::make_unique<lirenza::TracedNotePlayer>(sound.Player(i), *trace, i)).get();
  }
  // MIDI keyboards play the violin too, through the sequencer's port "Lirenza".
  services.midiNotes = std::make_shared<lirenza::AlsaMidiInput>();

  lirenza::MainWindow window(std::move(services));
  // The settings of the last run, before the window first shows; written again at its close.
  new lirenza::window::PreferencesPanel(window, lirenza::window::PreferencesPanel::DefaultPath());
  new AfterFirstPaint(window, [&sound] { sound.StartLoading(); });
  window.show();
  // Scores named on the command line, here or by a program started later, open as
  // documents do.
  for (const QString& file : files) window.OpenDocument(file);
  QObject::connect(&instance, &lirenza::SingleInstance::documentsReceived, &window,
                   [&window](const QStringList& received) { lirenza::ReceiveDocuments(window, received); },
                   Qt::QueuedConnection);
  return app.exec();
}
