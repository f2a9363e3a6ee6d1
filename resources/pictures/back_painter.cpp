// The twelve back pictures: the window is a violin's flamed maple back, varnished dark
// so the yellow and cyan texts of the layout stay readable, with one portrait each.
#include <QFont>
#include <QPainter>
#include <QRadialGradient>
#include <array>
#include <cmath>

#include "drawing.h"
#include "painters.h"
#include "portrait.h"

namespace lirenza::pictures {
namespace {

struct Varnish {
  QColor dark, light;  // the deep and the lit side of the flames
  double flameAngle;   // slope of the flames from the centre joint
  double flameWidth;
};

// Twelve varnishes of old instruments, from golden brown to near black.
constexpr std::array<std::array<int, 6>, 12> kVarnishes = {{
    {0x2c, 0x10, 0x06, 0x72, 0x34, 0x12}, {0x30, 0x14, 0x04, 0x7a, 0x42, 0x10},
    {0x26, 0x0c, 0x08, 0x6c, 0x22, 0x16}, {0x22, 0x12, 0x08, 0x60, 0x3a, 0x1a},
    {0x1c, 0x06, 0x06, 0x66, 0x16, 0x12}, {0x28, 0x16, 0x06, 0x70, 0x4a, 0x18},
    {0x1e, 0x10, 0x0a, 0x5a, 0x36, 0x22}, {0x2a, 0x0e, 0x02, 0x80, 0x3a, 0x0a},
    {0x18, 0x0c, 0x06, 0x54, 0x2e, 0x16}, {0x26, 0x08, 0x04, 0x74, 0x24, 0x0c},
    {0x14, 0x0c, 0x08, 0x48, 0x32, 0x22}, {0x2e, 0x18, 0x08, 0x76, 0x4c, 0x1c},
}};

constexpr double kJoint = 390.0;

// The outline: nearly the window's rectangle, with rounded corners and a slight waist
// at the middle of each long side, as the C-bouts of a violin.
QPainterPath Outline() {
  const double w = kBackSize.width, h = kBackSize.height, r = 16;
  auto waist = [w](double x) { double u = (x - w / 2) / 260.0; return 3.0 * std::exp(-u * u); };
  QPainterPath path;
  path.moveTo(r + 1, 1 + waist(r));
  for (double x = r; x <= w - r; x += 10) path.lineTo(x, 1 + waist(x));
  path.quadTo(w - 1, 1, w - 1, r);
  path.lineTo(w - 1, h - r);
  path.quadTo(w - 1, h - 1, w - r, h - 1 - waist(w - r));
  for (double x = w - r; x >= r; x -= 10) path.lineTo(x, h - 1 - waist(x));
  path.quadTo(1, h - 1, 1, h - r);
  path.lineTo(1, r);
  path.quadTo(1, 1, r, 1 + waist(r));
  path.closeSubpath();
  return path;
}

// Book-matched flames: stripes slanting away from the centre joint, their width and
// brightness wandering a little, over a slow glow where the arching catches light.
void Maple(QImage& image, const Varnish& v, int seed) {
  const double ca = std::cos(v.flameAngle), sa = std::sin(v.flameAngle);
  // Worked out at every pixel of the picture's own, from the window's coordinates.
  const double scale = image.devicePixelRatio();
  for (int row0 = 0; row0 < image.height(); ++row0) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(row0));
    const double y = row0 / scale;
    double d = std::abs(y - kJoint);
    for (int column = 0; column < image.width(); ++column) {
      const double x = column / scale;
      double along = x * ca + d * sa;
      double wobble = 9 * std::sin(x * 0.0061 + seed) + 5 * std::sin(d * 0.021 + x * 0.0023 + seed * 2.0);
      double flame = 0.5 + 0.5 * std::sin((along + wobble) / v.flameWidth);
      flame = std::pow(flame, 2.2) * (0.55 + 0.45 * std::sin(x * 0.0047 + seed * 1.7 + d * 0.003));
      double grain = 0.04 * std::sin(y * 0.9 + std::sin(x * 0.02) * 3) ;
      double dx = (x - 760.0) / 620.0, dy = (y - kJoint) / 460.0;
      double glow = std::max(0.0, 1.0 - (dx * dx + dy * dy)) * 0.35;
      double t = std::clamp(flame * 0.75 + glow + grain, 0.0, 1.0);
      auto mix = [t](int a, int b) { return std::clamp(int(a + (b - a) * t), 0, 255); };
      row[column] = qRgb(mix(v.dark.red(), v.light.red()), mix(v.dark.green(), v.light.green()),
                    mix(v.dark.blue(), v.light.blue()));
    }
  }
}

void Medallion(QPainter& p, int index) {
  const QPointF c(400, 690);
  const double rx = 62, ry = 72;
  // Gilt frame, an ivory ground, the sitter, the name along the foot.
  p.setPen(Qt::NoPen);
  p.setBrush(QColor(0, 0, 0, 110));
  p.drawEllipse(c + QPointF(3, 4), rx + 6, ry + 6);
  QRadialGradient gold(c - QPointF(20, 30), rx * 2);
  gold.setColorAt(0, QColor(0xf8, 0xe0, 0x90));
  gold.setColorAt(0.5, QColor(0xb8, 0x88, 0x30));
  gold.setColorAt(1, QColor(0x60, 0x3c, 0x0c));
  p.setBrush(gold);
  p.drawEllipse(c, rx + 5, ry + 5);
  QRadialGradient ivory(c - QPointF(10, 20), rx * 1.4);
  ivory.setColorAt(0, QColor(0xf6, 0xec, 0xd4));
  ivory.setColorAt(1, QColor(0xc8, 0xb4, 0x8a));
  p.setBrush(ivory);
  p.drawEllipse(c, rx, ry);
  p.save();
  QPainterPath oval;
  oval.addEllipse(c, rx, ry);
  p.setClipPath(oval);
  p.translate(c.x() - 6, c.y() + 4);
  DrawPortrait(p, index, QColor(0x2a, 0x18, 0x10));
  p.restore();
  p.setBrush(Qt::NoBrush);
  p.setPen(QPen(QColor(0x50, 0x30, 0x08), 1.2));
  p.drawEllipse(c, rx, ry);
}

void Edge(QPainter& p, const QPainterPath& outline) {
  // The rim of the back, darker, and the purfling inlaid a little inside it.
  p.setBrush(Qt::NoBrush);
  p.setPen(QPen(QColor(0x0c, 0x04, 0x02, 200), 8));
  p.drawPath(outline);
  p.setPen(QPen(QColor(0xff, 0xd8, 0xa0, 70), 1.2));
  p.drawPath(outline.translated(0, 0));
  QTransform inset;
  inset.translate(605, 390);
  inset.scale(1 - 28.0 / 1210, 1 - 28.0 / 780);
  inset.translate(-605, -390);
  QPainterPath purfling = inset.map(outline);
  p.setPen(QPen(QColor(0x0a, 0x04, 0x02), 3.4));
  p.drawPath(purfling);
  // The maple strip of the purfling stays dim where it passes under the title.
  p.setPen(QPen(QColor(0x70, 0x52, 0x30), 1.0));
  p.drawPath(purfling);
  // The centre joint, faint.
  p.setPen(QPen(QColor(0, 0, 0, 40), 1));
  p.drawLine(QPointF(30, kJoint + 0.5), QPointF(1180, kJoint + 0.5));
}

}  // namespace

void DrawBack(int index, PictureSet& out) {
  const auto& k = kVarnishes[static_cast<size_t>(index)];
  Varnish v{QColor(k[0], k[1], k[2]), QColor(k[3], k[4], k[5]), 0.35 + 0.07 * (index % 5),
            7.0 + 1.5 * (index % 4)};
  QImage wood = NewPicture(kBackSize);
  Maple(wood, v, index * 3 + 1);
  QImage image = NewPicture(kBackSize);
  QPainter p(&image);
  BeginSmooth(p);
  QPainterPath outline = Outline();
  p.setClipPath(outline);
  p.drawImage(0, 0, wood);
  Edge(p, outline);
  Medallion(p, index);
  p.end();
  out["ViolinBack" + std::to_string(index)] = image;
}

}  // namespace lirenza::pictures
