#pragma once
// The computer keyboard as the violin. Keys are read by where they sit (the evdev code
// under the key event), never by what they print, so a key plays the same note on any
// layout. A table of held keys stands in for asking the hardware: an application-wide
// filter feeds it, and the polling passes of the hand positions' timers run when it
// changes and go on only while transitions are pending, so nothing polls at rest.
// Return is the panic key, the arrows step the volume and tempo sliders.
#include <QObject>
#include <QTimer>

#include "violin/key_table.h"
#include "violin/physical_keys.h"

class QKeyEvent;
class QWidget;

namespace lirenza {
class MainWindow;
namespace window {

class KeyboardPanel : public QObject {
  Q_OBJECT

 public:
  // X11 and Wayland both report a key's evdev code plus this as its native scan code.
  static constexpr int kScanCodeOffset = 8;
  // X11 repeats a held key as a release and a press with one time stamp, and the
  // toolkit does not always mark them as repeats: a release waits this long for the
  // press that would make it a repeat before it counts.
  static constexpr int kRepeatWaitMs = 12;

  explicit KeyboardPanel(MainWindow& window);
  ~KeyboardPanel() override;

  const KeyboardHand& Hand() const { return hand_; }
  const PositionState& Positions() const { return positions_; }
  // Whether another round of passes is due at the next turn of the event loop.
  bool PassesPending() const { return pending_.isActive(); }
  // Whether a release still waits to see whether it was a repeat.
  bool ReleaseWaiting() const { return waitingRelease_.evdev >= 0; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // The held-key table follows one key event; false when it did not change.
  bool FollowKey(const QKeyEvent& key, bool ownWindow);
  // The release waiting to see whether a repeat's press follows counts now; whether
  // the held-key table changed.
  bool ReleaseWaitingKey();
  // The panic and slider keys; true when the key was taken.
  bool TakeWindowKey(const QKeyEvent& key, bool repeat, QWidget* receiver);
  static int EvdevOf(const QKeyEvent& key);
  // A repeat marked as one, or the press of a release that has the same time stamp.
  bool IsRepeat(const QKeyEvent& key) const;
  // One pass of each running position timer now, and another round at the next turn
  // of the event loop while any of them found a transition.
  void RunPasses();
  // Focus went elsewhere: every key counts as released and its note ends now.
  void LetGoOfEveryKey();
  void ChoosePositionButton(int button);
  void ChooseModeButton(int button);
  bool IsOwnWidget(const QObject* object) const;

  MainWindow& window_;
  HeldKeys held_;
  KeyboardHand hand_;
  PositionState positions_;
  QTimer pending_;
  struct WaitingRelease {
    int evdev = -1;  // none
    quint64 timestamp = 0;
  } waitingRelease_;
  QTimer repeatWait_;
};

}  // namespace window
}  // namespace lirenza
