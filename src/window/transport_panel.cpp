#include "window/transport_panel.h"

#include <QAbstractButton>
#include <QMouseEvent>
#include <QSlider>
#include <QTreeWidget>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include "window/main_window.h"
#include "window/picture_canvas.h"
#include "window/staff_view.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

// Indices of the radio families, as the layout table numbers them.
constexpr int kPlayModeButton = 1;  // ModeButton: 1 plays from the keyboard, 0 edits
constexpr int kLiveButton = 1;      // PlaybackModeButton: 0 manual, 1 live

// The most a tick sleeps before its event: what a timer of whole milliseconds cannot wait.
constexpr double kFinalSleepUs = 1000.0;
// Events due together carried out in one turn of the event loop, at the most.
constexpr int kTicksAtOnce = 16;
// Far beyond any piece, and still within a timer's interval.
constexpr double kLongestSleepMs = 1e9;

QAbstractButton* Button(const MainWindow& window, ControlId id, int index) {
  return qobject_cast<QAbstractButton*>(window.Control(id, index));
}

bool IsChecked(const MainWindow& window, ControlId id, int index) {
  const QAbstractButton* button = Button(window, id, index);
  return button && button->isChecked();
}

}  // namespace

int ScoreListRows::Rows() const { return list_ ? list_->topLevelItemCount() : 0; }

int ScoreListRows::SelectedRow() const {
  return list_ && list_->currentItem() ? list_->indexOfTopLevelItem(list_->currentItem()) : -1;
}

void ScoreListRows::Select(int row) {
  if (list_ && row >= 0 && row < Rows()) list_->setCurrentItem(list_->topLevelItem(row));
}

TransportPanel::TransportPanel(MainWindow& window)
    : QObject(&window), window_(window), list_(qobject_cast<QTreeWidget*>(window.Control(ControlId::ScoreList))) {
  for (int i = 0; i < kButtons; ++i) {
    if (QWidget* button = window_.Control(ControlId::TransportButton, i)) button->installEventFilter(this);
    shownPicture_[i] = window_.State().playback.buttonPicture[i];
  }

  // One timer stands in for all six: it sleeps until the event at the cursor is due,
  // so nothing wakes while nothing plays.
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, &TransportPanel::OnTimer);

  // The tempo slider moves every event still to come. Queued, so that the new factor
  // is in place before the sleep is measured again.
  if (auto* tempo = qobject_cast<QSlider*>(window_.Control(ControlId::TempoSlider)))
    connect(tempo, &QSlider::valueChanged, this, [this] { if (timer_.isActive()) SleepUntilDue(); }, Qt::QueuedConnection);

  shownScroll_ = window_.State().staff.scrollValue;
}

PlayStyle TransportPanel::Style() const {
  return PlayStyle{.live = IsChecked(window_, ControlId::PlaybackModeButton, kLiveButton),
                   .playMode = IsChecked(window_, ControlId::ModeButton, kPlayModeButton)};
}

PlaybackEnv TransportPanel::Env() {
  WindowState& s = window_.State();
  return PlaybackEnv{s.staff,         s.modes,       s.tuning,
                     s.handPosition, s.tempoFactor, s.entry.gate,
                     *window_.Services().clock, window_.Services().ports, window_.Staff(), list_};
}

int TransportPanel::ButtonIndex(QObject* watched) const {
  for (int i = 0; i < kButtons; ++i)
    if (watched == window_.Control(ControlId::TransportButton, i)) return i;
  return -1;
}

// The buttons are drawn pictures: which picture each shows, at rest, under the mouse
// or held, is playback's to say, since Play and List stay pressed while they run.
bool TransportPanel::eventFilter(QObject* watched, QEvent* event) {
  const int index = ButtonIndex(watched);
  if (index < 0) return QObject::eventFilter(watched, event);
  PlaybackState& state = window_.State().playback;
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
      event->accept();
      Press(index);
      return true;
    case QEvent::MouseButtonRelease:
      if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
      // A press that was refused gets no release: the button keeps the look it had.
      if (pressActed_[index]) TransportMouseUp(state, index);
      pressActed_[index] = false;
      ShowTransport();
      return true;
    case QEvent::Enter:
      TransportMouseEnter(state, index);
      ShowTransport();
      return false;
    case QEvent::Leave:
      TransportMouseExit(state, index, window_.State().modes);
      ShowTransport();
      return false;
    default:
      return false;
  }
}

void TransportPanel::Press(int index) {
  pressActed_[index] = TransportMouseDown(window_.State().playback, index, Style(), Env());
  ShowTransport();
  SleepUntilDue();
}

bool TransportPanel::TickOnce() {
  PlaybackState& state = window_.State().playback;
  const PlaybackEnv env = Env();
  bool carried = false;
  for (int t = 0; t < kPlayTimers; ++t) {
    const auto timer = static_cast<PlayTimer>(t);
    if (state.Running(timer) && PlaybackTick(state, timer, env)) carried = true;
  }
  ShowTransport();
  return carried && state.AnyRunning() && state.lastEvent >= 1 && MicrosecondsUntilDue(state, env) <= 0;
}

void TransportPanel::OnTimer() {
  // A timer keeps whole milliseconds: it was set to wake up to one early, and the rest
  // is slept here, so an event sounds within a fraction of a millisecond of its time.
  const PlaybackState& state = window_.State().playback;
  if (state.AnyRunning() && state.lastEvent >= 1) {
    const double early = MicrosecondsUntilDue(state, Env());
    if (early > 0 && early <= kFinalSleepUs) std::this_thread::sleep_for(std::chrono::duration<double, std::micro>(early));
  }
  // One event a tick, and the next tick at once while the next event is due too, as a
  // chord's notes and the end of the note before are: they sound together, not a
  // repaint apart. A long run of late events yields to input and painting.
  for (int ticks = 0; ticks < kTicksAtOnce && TickOnce(); ++ticks) {
  }
  SleepUntilDue();
}

void TransportPanel::TickNow() {
  while (TickOnce()) {
  }
  SleepUntilDue();
}

void TransportPanel::SleepUntilDue() {
  const PlaybackState& state = window_.State().playback;
  if (!state.AnyRunning()) {
    timer_.stop();
    return;
  }
  if (state.lastEvent < 1) {
    timer_.start(kEmptyPieceWaitMs);
    return;
  }
  // A timer's interval is whole milliseconds: rounded down, it wakes at most one early,
  // and the tick sleeps the rest.
  const double waitMs = std::floor(MicrosecondsUntilDue(state, Env()) / 1000.0);
  timer_.start(static_cast<int>(std::clamp(waitMs, 0.0, kLongestSleepMs)));
}

// Brings the screen in line with playback: button pictures, the playing label, the
// score list's lock, and the scroll bar after a page turn. The bar is set without
// its signal: the staff has already moved its notes.
void TransportPanel::ShowTransport() {
  WindowState& s = window_.State();
  for (int i = 0; i < kButtons; ++i) {
    const std::string& name = s.playback.buttonPicture[i];
    if (name == shownPicture_[i]) continue;
    if (auto* canvas = qobject_cast<PictureCanvas*>(window_.Control(ControlId::TransportButton, i)))
      canvas->SetPicture(window_.Pictures().Picture(QString::fromStdString(name)));
    shownPicture_[i] = name;
  }
  if (QWidget* label = window_.Control(ControlId::ScorePlayingLabel)) label->setVisible(s.playback.playingLabel);
  if (QWidget* list = window_.Control(ControlId::ScoreList)) list->setEnabled(s.playback.listEnabled);
  if (s.staff.scrollValue != shownScroll_) {
    window_.ShowStaffScroll();
    shownScroll_ = s.staff.scrollValue;
  }
}

}  // namespace lirenza::window
