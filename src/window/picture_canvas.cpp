#include "window/picture_canvas.h"

#include <QMouseEvent>
#include <QPainter>

namespace lirenza {

PictureCanvas::PictureCanvas(QWidget* parent) : QWidget(parent) {}

void PictureCanvas::SetPicture(const QImage& picture) {
  atRest_ = picture;
  Show(picture);
}

void PictureCanvas::SetButtonPictures(const QImage& atRest, const QImage& underMouse, const QImage& held) {
  isButton_ = true;
  atRest_ = atRest;
  underMouse_ = underMouse;
  held_ = held;
  Show(atRest_);
}

void PictureCanvas::Show(const QImage& picture) {
  inPlace_ = nullptr;
  shown_ = picture;
  update();
}

void PictureCanvas::ShowInPlace(const QImage* picture) {
  inPlace_ = picture;
  update();
}

void PictureCanvas::paintEvent(QPaintEvent* event) {
  const QImage& picture = ShownPicture();
  if (picture.isNull()) return;
  // Pictures are made at the canvas's size (a wider one is cut); only the part asked
  // for is drawn, so a small change costs a small paint.
  const QRect part = event->rect();
  const qreal scale = picture.devicePixelRatio();
  QPainter(this).drawImage(QRectF(part), picture,
                           QRectF(part.x() * scale, part.y() * scale, part.width() * scale, part.height() * scale));
}

void PictureCanvas::mousePressEvent(QMouseEvent* event) {
  if (!isButton_ || event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  Show(held_);
  // Shown before the press is reported: the press may take a while, or close the window.
  repaint();
  emit Pressed();
}

void PictureCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (!isButton_) {
    event->ignore();
    return;
  }
  Show(atRest_);
}

void PictureCanvas::enterEvent(QEnterEvent*) {
  if (isButton_) Show(underMouse_);
}

void PictureCanvas::leaveEvent(QEvent*) {
  if (isButton_) Show(atRest_);
}

}  // namespace lirenza
