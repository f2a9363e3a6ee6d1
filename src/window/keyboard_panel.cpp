#include "window/keyboard_panel.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSlider>
#include <QTextEdit>
#include <utility>

#include "window/main_window.h"
#include "window/staff_view.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

constexpr int kHandPositions = 3;  // PositionButton: first, third, fifth
constexpr int kModeButtons = 2;    // ModeButton: 0 edits, 1 plays

// The window's key event speaks in character codes: Return 13, the arrows 28 to 31.
int CharacterCode(int qtKey) {
  switch (qtKey) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return 13;
    case Qt::Key_Left: return 28;
    case Qt::Key_Right: return 29;
    case Qt::Key_Up: return 30;
    case Qt::Key_Down: return 31;
    default: return 0;
  }
}

// Where the arrows move a caret or a row, they stay with the control.
bool KeepsArrows(const QWidget* widget) {
  return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QTextEdit*>(widget) ||
         qobject_cast<const QPlainTextEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
         qobject_cast<const QComboBox*>(widget) || qobject_cast<const QAbstractItemView*>(widget);
}

}  // namespace

KeyboardPanel::KeyboardPanel(MainWindow& window) : QObject(&window), window_(window) {
  pending_.setSingleShot(true);
  pending_.setInterval(0);
  connect(&pending_, &QTimer::timeout, this, &KeyboardPanel::RunPasses);
  repeatWait_.setSingleShot(true);
  repeatWait_.setInterval(kRepeatWaitMs);
  repeatWait_.setTimerType(Qt::PreciseTimer);
  connect(&repeatWait_, &QTimer::timeout, this, [this] { if (ReleaseWaitingKey()) RunPasses(); });

  for (int i = 0; i < kHandPositions; ++i)
    if (auto* b = qobject_cast<QAbstractButton*>(window_.Control(ControlId::PositionButton, i)))
      connect(b, &QAbstractButton::toggled, this, [this, i](bool on) { if (on) ChoosePositionButton(i); });
  for (int i = 0; i < kModeButtons; ++i)
    if (auto* b = qobject_cast<QAbstractButton*>(window_.Control(ControlId::ModeButton, i))) {
      connect(b, &QAbstractButton::toggled, this, [this, i](bool on) { if (on) ChooseModeButton(i); });
      if (b->isChecked()) ChooseKeyboardMode(positions_, i);
    }
  positions_.handPosition = window_.State().handPosition;
  qApp->installEventFilter(this);
}

// What still sounds ends with the window. The fingerboard may already be gone: the
// picture goes with it, so only the sound is ended.
KeyboardPanel::~KeyboardPanel() {
  SoundPorts soundOnly = window_.Services().ports;
  soundOnly.view = nullptr;
  ReleasePressedKeys(hand_, soundOnly);
}

bool KeyboardPanel::IsOwnWidget(const QObject* object) const {
  return object->isWidgetType() && static_cast<const QWidget*>(object)->window() == &window_;
}

bool KeyboardPanel::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
      // The window system hands a key to the toolkit's window first and then to the
      // focused widget: the widget's copy is the one that counts.
      if (!watched->isWidgetType()) return false;
      const auto& key = static_cast<const QKeyEvent&>(*event);
      const bool own = IsOwnWidget(watched);
      const bool repeat = IsRepeat(key);
      const bool changed = FollowKey(key, own);
      // The panic comes before the passes, so Return's own note sounds after its sweep.
      const bool taken =
          own && event->type() == QEvent::KeyPress && TakeWindowKey(key, repeat, static_cast<QWidget*>(watched));
      if (changed) RunPasses();
      return taken;
    }
    default:
      if (window_.LosesInput(watched, event)) LetGoOfEveryKey();
      return false;
  }
}

int KeyboardPanel::EvdevOf(const QKeyEvent& key) {
  // A synthetic event names no physical key.
  return key.nativeScanCode() > kScanCodeOffset ? static_cast<int>(key.nativeScanCode()) - kScanCodeOffset : -1;
}

bool KeyboardPanel::IsRepeat(const QKeyEvent& key) const {
  return key.isAutoRepeat() || (key.type() == QEvent::KeyPress && EvdevOf(key) >= 0 &&
                                waitingRelease_.evdev == EvdevOf(key) && waitingRelease_.timestamp == key.timestamp());
}

bool KeyboardPanel::FollowKey(const QKeyEvent& key, bool ownWindow) {
  // A repeat is the key still held.
  const int evdev = EvdevOf(key);
  if (key.isAutoRepeat() || evdev < 0) return false;
  const bool waiting = waitingRelease_.evdev == evdev;
  if (key.type() == QEvent::KeyPress) {
    if (IsRepeat(key)) {
      // The press of an unmarked repeat: the key never rose.
      waitingRelease_.evdev = -1;
      repeatWait_.stop();
      return false;
    }
    const bool released = ReleaseWaitingKey();
    // A key pressed for a menu or a dialog is theirs.
    return (ownWindow && held_.Press(evdev)) || released;
  }
  // A key coming up counts wherever it is seen, once, after the wait for a repeat.
  if (waiting || !held_.Holds(evdev)) return false;
  const bool released = ReleaseWaitingKey();
  waitingRelease_ = {evdev, key.timestamp()};
  repeatWait_.start();
  return released;
}

bool KeyboardPanel::ReleaseWaitingKey() {
  if (waitingRelease_.evdev < 0) return false;
  repeatWait_.stop();
  return held_.Release(std::exchange(waitingRelease_.evdev, -1));
}

bool KeyboardPanel::TakeWindowKey(const QKeyEvent& key, bool repeat, QWidget* receiver) {
  const KeyDownAction action = WindowKeyAction(CharacterCode(key.key()));
  if (action.panic) {
    // Held down, Return repeats: the first press has already silenced everything.
    if (!repeat) PanicSweep(window_.State().tuning, window_.Services().ports);
    return true;
  }
  // A text field ignores the arrows it has no use for and they come on to its parents:
  // the focused control, not the receiver, says whose they are.
  const QWidget* focus = QApplication::focusWidget();
  if (action.slider < 0 || KeepsArrows(focus ? focus : receiver)) return false;
  auto* slider = qobject_cast<QSlider*>(
      window_.Control(action.slider == 0 ? ControlId::VolumeSlider : ControlId::TempoSlider));
  if (!slider) return false;
  slider->setValue(slider->value() + action.step);
  return true;
}

void KeyboardPanel::RunPasses() {
  if (PollRunningTimers(positions_, held_, hand_, window_.State().tuning, window_.Services().ports))
    pending_.start();
}

void KeyboardPanel::LetGoOfEveryKey() {
  ReleaseWaitingKey();
  held_.ReleaseAll();
  if (!hand_.AnyPressed()) return;
  // Every pass now, not one a turn: a dialog's own event loop may be about to start.
  while (PollRunningTimers(positions_, held_, hand_, window_.State().tuning, window_.Services().ports)) {
  }
  ReleasePressedKeys(hand_, window_.Services().ports);
  pending_.stop();
}

// While a score plays or loads the hand stays where it is, and the buttons say so.
void KeyboardPanel::ChoosePositionButton(int button) {
  WindowState& state = window_.State();
  if (button == state.handPosition) return;
  positions_.handPosition = state.handPosition;
  const int chosen = ChoosePosition(positions_, button, state.modes);
  if (chosen != button) {
    if (auto* kept = qobject_cast<QAbstractButton*>(window_.Control(ControlId::PositionButton, chosen)))
      kept->setChecked(true);
    return;
  }
  state.handPosition = chosen;
  window_.Staff().SetHandPosition(chosen);
  RunPasses();
}

// The mode buttons start and stop the first position's timer. With no timer left, no
// pass would see a held key rise: its note ends now.
void KeyboardPanel::ChooseModeButton(int button) {
  ChooseKeyboardMode(positions_, button);
  if (positions_.AnyTimerRunning()) RunPasses();
  else ReleasePressedKeys(hand_, window_.Services().ports);
}

}  // namespace lirenza::window
