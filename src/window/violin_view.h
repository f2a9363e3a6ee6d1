#pragma once
// The violin canvas as the fingerboard: a finger and its vibrating string are painted
// straight into the canvas's picture and wiped by painting the clean violin back over
// the spot. The picture is all there is: nothing remembers which fingers are down, so
// two notes on one string overdraw each other, and taking one off repaints that
// string at rest from its own cell on.
#include <QImage>
#include <QObject>
#include <QPointer>

#include "ports/ports.h"

namespace lirenza {

class MainWindow;
class PictureCanvas;

namespace window {

class ViolinView : public QObject, public FingerboardView {
  Q_OBJECT

 public:
  // Draws on the window's violin canvas and shows and hides its bow.
  explicit ViolinView(MainWindow& window);
  ~ViolinView() override;

  void ShowFinger(int string, int cell) override;
  void HideFinger(int string, int cell) override;
  // The panic wipe: the clean violin over every finger and string, shown at the next
  // repaint. The bow is left as it is; the note offs that follow hide it.
  void ShowCleanViolin() override;

  const QImage& Picture() const { return picture_; }

 private:
  // Paints with draw into the picture and shows the changed rectangle at once.
  template <typename Draw>
  void Change(const QRect& changed, Draw draw);

  QPointer<PictureCanvas> canvas_;
  QWidget* bow_ = nullptr;
  QImage violin_, fingertip_, stringAtRest_, stringVibrating_;
  QImage picture_;
};

}  // namespace window
}  // namespace lirenza
