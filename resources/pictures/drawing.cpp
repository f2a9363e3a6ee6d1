#include "drawing.h"

#include "painters.h"
#include "score/note_tables.h"

namespace lirenza::pictures {

namespace {
thread_local int pictureScale = 1;
}  // namespace

void SetPictureScale(int scale) { pictureScale = std::max(1, scale); }
int PictureScale() { return pictureScale; }

QImage NewPicture(PictureSize size, QColor fill) {
  QImage image(size.width * pictureScale, size.height * pictureScale, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(pictureScale);
  image.fill(fill);
  return image;
}

void BeginSmooth(QPainter& painter) {
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
  painter.setPen(Qt::NoPen);
}

void HLine(QImage& image, int x0, int x1, int y, QColor colour) {
  FillRect(image, x0, y, x1, y, colour);
}

void VLine(QImage& image, int x, int y0, int y1, QColor colour) {
  FillRect(image, x, y0, x, y1, colour);
}

void FillRect(QImage& image, int x0, int y0, int x1, int y1, QColor colour) {
  QRgb pixel = colour.rgba();
  pixel = qPremultiply(pixel);
  const int s = static_cast<int>(image.devicePixelRatio());
  x0 *= s, y0 *= s, x1 = (x1 + 1) * s - 1, y1 = (y1 + 1) * s - 1;
  x0 = std::max(x0, 0);
  y0 = std::max(y0, 0);
  x1 = std::min(x1, image.width() - 1);
  y1 = std::min(y1, image.height() - 1);
  for (int y = y0; y <= y1; ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = x0; x <= x1; ++x) row[x] = pixel;
  }
}

void Dot(QImage& image, int x, int y, QColor colour) { FillRect(image, x, y, x, y, colour); }

QColor ColourAt(const QImage& image, int x, int y) {
  const int s = static_cast<int>(image.devicePixelRatio());
  return image.valid(x * s, y * s) ? image.pixelColor(x * s, y * s) : QColor();
}

void HLine(QPainter& painter, int x0, int x1, int y, QColor colour) { FillRect(painter, x0, y, x1, y, colour); }

void VLine(QPainter& painter, int x, int y0, int y1, QColor colour) { FillRect(painter, x, y0, x, y1, colour); }

void FillRect(QPainter& painter, int x0, int y0, int x1, int y1, QColor colour) {
  painter.fillRect(QRectF(x0, y0, x1 - x0 + 1, y1 - y0 + 1), colour);
}

QImage Rasterize(PictureSize size, const std::function<void(QPainter&)>& paint, QColor fill) {
  QImage image = NewPicture(size, fill);
  QPainter painter(&image);
  BeginSmooth(painter);
  paint(painter);
  return image;
}

void DrawGlyph(QPainter& painter, const MusicFont& font, const std::string& name, double x,
               double y, QColor colour, double sx, double sy, double staffSpace) {
  QPainterPath path = font.Glyph(name, staffSpace);
  QTransform place;
  place.translate(x, y);
  place.scale(sx, sy);
  painter.fillPath(place.map(path), colour);
}

QRectF GlyphBox(const MusicFont& font, const std::string& name, double sx, double sy,
                double staffSpace) {
  QRectF box = font.Glyph(name, staffSpace).boundingRect();
  return QRectF(box.left() * sx, box.top() * sy, box.width() * sx, box.height() * sy);
}

bool PaintPicture(QPainter& painter, const MusicFont& font, const std::string& name) {
  painter.save();
  BeginSmooth(painter);
  const bool painted = PaintNotePicture(painter, font, name) || PaintSignaturePicture(painter, font, name) ||
                       PaintStaffPicture(painter, font, name);
  painter.restore();
  return painted;
}

int StaffRow(int pitch, int canvasTop) { return lirenza::EntryTopOfPitch(pitch) + 18 - canvasTop; }

}  // namespace lirenza::pictures
