#include "portrait.h"

#include <QLinearGradient>
#include <QPainterPath>
#include <array>
#include <cmath>
#include <vector>

namespace lirenza::pictures {
namespace {

enum Hair { kFullWig, kCurlWig, kQueueWig, kShortNatural, kLongLoose, kShortWavy, kWavyLong, kMane, kParted };
enum Beard { kNone, kWhiskers, kMoustache, kMoustacheGoatee, kFullBeard, kBigMoustache };
enum Collar { kJabot, kStock, kWing };

struct Sitter {
  Hair hair;
  Beard beard;
  Collar collar;
  double nose;   // length of the nose, pixels beyond the brow
  double chin;   // how far the chin comes forward
  double brow;   // slope of the forehead
  double scale;  // size of the head
};

constexpr std::array<Sitter, 12> kSitters = {{
    {kFullWig, kNone, kJabot, 9, 0, 3, 1.0},             // Corelli
    {kCurlWig, kNone, kJabot, 11, -2, 5, 0.97},          // Vivaldi
    {kQueueWig, kNone, kJabot, 8, 1, 2, 1.0},            // Tartini
    {kShortNatural, kNone, kStock, 10, 2, 4, 0.98},      // Viotti
    {kLongLoose, kNone, kStock, 12, -1, 6, 0.93},        // Paganini
    {kShortWavy, kWhiskers, kStock, 8, 2, 2, 1.04},      // Spohr
    {kShortWavy, kMoustacheGoatee, kWing, 8, 1, 3, 1.0}, // Vieuxtemps
    {kWavyLong, kMoustache, kWing, 9, 0, 4, 1.0},        // Wieniawski
    {kShortWavy, kFullBeard, kWing, 9, 2, 3, 1.02},      // Joachim
    {kShortWavy, kBigMoustache, kWing, 7, 1, 2, 0.98},   // Sarasate
    {kMane, kNone, kWing, 9, 4, 2, 1.1},                 // Ysaÿe
    {kParted, kMoustache, kWing, 8, 1, 3, 1.0},          // Kreisler
}};

// A closed smooth curve through the points (Catmull-Rom as cubic Béziers).
QPainterPath Smooth(const std::vector<QPointF>& pts) {
  QPainterPath path;
  size_t n = pts.size();
  path.moveTo(pts[0]);
  for (size_t i = 0; i < n; ++i) {
    QPointF p0 = pts[(i + n - 1) % n], p1 = pts[i], p2 = pts[(i + 1) % n], p3 = pts[(i + 2) % n];
    path.cubicTo(p1 + (p2 - p0) / 6.0, p2 - (p3 - p1) / 6.0, p2);
  }
  path.closeSubpath();
  return path;
}

QPainterPath Curls(QPointF from, QPointF to, int count, double r) {
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);  // overlapping curls fill as one
  for (int i = 0; i < count; ++i) {
    double t = count == 1 ? 0 : double(i) / (count - 1);
    path.addEllipse(from + (to - from) * t, r, r * 1.15);
  }
  return path;
}

QPainterPath HeadAndShoulders(const Sitter& s) {
  double n = s.nose, c = s.chin, b = s.brow;
  std::vector<QPointF> pts = {
      {-6, -62},           // crown
      {12, -56},           // top of forehead
      {20 + b * 0.2, -44}, // forehead
      {23, -33},           // brow
      {21, -28},           // bridge of the nose
      {22 + n, -16},       // tip of the nose
      {22, -12},           // under the nose
      {24, -8},            // upper lip
      {22, -5},
      {23, -2},            // lower lip
      {20 + c, 6},         // chin
      {12, 13},            // under the jaw
      {6, 22},             // throat
      {10, 34},            // front of the neck
      {34, 46},            // chest
      {46, 70},            // shoulder front, cut by the medallion
      {-56, 70},           // back of the shoulders
      {-44, 44},
      {-22, 28},           // nape
      {-26, 4},
      {-32, -22},          // back of the head
      {-26, -48},
  };
  return Smooth(pts);
}

QPainterPath HairShape(const Sitter& s) {
  QPainterPath hair;
  hair.setFillRule(Qt::WindingFill);
  switch (s.hair) {
    case kFullWig:  // the full-bottomed wig, curls down to the chest behind the face
      hair.addEllipse(QPointF(-10, -30), 36, 38);
      hair.addPath(Curls({-30, -10}, {-28, 40}, 5, 11));
      hair.addPath(Curls({-14, -4}, {-4, 46}, 5, 10));
      hair.addPath(Curls({4, -62}, {-30, -60}, 3, 11));
      break;
    case kCurlWig:
      hair.addEllipse(QPointF(-8, -32), 32, 33);
      hair.addPath(Curls({-28, -10}, {-22, 22}, 4, 9));
      hair.addPath(Curls({-10, -6}, {-8, 14}, 3, 7));
      break;
    case kQueueWig:  // powdered rolls over the ear and a tied tail
      hair.addEllipse(QPointF(-6, -34), 30, 30);
      hair.addPath(Curls({-12, -14}, {-2, -14}, 2, 6));
      hair.addRoundedRect(QRectF(-44, 2, 14, 30), 6, 6);
      hair.addEllipse(QPointF(-37, 4), 8, 6);
      break;
    case kShortNatural:
      hair.addEllipse(QPointF(-6, -36), 30, 28);
      hair.addEllipse(QPointF(-20, -14), 14, 18);
      break;
    case kLongLoose:  // long dark hair falling to the shoulders
      hair.addEllipse(QPointF(-8, -34), 32, 32);
      hair.addPath(Smooth({{-36, -30}, {-20, -20}, {-6, -10}, {-6, 20}, {-14, 42}, {-30, 46}, {-44, 30}, {-42, 0}}));
      hair.addPath(Smooth({{6, -66}, {24, -54}, {20, -46}, {4, -50}}));
      break;
    case kShortWavy:
      hair.addPath(Curls({12, -58}, {-30, -44}, 5, 9));
      hair.addEllipse(QPointF(-8, -36), 29, 27);
      hair.addEllipse(QPointF(-22, -14), 12, 16);
      break;
    case kWavyLong:
      hair.addPath(Curls({10, -60}, {-34, -40}, 5, 10));
      hair.addEllipse(QPointF(-8, -34), 31, 30);
      hair.addPath(Curls({-30, -16}, {-26, 14}, 3, 10));
      break;
    case kMane:  // a mane swept back from a high forehead
      hair.addPath(Smooth({{2, -62}, {-20, -72}, {-46, -54}, {-52, -22}, {-44, 6}, {-26, 4}, {-14, -24}, {-2, -44}}));
      break;
    case kParted:
      hair.addPath(Smooth({{16, -56}, {4, -66}, {-20, -64}, {-34, -40}, {-30, -14}, {-16, -16}, {-12, -42}, {6, -52}}));
      break;
  }
  return hair;
}

QPainterPath BeardShape(const Sitter& s) {
  QPainterPath beard;
  beard.setFillRule(Qt::WindingFill);
  switch (s.beard) {
    case kNone: break;
    case kWhiskers: beard.addPath(Smooth({{-6, -18}, {4, -10}, {6, 8}, {-2, 14}, {-10, 0}})); break;
    case kMoustache: beard.addPath(Smooth({{17, -12}, {25, -11}, {27, -6}, {19, -7}})); break;
    case kMoustacheGoatee:
      beard.addPath(Smooth({{17, -12}, {25, -11}, {27, -6}, {19, -7}}));
      beard.addPath(Smooth({{18, 0}, {24, 2}, {24, 14}, {18, 12}}));
      break;
    case kFullBeard:
      beard.addPath(Smooth({{24, -10}, {28, 4}, {24, 24}, {10, 30}, {-4, 16}, {-8, -8}, {10, -6}}));
      break;
    case kBigMoustache:
      beard.addPath(Smooth({{14, -12}, {26, -12}, {34, -10}, {30, -6}, {20, -6}}));
      break;
  }
  return beard;
}

// The white at the throat: a lace jabot falling down the chest, a high stock wound
// round the neck, or a wing collar.
QPainterPath CollarShape(const Sitter& s) {
  QPainterPath collar;
  collar.setFillRule(Qt::WindingFill);
  switch (s.collar) {
    case kJabot:
      collar.addPath(Curls({9, 27}, {16, 52}, 5, 4.5));
      collar.addPath(Smooth({{4, 24}, {12, 24}, {18, 40}, {20, 56}, {10, 56}, {6, 36}}));
      break;
    case kStock: collar.addPath(Smooth({{3, 21}, {10, 22}, {12, 33}, {4, 34}, {-6, 30}, {-6, 22}})); break;
    case kWing: collar.addPath(Smooth({{5, 25}, {11, 27}, {12, 33}, {5, 32}})); break;
  }
  return collar;
}

}  // namespace

void DrawPortrait(QPainter& p, int index, QColor ink) {
  const Sitter& s = kSitters[static_cast<size_t>(index) % kSitters.size()];
  p.save();
  p.scale(s.scale, s.scale);
  // The figure in deep brown; hair and beard blacker with a few strands of light,
  // the collar white, so that each sitter's fashion shows inside the outline too.
  QPainterPath figure = HeadAndShoulders(s);
  figure.setFillRule(Qt::WindingFill);
  p.fillPath(figure, ink);
  QPainterPath hair = HairShape(s).united(BeardShape(s));
  p.fillPath(hair, ink.darker(250));
  QLinearGradient sheen(-30, -70, 10, -20);
  sheen.setColorAt(0, QColor(255, 235, 200, 40));
  sheen.setColorAt(1, QColor(255, 235, 200, 0));
  p.fillPath(hair, sheen);
  p.fillPath(CollarShape(s), QColor(0xee, 0xe4, 0xd0));
  if (s.collar == kWing)  // and its black bow tie
    p.fillPath(Smooth({{8, 33}, {14, 30}, {14, 37}, {8, 35}, {2, 37}, {2, 30}}), ink.darker(300));
  p.setPen(QPen(QColor(255, 240, 210, 70), 0.8));
  p.setBrush(Qt::NoBrush);
  p.drawPath(figure.united(hair));
  p.restore();
}

}  // namespace lirenza::pictures
