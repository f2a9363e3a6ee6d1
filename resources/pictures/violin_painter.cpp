// The violin lying across the lower window, scroll at the left. Its geometry is the
// fingerboard's: the strings' lines at rows 190, 201, 212 and 223, finger cell n at
// x = 90 + 25n, the vibrating length ending at the bridge at x = 634.
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <cmath>

#include "drawing.h"
#include "painters.h"

namespace lirenza::pictures {
namespace {

constexpr int kFirstStringRow = 190;  // 11s + 179 for string 1 (E)
constexpr int kStringStep = 11;
constexpr int kNut = 100;      // the open string starts at 104, right of the nut
constexpr int kBridge = 634;   // 14 + 620: where every drawn string ends
constexpr double kMid = 207.5; // the instrument's axis, between the middle strings
constexpr double kBodyTop = 330, kBodyEnd = 905;

const QColor kEbony(0x1d, 0x17, 0x14);
const QColor kMaple(0xe6, 0xc9, 0x8f);

// The outline of the body along the axis: the upper bout by the neck, the C-bouts
// with their four corners round the bridge, the wider lower bout. The upper half is
// drawn as curves, then mirrored about the axis.
QPainterPath BodyOutline() {
  const double x = kBodyTop, m = kMid;
  QPainterPath upper;
  upper.moveTo(x, m);
  upper.cubicTo(x, m - 70, x + 40, m - 124, x + 112, m - 126);          // upper bout
  upper.cubicTo(x + 172, m - 127, x + 204, m - 116, x + 214, m - 106);
  upper.lineTo(x + 226, m - 114);                                       // upper corner
  upper.cubicTo(x + 236, m - 88, x + 262, m - 84, x + 296, m - 84);     // C-bout
  upper.cubicTo(x + 334, m - 84, x + 360, m - 92, x + 370, m - 122);
  upper.lineTo(x + 384, m - 128);                                       // lower corner
  upper.cubicTo(x + 410, m - 168, x + 520, m - 172, x + 556, m - 112);  // lower bout
  upper.cubicTo(x + 578, m - 72, x + 575, m - 30, x + 575, m);
  QPolygonF half = upper.toFillPolygon();
  half.removeLast();  // toFillPolygon closes the polygon
  QPolygonF whole = half;
  for (qsizetype i = half.size() - 1; i >= 0; --i) whole << QPointF(half[i].x(), 2 * m - half[i].y());
  QPainterPath path;
  path.addPolygon(whole);
  path.closeSubpath();
  return path;
}

QPainterPath FHole(double side) {
  // An f lying along the axis; side is -1 above the strings, +1 below. Its notches
  // mark the bridge's place.
  auto at = [side](double x, double off) { return QPointF(x, kMid + side * off); };
  QPainterPath f;
  f.moveTo(at(578, 50));
  f.cubicTo(at(600, 48), at(618, 58), at(634, 60));
  f.cubicTo(at(650, 62), at(668, 70), at(690, 70));
  f.cubicTo(at(668, 74), at(650, 66), at(634, 63.5));
  f.cubicTo(at(618, 61), at(600, 52), at(578, 53));
  f.closeSubpath();
  f.addEllipse(at(577, 51.5), 4.5, 4.5);
  f.addEllipse(at(691, 71.5), 4.5, 4.5);
  // The two nicks at the middle.
  f.addRect(QRectF(at(633, side < 0 ? 66 : 58), QSizeF(1.5, 7)));
  return f;
}

void StringLine(QImage& image, int x0, int x1, int row, const QImage& string) {
  QPainter p(&image);
  p.drawImage(QRect(x0, row, x1 - x0 + 1, 3), string);
}

QImage RestingString() {
  QImage s = NewPicture(kStringSize);
  for (int x = 0; x < WidthOf(s); ++x) {
    Dot(s, x, 0, QColor(0xf4, 0xf1, 0xe8));
    Dot(s, x, 1, QColor(0xc4, 0xbd, 0xae));
    Dot(s, x, 2, QColor(0x86, 0x7e, 0x70));
  }
  return s;
}

// The sounding string glows, brightest in the middle of its vibrating length.
QImage SoundingString() {
  QImage s = NewPicture(kStringSize);
  for (int x = 0; x < WidthOf(s); ++x) {
    double a = std::sin(M_PI * (x + 0.5) / WidthOf(s));
    auto mix = [a](int lo, int hi) { return int(lo + (hi - lo) * a); };
    Dot(s, x, 0, QColor(255, mix(200, 250), mix(120, 200)));
    Dot(s, x, 1, QColor(255, mix(120, 190), mix(30, 60)));
    Dot(s, x, 2, QColor(mix(200, 240), mix(70, 110), 20));
  }
  return s;
}

QImage Violin(const QImage& string) {
  QImage image = NewPicture(kViolinSize);
  QPainter p(&image);
  BeginSmooth(p);

  // Body: varnished spruce, lighter along the arching, grain along the length.
  QPainterPath body = BodyOutline();
  p.fillPath(body.translated(3, 5), QColor(0, 0, 0, 90));  // shadow on the back picture
  QRadialGradient varnish(QPointF(640, kMid - 20), 300);
  varnish.setColorAt(0.0, QColor(0xd8, 0x86, 0x3a));
  varnish.setColorAt(0.55, QColor(0xb0, 0x5a, 0x1e));
  varnish.setColorAt(1.0, QColor(0x5e, 0x26, 0x0c));
  p.fillPath(body, varnish);
  p.save();
  p.setClipPath(body);
  for (int y = 30; y < 390; y += 3) {
    int shade = (y * 37) % 5;
    p.setPen(QPen(QColor(0x4a, 0x1c, 0x06, 26 + shade * 9), 1.0));
    QPainterPath grain;
    grain.moveTo(kBodyTop, y);
    for (double x = kBodyTop; x <= kBodyEnd; x += 25)
      grain.lineTo(x, y + 1.2 * std::sin(x / 90.0 + y * 0.7));
    p.drawPath(grain);
  }
  p.setPen(Qt::NoPen);
  // Edge and purfling: a dark rim, then two black lines with the white between.
  p.setBrush(Qt::NoBrush);
  p.setPen(QPen(QColor(0x3a, 0x14, 0x04), 6));
  p.drawPath(body);
  QTransform inset;
  QRectF b = body.boundingRect();
  inset.translate(b.center().x(), b.center().y());
  inset.scale((b.width() - 16) / b.width(), (b.height() - 16) / b.height());
  inset.translate(-b.center().x(), -b.center().y());
  p.setPen(QPen(QColor(0x14, 0x0a, 0x04), 3.2));
  p.drawPath(inset.map(body));
  p.setPen(QPen(QColor(0xd9, 0xb2, 0x72), 1.0));
  p.drawPath(inset.map(body));
  p.restore();
  p.setPen(Qt::NoPen);

  // F-holes, cut dark.
  for (double side : {-1.0, 1.0}) p.fillPath(FHole(side), QColor(0x16, 0x08, 0x02));

  // Tailpiece with its fine tuner, and the button at the end.
  QPainterPath tail;
  tail.moveTo(700, kMid - 27);
  tail.cubicTo(780, kMid - 24, 840, kMid - 16, 858, kMid - 10);
  tail.quadTo(866, kMid, 858, kMid + 10);
  tail.cubicTo(840, kMid + 16, 780, kMid + 24, 700, kMid + 27);
  tail.quadTo(694, kMid, 700, kMid - 27);
  QLinearGradient tg(0, kMid - 27, 0, kMid + 27);
  tg.setColorAt(0, QColor(0x3a, 0x30, 0x2a));
  tg.setColorAt(0.5, kEbony);
  tg.setColorAt(1, QColor(0x0c, 0x09, 0x08));
  p.fillPath(tail, tg);
  p.setBrush(QColor(0xc8, 0xc4, 0xbc));
  p.drawEllipse(QPointF(716, kFirstStringRow + 1.5), 4, 4);
  p.setBrush(kEbony);
  p.drawEllipse(QPointF(kBodyEnd + 3, kMid), 6, 7);

  // Neck, pegbox and scroll in maple under the fingerboard.
  QPainterPath neck;
  neck.moveTo(30, kMid - 17);
  neck.lineTo(kNut, kMid - 19);
  neck.lineTo(kBodyTop + 10, kMid - 22);
  neck.lineTo(kBodyTop + 10, kMid + 22);
  neck.lineTo(kNut, kMid + 19);
  neck.lineTo(30, kMid + 17);
  neck.closeSubpath();
  QLinearGradient ng(0, kMid - 22, 0, kMid + 22);
  ng.setColorAt(0, QColor(0xe0, 0x98, 0x52));
  ng.setColorAt(0.5, QColor(0xb4, 0x64, 0x26));
  ng.setColorAt(1, QColor(0x6a, 0x2e, 0x0c));
  p.fillPath(neck, ng);
  // Pegbox opening.
  p.setBrush(QColor(0x24, 0x0e, 0x04));
  p.drawRoundedRect(QRectF(42, kMid - 10, 54, 20), 6, 6);
  // Pegs: two above, two below, ebony heads with a collar.
  for (int i = 0; i < 4; ++i) {
    double x = 50 + i * 14.0, dir = i % 2 ? 1 : -1;
    p.setBrush(QColor(0x2a, 0x20, 0x1a));
    p.drawRect(QRectF(x - 2.5, dir < 0 ? kMid - 42 : kMid + 16, 5, 26));
    QLinearGradient pg(x - 9, 0, x + 9, 0);
    pg.setColorAt(0, QColor(0x10, 0x0c, 0x0a));
    pg.setColorAt(0.4, QColor(0x4a, 0x40, 0x38));
    pg.setColorAt(1, QColor(0x0c, 0x09, 0x08));
    p.setBrush(pg);
    p.drawRoundedRect(QRectF(x - 8, dir < 0 ? kMid - 66 : kMid + 40, 16, 26), 7, 7);
    p.setBrush(QColor(0xe8, 0xe0, 0xd0));
    p.drawEllipse(QPointF(x, dir < 0 ? kMid - 40 : kMid + 40), 3, 3);
  }
  // Scroll: a spiral seen from above, turning in to its eye.
  QRadialGradient sg(QPointF(20, kMid - 6), 30);
  sg.setColorAt(0, QColor(0xe4, 0xa0, 0x5a));
  sg.setColorAt(1, QColor(0x70, 0x30, 0x0e));
  p.setBrush(sg);
  p.drawEllipse(QPointF(22, kMid), 22, 25);
  QPainterPath spiral;
  for (int i = 0; i <= 160; ++i) {
    double a = i / 160.0 * 2.6 * 2 * M_PI, r = 21 * (1 - i / 185.0);
    QPointF pt(22 + r * std::cos(a), kMid + 1.12 * r * std::sin(a));
    i == 0 ? spiral.moveTo(pt) : spiral.lineTo(pt);
  }
  p.setBrush(Qt::NoBrush);
  p.setPen(QPen(QColor(0x3a, 0x16, 0x04), 2.0));
  p.drawPath(spiral);
  p.setPen(Qt::NoPen);

  // Fingerboard: ebony, a little wider toward the body, overhanging the top.
  QPainterPath board;
  board.moveTo(kNut, kMid - 23);
  board.lineTo(520, kMid - 29);
  board.quadTo(526, kMid, 520, kMid + 29);
  board.lineTo(kNut, kMid + 23);
  board.closeSubpath();
  p.fillPath(board.translated(2, 4), QColor(0, 0, 0, 110));
  QLinearGradient bg(0, kMid - 29, 0, kMid + 29);
  bg.setColorAt(0, QColor(0x3c, 0x34, 0x30));
  bg.setColorAt(0.25, kEbony);
  bg.setColorAt(1, QColor(0x08, 0x06, 0x05));
  p.fillPath(board, bg);
  // Nut.
  p.setBrush(QColor(0xf0, 0xe8, 0xd6));
  p.drawRect(QRectF(kNut, kMid - 22, 3.5, 44));

  // Bridge: maple, its feet on the top, standing across all strings.
  QPainterPath bridge;
  bridge.moveTo(kBridge, kMid - 30);
  bridge.lineTo(kBridge + 7, kMid - 34);
  bridge.lineTo(kBridge + 7, kMid + 34);
  bridge.lineTo(kBridge, kMid + 30);
  bridge.closeSubpath();
  p.fillPath(bridge.translated(3, 3), QColor(0, 0, 0, 100));
  QLinearGradient brg(kBridge, 0, kBridge + 7, 0);
  brg.setColorAt(0, kMaple);
  brg.setColorAt(1, QColor(0xb8, 0x92, 0x58));
  p.fillPath(bridge, brg);
  p.end();

  // Strings: through the pegbox to the nut, the playing length to the bridge, then
  // down to the tailpiece. The playing length is the picture the fingerboard redraws.
  for (int s = 0; s < 4; ++s) {
    int row = kFirstStringRow + kStringStep * s;
    StringLine(image, kNut + 4, kBridge - 1, row, string);
    p.begin(&image);
    BeginSmooth(p);
    p.setPen(QPen(QColor(0xb8, 0xb2, 0xa4), 1.6));
    p.drawLine(QPointF(kBridge + 7, row + 1.5), QPointF(710, kMid + (row + 1.5 - kMid) * 0.55));
    p.drawLine(QPointF(50 + (3 - s) * 14.0, kMid + (s - 1.5) * 2), QPointF(kNut, row + 1.5));
    p.end();
  }
  return image;
}

QImage Fingertip() {
  QImage image = NewPicture(kFingertipSize);
  QPainter p(&image);
  BeginSmooth(p);
  // Centred on the string, which crosses rows 5 to 7 of the picture.
  QRadialGradient skin(QPointF(6.0, 4.5), 8.0);
  skin.setColorAt(0, QColor(0xff, 0xdc, 0xc4));
  skin.setColorAt(0.7, QColor(0xe8, 0xa8, 0x88));
  skin.setColorAt(1, QColor(0xb0, 0x6c, 0x54));
  p.setBrush(skin);
  p.setPen(QPen(QColor(0x8a, 0x4a, 0x38), 1.0));
  p.drawEllipse(QPointF(7.5, 6.5), 6.3, 6.0);
  p.setPen(Qt::NoPen);
  p.setBrush(QColor(0xff, 0xf0, 0xe8, 170));
  p.drawEllipse(QPointF(5.2, 4.2), 2.0, 1.5);
  return image;
}

QImage Bow() {
  QImage image = NewPicture(kBowSize);
  const QColor hair(0xf0, 0xe8, 0xd2), hairShade(0xcf, 0xc4, 0xa8);
  const QColor stick(0x6a, 0x2c, 0x12), stickLight(0x9a, 0x4e, 0x26), stickDark(0x3e, 0x16, 0x08);
  for (int y = 0; y < HeightOf(image); ++y) {
    Dot(image, 0, y, hairShade);
    Dot(image, 1, y, hair);
    Dot(image, 2, y, stickDark);
    Dot(image, 3, y, stickLight);
    Dot(image, 4, y, stick);
  }
  // Ivory tip at the head, ebony frog with its pearl eye and silver ferrule at the heel.
  FillRect(image, 0, 0, 4, 6, QColor(0xf6, 0xf2, 0xe6));
  FillRect(image, 2, 7, 4, 10, stickDark);
  FillRect(image, 0, 236, 4, 238, QColor(0xd8, 0xd8, 0xdc));
  FillRect(image, 0, 239, 4, 262, QColor(0x14, 0x10, 0x0e));
  FillRect(image, 1, 248, 3, 251, QColor(0xe8, 0xf0, 0xf4));
  FillRect(image, 0, 263, 4, 269, QColor(0xb0, 0xb0, 0xb8));
  return image;
}

}  // namespace

void DrawViolin(PictureSet& out) {
  QImage string = RestingString();
  out["Gen"] = string;
  out["GenS"] = SoundingString();
  out["Violin"] = Violin(string);
  out["Yubi"] = Fingertip();
  out["Bow"] = Bow();
}

}  // namespace lirenza::pictures
