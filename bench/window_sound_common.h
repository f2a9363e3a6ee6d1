#pragma once
// What the benches that play the real window share: the main window offscreen on the
// program's own sound (every player a real synthesizer channel, silent without a sound
// card) and its own steady clock, a player that notes when each call reached it, a
// mouse click on a drawn control, and percentiles.
#include <QApplication>
#include <QFont>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/sound_system.h"
#include "window/main_window.h"

namespace lirenza::bench {

// A real player that tells, before passing each call on, when it arrived by the clock
// the window plays by.
class TimedPlayer : public NotePlayer {
 public:
  using Listener = std::function<void(double atMicroseconds, int pitch, int velocity)>;
  TimedPlayer(NotePlayer& real, const Clock& clock) : real_(real), clock_(clock) {}
  void Instrument(int number) override { real_.Instrument(number); }
  void PlayNote(int pitch, int velocity) override {
    const double at = clock_.Microseconds();
    if (listener_) listener_(at, pitch, velocity);
    real_.PlayNote(pitch, velocity);
  }
  void Listen(Listener listener) { listener_ = std::move(listener); }

 private:
  NotePlayer& real_;
  const Clock& clock_;
  Listener listener_;
};

// Answers every question without a dialog; the open dialog names `path`.
struct QuietDialogs : window::Dialogs {
  QString path;
  std::optional<QString> OpenScorePath(QWidget*) override {
    return path.isEmpty() ? std::nullopt : std::optional<QString>(path);
  }
  std::optional<QString> SaveScorePath(QWidget*, const QString&) override { return std::nullopt; }
  std::optional<QString> SaveMidiPath(QWidget*, const QString&) override { return std::nullopt; }
  void Tell(QWidget*, const QString& sentence) override {
    std::fprintf(stderr, "the window said: %s\n", qPrintable(sentence));
  }
};
struct NoConfirm : Confirm {
  bool Ask(const std::string&, const std::string&, const std::string&) override { return false; }
};
struct DiscardChanges : CloseQuestion {
  Answer Ask(QWidget*, const QString&, const QString&, const QString&, const QString&) override {
    return Answer::DontSave;
  }
};

// A fingerboard that draws nothing, to see what the picture costs a note.
struct UndrawnFingerboard : FingerboardView {
  void ShowFinger(int, int) override {}
  void HideFinger(int, int) override {}
  void ShowCleanViolin() override {}
};

// Services whose questions and dialogs are answered without a window: what the open
// dialog names is dialogs->path.
inline window::WindowServices QuietServices(std::shared_ptr<QuietDialogs> dialogs = std::make_shared<QuietDialogs>()) {
  window::WindowServices services;
  services.dialogs = std::move(dialogs);
  services.confirm = std::make_shared<NoConfirm>();
  services.closeQuestion = std::make_shared<DiscardChanges>();
  return services;
}

// Shows the window and lets it reach the screen and paint, so no timing pays for that.
inline void ShowAndSettle(QWidget& window) {
  window.show();
  for (int i = 0; i < 100 && !(window.windowHandle() && window.windowHandle()->isExposed()); ++i)
    QApplication::processEvents(QEventLoop::AllEvents, 10);
  QApplication::processEvents();
}

// Counts the paints a widget receives, so a timing is known to include one.
struct PaintCounter : QObject {
  int paints = 0;
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints;
    return false;
  }
};

// The window as the program makes it, with players 0 (live) and 1 (score) timed.
struct PlayedWindow {
  SoundSystem sound{AudioSettingsFromEnvironment(), {}, [](const std::string& line) {
                      std::fprintf(stderr, "sound: %s\n", line.c_str());
                    }};
  std::shared_ptr<window::SteadyClock> clock = std::make_shared<window::SteadyClock>();
  std::shared_ptr<QuietDialogs> dialogs = std::make_shared<QuietDialogs>();
  TimedPlayer live{sound.Player(kLivePlayer), *clock};
  TimedPlayer score{sound.Player(kScorePlayer), *clock};
  std::unique_ptr<MainWindow> window;

  // view: the fingerboard to draw on; none draws on the window's own violin.
  explicit PlayedWindow(FingerboardView* view = nullptr) {
    const SoundStatus& status = sound.WaitReady();
    std::printf("sound: %s, driver %s\n", status.fontsLoaded ? "fonts loaded" : "no fonts (the players stay silent)",
                status.driver.empty() ? "none" : status.driver.c_str());
    window::WindowServices services = QuietServices(dialogs);
    for (int i = 0; i < kNotePlayers; ++i) services.ports.players[i] = &sound.Player(i);
    services.ports.players[kLivePlayer] = &live;
    services.ports.players[kScorePlayer] = &score;
    services.ports.view = view;
    services.clock = clock;
    window = std::make_unique<MainWindow>(std::move(services));
    ShowAndSettle(*window);
  }
  ~PlayedWindow() {
    live.Listen({});
    score.Listen({});
  }
};

// Offscreen unless the caller chose a platform; the face the program names.
inline void UseOffscreenPlatform() {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
}
inline void UseProgramFont() { QApplication::setFont(QFont(QStringLiteral("IPAexGothic"))); }

// A left click in the middle of a control, as the mouse gives it.
inline void Click(QWidget* control) {
  const QPointF middle(control->width() / 2.0, control->height() / 2.0);
  const QPointF global = control->mapToGlobal(middle);
  QMouseEvent press(QEvent::MouseButtonPress, middle, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(control, &press);
  QMouseEvent release(QEvent::MouseButtonRelease, middle, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(control, &release);
}

// The smallest value that `share` of the values do not exceed.
inline double Percentile(std::vector<double> values, double share) {
  if (values.empty()) return NAN;
  std::sort(values.begin(), values.end());
  const auto rank = static_cast<std::size_t>(std::ceil(share * values.size()));
  return values[std::clamp<std::size_t>(rank, 1, values.size()) - 1];
}

// One line: median, p99 and max of millisecond figures beside the p99 target.
inline void ReportMs(const char* what, const std::vector<double>& ms, double p99Target) {
  const double p99 = Percentile(ms, 0.99);
  std::printf("%-40s n %5zu  median %7.3f ms  p99 %7.3f ms  max %7.3f ms   target p99 < %g ms   %s\n", what,
              ms.size(), Percentile(ms, 0.5), p99, Percentile(ms, 1.0), p99Target, p99 < p99Target ? "ok" : "OVER");
}

// One line: the median of millisecond figures beside its target.
inline void ReportMedianMs(const char* what, const std::vector<double>& ms, double target) {
  const double median = Percentile(ms, 0.5);
  std::printf("%-48s median %8.2f ms   target < %5.0f ms   %s\n", what, median, target, median < target ? "ok" : "OVER");
}

}  // namespace lirenza::bench
