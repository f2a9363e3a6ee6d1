#include "window/violin_view.h"

#include <QPainter>

#include "violin/fingerboard.h"
#include "window/main_window.h"
#include "window/picture_canvas.h"

namespace lirenza::window {
namespace {

QRect ToQRect(const Rect& r) { return {r.x, r.y, r.width, r.height}; }

}  // namespace

ViolinView::ViolinView(MainWindow& window)
    : QObject(&window),
      canvas_(qobject_cast<PictureCanvas*>(window.Control(layout::ControlId::ViolinCanvas))),
      bow_(window.Control(layout::ControlId::BowCanvas)),
      violin_(window.Pictures().Picture(QStringLiteral("Violin"))),
      fingertip_(window.Pictures().Picture(QStringLiteral("Yubi"))),
      stringAtRest_(window.Pictures().Picture(QStringLiteral("Gen"))),
      stringVibrating_(window.Pictures().Picture(QStringLiteral("GenS"))) {
  // Composed at the scale the violin was drawn at, so the fingers stay as sharp as it.
  const qreal scale = violin_.devicePixelRatio();
  const QSize size = canvas_ ? canvas_->size() : violin_.deviceIndependentSize().toSize();
  picture_ = QImage(size * scale, QImage::Format_ARGB32_Premultiplied);
  picture_.setDevicePixelRatio(scale);
  picture_.fill(Qt::transparent);
  QPainter(&picture_).drawImage(0, 0, violin_);
  if (canvas_) canvas_->ShowInPlace(&picture_);
}

// The canvas must not paint the picture once it is gone.
ViolinView::~ViolinView() {
  if (canvas_) canvas_->ShowInPlace(nullptr);
}

// The canvas shows the picture itself, not a copy: a note costs the few pixels it
// draws. The screen follows at the event loop's next turn, so the note is not held
// back by painting (the sound comes right after the picture is changed).
template <typename Draw>
void ViolinView::Change(const QRect& changed, Draw draw) {
  {
    QPainter painter(&picture_);
    draw(painter);
  }
  if (canvas_) canvas_->update(changed.isNull() ? canvas_->rect() : changed);
}

void ViolinView::ShowFinger(int string, int cell) {
  const HandGeometry at = HandGeometryAt(string, cell);
  if (!at.drawn) return;
  const QRect finger = ToQRect(at.finger), line = ToQRect(at.string);
  Change(finger | line, [&](QPainter& painter) {
    if (at.fingertip) painter.drawImage(finger.topLeft(), fingertip_);
    painter.drawImage(line, stringVibrating_);
  });
  if (bow_) bow_->show();
}

void ViolinView::HideFinger(int string, int cell) {
  const HandGeometry at = HandGeometryAt(string, cell);
  if (!at.drawn) return;
  const QRect finger = ToQRect(at.finger), line = ToQRect(at.string);
  Change(finger | line, [&](QPainter& painter) {
    // Copied, not blended: the clean square replaces whatever was drawn there.
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const qreal scale = violin_.devicePixelRatio();
    painter.drawImage(QRectF(finger), violin_,
                      QRectF(finger.x() * scale, finger.y() * scale, finger.width() * scale, finger.height() * scale));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(line, stringAtRest_);
  });
  if (bow_) bow_->hide();
}

void ViolinView::ShowCleanViolin() {
  Change(QRect(), [&](QPainter& painter) {
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, violin_);
  });
}

}  // namespace lirenza::window
