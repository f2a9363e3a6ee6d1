#pragma once
// The mouse as the left hand on the drawn violin: a press on a string sounds, shows and
// enters a note; its release ends it wherever the pointer is. When the release can no
// longer come (the window loses activation, a menu or a dialog takes the mouse, the
// violin is hidden), the note ends there and then, so none is left hanging.
#include <QObject>

#include "tuning/pure_scale.h"
#include "violin/fingerboard.h"

class QMouseEvent;
class QWidget;

namespace lirenza {
class MainWindow;
namespace window {

class FingerboardPanel : public QObject {
  Q_OBJECT

 public:
  explicit FingerboardPanel(MainWindow& window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool OnCanvas(QEvent* event);
  // True when the press sounded a note, which its release (or its loss) will end.
  bool Press(const QMouseEvent& event);
  void EndHeldNote();
  // Whether event, seen anywhere in the application while a note is held, is its
  // release or means the release will never reach the violin.
  bool MustEndHeldNote(QObject* watched, QEvent* event) const;

  MainWindow& window_;
  QWidget* canvas_ = nullptr;
  bool holding_ = false;
  FingerPress press_{};
  // The note is ended at the pitch it was started at, even if the key changed meanwhile.
  TuningTables tuningAtPress_;
};

}  // namespace window
}  // namespace lirenza
