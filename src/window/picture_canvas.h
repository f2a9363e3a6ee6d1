#pragma once
// A control that is only a picture: the staff head, the violin, the display panels.
// Given a picture for the mouse over it and one for a press, it is a drawn button and
// reports the press; without them it lets the press through to the window below, so
// the window can still be dragged by it.
#include <QImage>
#include <QWidget>

namespace lirenza {

class PictureCanvas : public QWidget {
  Q_OBJECT

 public:
  explicit PictureCanvas(QWidget* parent = nullptr);

  void SetPicture(const QImage& picture);
  // Shows a picture its owner keeps changing in place, without copying it: the owner
  // outlives the canvas's use of it and calls update() on the part it changed.
  void ShowInPlace(const QImage* picture);
  // Makes the canvas a button: the three pictures at rest, under the mouse and held.
  void SetButtonPictures(const QImage& atRest, const QImage& underMouse, const QImage& held);
  bool IsButton() const { return isButton_; }
  const QImage& ShownPicture() const { return inPlace_ ? *inPlace_ : shown_; }

 signals:
  void Pressed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void Show(const QImage& picture);

  bool isButton_ = false;
  QImage atRest_, underMouse_, held_;
  QImage shown_;
  const QImage* inPlace_ = nullptr;
};

}  // namespace lirenza
