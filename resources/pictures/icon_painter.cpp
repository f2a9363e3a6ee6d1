// The program's icon: a violin standing beside a treble clef on a dark tile. It is
// drawn once as paths on a 256-unit canvas, so the scalable file and every PNG size
// come from the same strokes (a small size is the canvas scaled down, not a copy of
// the large picture shrunk).
#include <QDir>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <QSvgGenerator>

#include "drawing.h"
#include "painters.h"

namespace lirenza::pictures {
namespace {

constexpr double kCanvas = 256;
constexpr double kAxis = 158;  // the violin's centre line

const QColor kTileTop(0x3a, 0x30, 0x29);
const QColor kTileBottom(0x19, 0x19, 0x19);
const QColor kEbony(0x1d, 0x17, 0x14);
const QColor kVarnishLight(0xe0, 0x8a, 0x3c);
const QColor kVarnishDark(0x8a, 0x3b, 0x12);
const QColor kStringColour(0xee, 0xe6, 0xd2);

// Points given for the right half of the instrument, mirrored about the axis.
QPointF Right(double dx, double y) { return {kAxis + dx, y}; }

// The body seen from the front: upper bout, the C-bouts between their corners, the
// wider lower bout. The right half is built as curves and mirrored.
QPainterPath Body() {
  QPainterPath half;
  half.moveTo(Right(0, 92));
  half.cubicTo(Right(24, 91), Right(42, 100), Right(42, 120));
  half.cubicTo(Right(42, 131), Right(38, 137), Right(32, 140));
  half.lineTo(Right(36, 145));
  half.cubicTo(Right(26, 150), Right(24, 158), Right(24, 166));
  half.cubicTo(Right(24, 174), Right(26, 182), Right(36, 187));
  half.lineTo(Right(33, 191));
  half.cubicTo(Right(50, 197), Right(54, 210), Right(54, 220));
  half.cubicTo(Right(54, 238), Right(32, 246), Right(0, 246));
  QPolygonF right = half.toFillPolygon();
  right.removeLast();  // toFillPolygon closes the polygon
  QPolygonF whole = right;
  for (qsizetype i = right.size() - 1; i >= 0; --i)
    whole << QPointF(2 * kAxis - right[i].x(), right[i].y());
  QPainterPath body;
  body.addPolygon(whole);
  body.closeSubpath();
  return body;
}

// One sound hole, side -1 on the left and +1 on the right: an S from the upper eye
// down to the lower one, its nicks level with the bridge.
QPainterPath SoundHole(double side) {
  auto at = [side](double dx, double y) { return QPointF(kAxis + side * dx, y); };
  QPainterPath f;
  f.moveTo(at(20, 156));
  f.cubicTo(at(14, 166), at(26, 176), at(20, 190));
  f.cubicTo(at(22, 176), at(10, 166), at(20, 156));
  f.closeSubpath();
  f.addEllipse(at(20.5, 155), 2.6, 2.6);
  f.addEllipse(at(19.5, 191), 2.6, 2.6);
  return f;
}

void PaintViolin(QPainter& p) {
  QLinearGradient varnish(kAxis - 54, 92, kAxis + 54, 246);
  varnish.setColorAt(0, kVarnishLight);
  varnish.setColorAt(1, kVarnishDark);
  QPainterPath body = Body();
  p.fillPath(body, varnish);
  p.strokePath(body, QPen(kEbony, 3));  // the purfling's dark edge
  p.fillPath(SoundHole(-1), kEbony);
  p.fillPath(SoundHole(+1), kEbony);

  // Scroll and peg box above the neck.
  QRadialGradient scrollShade(kAxis - 3, 22, 16);
  scrollShade.setColorAt(0, kVarnishLight);
  scrollShade.setColorAt(1, kVarnishDark);
  p.setPen(QPen(kEbony, 2));
  p.setBrush(scrollShade);
  p.drawEllipse(QPointF(kAxis, 24), 12, 13);
  p.setBrush(Qt::NoBrush);
  p.drawEllipse(QPointF(kAxis + 1, 23), 5, 5.5);
  p.setBrush(kVarnishDark);
  p.drawRect(QRectF(kAxis - 7, 34, 14, 26));
  p.setBrush(kEbony);
  for (double y : {40.0, 52.0}) {
    p.drawRect(QRectF(kAxis - 18, y - 2, 11, 4));
    p.drawRect(QRectF(kAxis + 7, y + 3, 11, 4));
  }

  // Fingerboard over the neck and the upper body, then the tailpiece.
  p.setPen(Qt::NoPen);
  p.setBrush(kEbony);
  p.drawPolygon(QPolygonF{Right(-5, 58), Right(5, 58), Right(9, 150), Right(-9, 150)});
  p.drawPolygon(QPolygonF{Right(-8, 200), Right(8, 200), Right(5, 236), Right(-5, 236)});

  // Bridge, then the four strings from the nut to the tailpiece over it.
  p.setBrush(QColor(0xf1, 0xd9, 0xa8));
  p.drawRoundedRect(QRectF(kAxis - 15, 172, 30, 5), 2, 2);
  p.setPen(QPen(kStringColour, 1.4));
  for (int s = 0; s < 4; ++s) {
    double nut = -4.5 + 3 * s, bridge = -10.5 + 7 * s, tail = -6 + 4 * s;
    p.drawLine(Right(nut, 60), Right(bridge, 174));
    p.drawLine(Right(bridge, 174), Right(tail, 202));
  }
}

}  // namespace

void PaintIcon(QPainter& p, const MusicFont& font) {
  BeginSmooth(p);
  QLinearGradient tileShade(0, 8, 0, kCanvas - 8);
  tileShade.setColorAt(0, kTileTop);
  tileShade.setColorAt(1, kTileBottom);
  p.setPen(Qt::NoPen);
  p.setBrush(tileShade);
  p.drawRoundedRect(QRectF(8, 8, kCanvas - 16, kCanvas - 16), 40, 40);

  // The clef in the paper colour of the staff, its curl round the G line at 150.
  DrawGlyph(p, font, "clefs.G", 36, 150, colour::kPaper, 1.0, 1.0, 24);
  PaintViolin(p);
}

QString DrawIcons(const MusicFont& font, const QString& outDir, const QString& name) {
  QDir root(outDir);
  const QString scalableDir = QStringLiteral("scalable/apps");
  if (!root.mkpath(scalableDir)) return QStringLiteral("cannot make %1").arg(root.filePath(scalableDir));
  QSvgGenerator svg;
  svg.setFileName(root.filePath(scalableDir + "/" + name + ".svg"));
  svg.setSize(QSize(kCanvas, kCanvas));
  svg.setViewBox(QRectF(0, 0, kCanvas, kCanvas));
  svg.setTitle(QStringLiteral("Lirenza"));
  {
    QPainter painter;
    if (!painter.begin(&svg)) return QStringLiteral("cannot write %1").arg(svg.fileName());
    PaintIcon(painter, font);
  }
  for (int size : kIconSizes) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
      QPainter painter(&image);
      painter.scale(size / kCanvas, size / kCanvas);
      PaintIcon(painter, font);
    }
    const QString dir = QStringLiteral("%1x%1/apps").arg(size);
    const QString file = root.filePath(dir + "/" + name + ".png");
    if (!root.mkpath(dir) || !image.save(file, "png")) return QStringLiteral("cannot write %1").arg(file);
  }
  return {};
}

}  // namespace lirenza::pictures
