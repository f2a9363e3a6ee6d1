#include "portrait.h"

#include <QLinearGradient>
#include <QRadialGradient>
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

// The colours each sitter is painted in: hair (and beard), coat, and how fair or
// weathered his skin, as the portraits of their day show them.
struct Palette {
  QRgb hair;
  QRgb coat;
  QRgb skin;
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
    {kMane, kNone, kWing, 9, 4, 2, 1.04},                // Ysaÿe
    {kParted, kMoustache, kWing, 8, 1, 3, 1.0},          // Kreisler
}};

constexpr std::array<Palette, 12> kPalettes = {{
    {0x4a3020, 0x6e1e1a, 0xe8c4a0},  // Corelli: dark brown full wig, claret velvet
    {0x9a4a22, 0x1e1a1c, 0xeac8a6},  // Vivaldi: the red priest, in black
    {0xe6e2da, 0x4a5a70, 0xe6c2a0},  // Tartini: powdered wig, slate-blue coat
    {0x8a6a4c, 0x2e4a38, 0xe4c09c},  // Viotti: natural hair, bottle-green coat
    {0x181414, 0x141214, 0xf0d8c0},  // Paganini: black hair, pale, all in black
    {0x6a4a30, 0x22304a, 0xe2bc98},  // Spohr: brown hair and whiskers, navy coat
    {0x3a2a20, 0x1a1a1e, 0xe6c2a0},  // Vieuxtemps
    {0x241a16, 0x1c1a1e, 0xe4be9a},  // Wieniawski
    {0x7a7068, 0x1e1c20, 0xe2bc98},  // Joachim: greying beard
    {0x1c1816, 0x18181c, 0xd8b08a},  // Sarasate: black hair, olive skin
    {0x6e5e50, 0x1c1a1e, 0xe8c0a0},  // Ysaÿe
    {0x4a3a2e, 0x34363c, 0xe6c4a2},  // Kreisler: dark grey suit
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

// Each curl's box, kept when asked for, so it can be given its own light and shade.
QPainterPath Curls(QPointF from, QPointF to, int count, double r, std::vector<QRectF>* boxes = nullptr) {
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);  // overlapping curls fill as one
  for (int i = 0; i < count; ++i) {
    double t = count == 1 ? 0 : double(i) / (count - 1);
    const QPointF centre = from + (to - from) * t;
    path.addEllipse(centre, r, r * 1.15);
    if (boxes) boxes->push_back(QRectF(centre - QPointF(r, r * 1.15), QSizeF(2 * r, 2.3 * r)));
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

QPainterPath HairShape(const Sitter& s, std::vector<QRectF>* curls = nullptr) {
  QPainterPath hair;
  hair.setFillRule(Qt::WindingFill);
  switch (s.hair) {
    case kFullWig:  // the full-bottomed wig, curls down to the chest behind the face
      hair.addEllipse(QPointF(-10, -30), 36, 38);
      hair.addPath(Curls({-30, -10}, {-28, 40}, 5, 11, curls));
      hair.addPath(Curls({-14, -4}, {-4, 46}, 5, 10, curls));
      hair.addPath(Curls({4, -62}, {-30, -60}, 3, 11, curls));
      break;
    case kCurlWig:
      hair.addEllipse(QPointF(-8, -32), 32, 33);
      hair.addPath(Curls({-28, -10}, {-22, 22}, 4, 9, curls));
      hair.addPath(Curls({-10, -6}, {-8, 14}, 3, 7, curls));
      break;
    case kQueueWig:  // powdered rolls over the ear and a tied tail
      hair.addEllipse(QPointF(-6, -34), 30, 30);
      hair.addPath(Curls({-12, -14}, {-2, -14}, 2, 6, curls));
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
      hair.addPath(Curls({12, -58}, {-30, -44}, 5, 9, curls));
      hair.addEllipse(QPointF(-8, -36), 29, 27);
      hair.addEllipse(QPointF(-22, -14), 12, 16);
      break;
    case kWavyLong:
      hair.addPath(Curls({10, -60}, {-34, -40}, 5, 10, curls));
      hair.addEllipse(QPointF(-8, -34), 31, 30);
      hair.addPath(Curls({-30, -16}, {-26, 14}, 3, 10, curls));
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
      beard.addPath(Smooth({{16, -2}, {22, -1}, {24, 8}, {20, 14}, {15, 8}}));  // grown from the chin
      break;
    case kFullBeard:
      // From the sideburn down the cheek and round the chin, with the moustache over the lip.
      beard.addPath(Smooth({{-1, -22}, {6, -14}, {16, -11}, {25, -10}, {27, -5}, {27, 6}, {24, 20},
                            {14, 29}, {2, 27}, {-6, 14}, {-5, -4}}));
      break;
    case kBigMoustache:
      beard.addPath(Smooth({{14, -12}, {26, -12}, {34, -10}, {30, -6}, {20, -6}}));
      break;
  }
  return beard;
}

// The white at the throat: a lace jabot falling down the chest, a high stock wound
// round the neck, or a wing collar.
QPainterPath CollarShape(const Sitter& s, std::vector<QRectF>* ruffles = nullptr) {
  QPainterPath collar;
  collar.setFillRule(Qt::WindingFill);
  switch (s.collar) {
    case kJabot:
      collar.addPath(Curls({9, 27}, {16, 52}, 5, 4.5, ruffles));
      collar.addPath(Smooth({{4, 24}, {12, 24}, {18, 40}, {20, 56}, {10, 56}, {6, 36}}));
      break;
    case kStock: collar.addPath(Smooth({{3, 21}, {10, 22}, {12, 33}, {4, 34}, {-6, 30}, {-6, 22}})); break;
    case kWing: collar.addPath(Smooth({{5, 25}, {11, 27}, {12, 33}, {5, 32}})); break;
  }
  return collar;
}

}  // namespace

namespace {

// The face's features, all to the right where the sitter looks: eye, brow, nostril,
// mouth and a little colour on the cheek.
void PaintFeatures(QPainter& p, const Sitter& s, const Palette& colours) {
  const QColor skin = QColor::fromRgb(colours.skin), hair = QColor::fromRgb(colours.hair);
  QRadialGradient cheek(QPointF(13, -13), 9);
  cheek.setColorAt(0, QColor(220, 110, 100, 70));
  cheek.setColorAt(1, QColor(220, 110, 100, 0));
  p.setPen(Qt::NoPen);
  p.setBrush(cheek);
  p.drawEllipse(QPointF(13, -13), 9, 9);
  // The eye in profile: a small almond of white, the iris looking ahead, a lid over it.
  QPainterPath eye;
  eye.moveTo(11.5, -27);
  eye.quadTo(15, -29.2, 18.4, -27.2);
  eye.quadTo(15, -25.6, 11.5, -27);
  p.fillPath(eye, QColor(0xf4, 0xee, 0xe6));
  p.setBrush(QColor(0x3a, 0x26, 0x1a));
  p.drawEllipse(QPointF(16.6, -27.3), 1.25, 1.35);
  p.setBrush(Qt::NoBrush);
  p.setPen(QPen(QColor(0x4a, 0x2c, 0x20), 0.7, Qt::SolidLine, Qt::RoundCap));
  p.drawPath(QPainterPath(eye));
  p.setPen(QPen(skin.darker(135), 0.6));
  p.drawArc(QRectF(11, -30.5, 8, 4), 20 * 16, 140 * 16);  // the fold above the lid
  // The brow, in the hair's colour (white wigs over dark brows).
  const QColor brow = qGray(hair.rgb()) > 180 ? QColor(0x6a, 0x5a, 0x4a) : hair.darker(110);
  p.setPen(QPen(brow, 1.3, Qt::SolidLine, Qt::RoundCap));
  QPainterPath browLine;
  browLine.moveTo(9.5, -31);
  browLine.quadTo(15, -34, 20.5, -32);
  p.drawPath(browLine);
  // Nostril and the line of the lips.
  p.setPen(QPen(skin.darker(160), 0.8, Qt::SolidLine, Qt::RoundCap));
  p.drawArc(QRectF(18.5 + s.nose * 0.35, -16.5, 3.5, 3), 200 * 16, 160 * 16);
  p.setPen(QPen(QColor(0x8a, 0x40, 0x38), 0.9, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(19, -5.4), QPointF(23.2, -5.0));
  p.setPen(QPen(QColor(0xb8, 0x60, 0x58, 160), 1.4, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(20.5, -3.6), QPointF(22.6, -3.4));
}

// Light from the front and above: a gradient over the whole shape, then fine strands
// of a lighter tone that follow the hair back from the brow.
void PaintHair(QPainter& p, const QPainterPath& hair, QColor colour, int seed) {
  QLinearGradient light(20, -70, -40, 30);
  light.setColorAt(0, colour.lighter(135));
  light.setColorAt(0.5, colour);
  light.setColorAt(1, colour.darker(170));
  p.fillPath(hair, light);
  p.save();
  p.setClipPath(hair, Qt::IntersectClip);
  p.setBrush(Qt::NoBrush);
  const QColor strand = qGray(colour.rgb()) > 180 ? colour.darker(125) : colour.lighter(160);
  for (int i = 0; i < 14; ++i) {
    QColor c = strand;
    c.setAlpha(90 + (i * 37 + seed * 11) % 80);
    p.setPen(QPen(c, 0.7, Qt::SolidLine, Qt::RoundCap));
    QPainterPath line;
    const double x = 16 - i * 5.5, wave = ((i + seed) % 3 - 1) * 4.0;
    line.moveTo(x, -66);
    line.cubicTo(x - 10, -50 + wave, x - 18, -20 - wave, x - 26 + wave, 10 + i * 3);
    p.drawPath(line);
  }
  p.restore();
}

// A curl or a ruffle of lace rounded by the light: bright where it turns to the front
// and the top, a fine shadow under it.
void RoundOff(QPainter& p, const std::vector<QRectF>& boxes, QColor colour) {
  for (const QRectF& box : boxes) {
    const double r = box.width() / 2;
    QRadialGradient round(box.center() + QPointF(r * 0.35, -r * 0.4), r * 1.3);
    QColor light = colour.lighter(qGray(colour.rgb()) > 180 ? 108 : 150);
    light.setAlpha(150);
    round.setColorAt(0, light);
    light.setAlpha(0);
    round.setColorAt(1, light);
    p.setPen(Qt::NoPen);
    p.setBrush(round);
    p.drawEllipse(box);
    QColor shade = colour.darker(170);
    shade.setAlpha(170);
    p.setPen(QPen(shade, 0.8, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    p.drawArc(box.adjusted(0.6, 0.6, -0.6, -0.6), 200 * 16, 150 * 16);
  }
}

}  // namespace

void DrawPortrait(QPainter& p, int index, QColor /*ink: the portraits are in colour now*/) {
  const int which = ((index % 12) + 12) % 12;
  const Sitter& s = kSitters[static_cast<size_t>(which)];
  const Palette& colours = kPalettes[static_cast<size_t>(which)];
  const QColor skin = QColor::fromRgb(colours.skin), coatColour = QColor::fromRgb(colours.coat);
  const QColor hairColour = QColor::fromRgb(colours.hair);
  p.save();
  p.setRenderHint(QPainter::Antialiasing);
  p.scale(s.scale, s.scale);
  QPainterPath figure = HeadAndShoulders(s);
  figure.setFillRule(Qt::WindingFill);

  // Below the collar the coat, above it the skin: the face lit from the front.
  QPainterPath body;
  body.addRect(QRectF(-80, 26, 160, 80));
  body.addPath(Smooth({{-30, 24}, {-6, 18}, {8, 24}, {4, 34}, {-24, 36}}));
  const QPainterPath coat = figure.intersected(body);
  const QPainterPath face = figure.subtracted(coat);
  // The hair behind the head first; the face covers what would fall over it, and the
  // hair comes back over the crown and behind the ear below.
  std::vector<QRectF> curls;
  const QPainterPath hair = HairShape(s, &curls);
  PaintHair(p, hair, hairColour, which);
  QRadialGradient lit(QPointF(14, -30), 78);
  lit.setColorAt(0, skin.lighter(108));
  lit.setColorAt(0.55, skin);
  lit.setColorAt(1, skin.darker(150));
  p.fillPath(face, lit);
  // The ear, half hidden under most hair.
  p.setPen(QPen(skin.darker(150), 0.7));
  p.setBrush(skin.darker(108));
  p.drawEllipse(QPointF(-7, -19), 4.6, 7.4);
  p.setBrush(Qt::NoBrush);
  p.drawArc(QRectF(-9, -24, 4, 9), 60 * 16, 220 * 16);
  // The jaw's shadow.
  p.setPen(QPen(skin.darker(135), 1.6, Qt::SolidLine, Qt::RoundCap));
  QPainterPath jaw;
  jaw.moveTo(-12, 2);
  jaw.quadTo(0, 12, 12, 12);
  p.drawPath(jaw);
  PaintFeatures(p, s, colours);

  QLinearGradient cloth(40, 30, -60, 70);
  cloth.setColorAt(0, coatColour.lighter(125));
  cloth.setColorAt(0.4, coatColour);
  cloth.setColorAt(1, coatColour.darker(160));
  p.fillPath(coat, cloth);
  p.setPen(QPen(coatColour.lighter(190), 0.8));
  p.setBrush(Qt::NoBrush);
  QPainterPath lapel;  // the lapel's edge running down from the collar
  lapel.moveTo(4, 34);
  lapel.cubicTo(14, 44, 20, 56, 22, 70);
  p.drawPath(lapel);
  // Under a wing collar the shirt front shows in the coat's opening, closed below by
  // its buttons.
  if (s.collar == kWing) {
    QPainterPath shirt;
    shirt.moveTo(5, 33);
    shirt.lineTo(15, 34);
    shirt.cubicTo(18, 40, 20, 46, 21, 52);
    shirt.cubicTo(16, 46, 10, 40, 5, 33);
    QLinearGradient front(10, 33, 20, 52);
    front.setColorAt(0, QColor(0xf2, 0xee, 0xe6));
    front.setColorAt(1, QColor(0xb8, 0xb2, 0xa8));
    p.fillPath(shirt.intersected(coat), front);
  }
  p.setPen(Qt::NoPen);
  for (double y : {54.0, 64.0}) {
    QRadialGradient button(QPointF(23.5, y - 0.6), 2.0);
    button.setColorAt(0, coatColour.lighter(260));
    button.setColorAt(1, coatColour.darker(130));
    p.setBrush(button);
    p.drawEllipse(QPointF(24, y), 1.6, 1.6);
  }
  p.setBrush(Qt::NoBrush);

  std::vector<QRectF> ruffles;
  QPainterPath collar = CollarShape(s, &ruffles);
  QLinearGradient linen(20, 20, -10, 50);
  linen.setColorAt(0, QColor(0xfb, 0xf8, 0xf0));
  linen.setColorAt(1, QColor(0xc8, 0xc0, 0xb4));
  p.fillPath(collar, linen);
  p.setPen(QPen(QColor(0xa8, 0xa0, 0x94), 0.5));
  p.drawPath(collar);
  p.save();
  p.setClipPath(collar, Qt::IntersectClip);
  RoundOff(p, ruffles, QColor(0xe8, 0xe2, 0xd8));
  p.restore();
  if (s.collar == kWing)  // and its black bow tie
    p.fillPath(Smooth({{8, 33}, {14, 30}, {14, 37}, {8, 35}, {2, 37}, {2, 30}}), QColor(0x10, 0x10, 0x12));

  // Behind the hairline: over the crown, down the temple in front of the ear, and
  // along the back of the neck.
  QPainterPath overHead;
  overHead.moveTo(-90, -100);
  overHead.lineTo(40, -100);
  overHead.cubicTo(24, -60, 12, -58, 6, -52);
  overHead.cubicTo(0, -46, -1, -38, 0, -30);
  overHead.cubicTo(1, -22, -2, -8, -9, 4);
  overHead.cubicTo(-14, 14, -18, 40, -22, 80);
  overHead.lineTo(-90, 80);
  overHead.closeSubpath();
  PaintHair(p, hair.intersected(overHead), hairColour, which);
  p.save();
  p.setClipPath(hair.subtracted(face).united(hair.intersected(overHead)), Qt::IntersectClip);
  RoundOff(p, curls, hairColour);
  p.restore();
  const QPainterPath beard = BeardShape(s);
  if (!beard.isEmpty()) PaintHair(p, beard, hairColour.darker(105), which + 5);
  // A soft dark edge round the figure, as a painted miniature has.
  p.setPen(QPen(QColor(40, 24, 16, 90), 0.8));
  p.setBrush(Qt::NoBrush);
  p.drawPath(figure.united(hair));
  p.restore();
}

}  // namespace lirenza::pictures
