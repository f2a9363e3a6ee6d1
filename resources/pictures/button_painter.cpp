// Buttons and small panels: play, stop and list play; the four conversion buttons;
// the drawn window buttons; the speaker; the list's back; the status panel; the back
// picture button.
#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <cmath>

#include "drawing.h"
#include "painters.h"

namespace lirenza::pictures {
namespace {

// A round brushed-metal button; pressed, it sinks and its symbol lights up.
void RoundButton(QPainter& p, QSizeF size, bool pressed) {
  QPointF c(size.width() / 2, size.height() / 2);
  double r = size.width() / 2 - 1;
  QRadialGradient rim(c - QPointF(0, r * 0.4), r * 1.6);
  rim.setColorAt(0, QColor(0xd8, 0xd4, 0xcc));
  rim.setColorAt(1, QColor(0x3c, 0x38, 0x34));
  p.setBrush(rim);
  p.drawEllipse(c, r, r);
  QLinearGradient face(0, c.y() - r, 0, c.y() + r);
  face.setColorAt(0, pressed ? QColor(0x1a, 0x1a, 0x1c) : QColor(0x5a, 0x58, 0x5c));
  face.setColorAt(1, pressed ? QColor(0x3c, 0x3c, 0x40) : QColor(0x1c, 0x1b, 0x1e));
  p.setBrush(face);
  p.drawEllipse(c, r - 2.5, r - 2.5);
  if (!pressed) {  // a gloss on the upper half
    QLinearGradient gloss(0, c.y() - r, 0, c.y());
    gloss.setColorAt(0, QColor(255, 255, 255, 90));
    gloss.setColorAt(1, QColor(255, 255, 255, 0));
    p.setBrush(gloss);
    p.drawEllipse(QPointF(c.x(), c.y() - r * 0.35), r * 0.72, r * 0.5);
  }
}

QColor Lit(QColor c, bool pressed) { return pressed ? c.lighter(150) : c; }

void Glow(QPainter& p, QPointF c, double r, QColor colour) {
  QRadialGradient g(c, r);
  colour.setAlpha(140);
  g.setColorAt(0, colour);
  colour.setAlpha(0);
  g.setColorAt(1, colour);
  p.setBrush(g);
  p.drawEllipse(c, r, r);
}

QImage PlayButton(int kind, bool pressed) {  // 0 play, 1 stop, 2 list play
  QImage image = NewPicture(kPlayButtonSize);
  QPainter p(&image);
  BeginSmooth(p);
  RoundButton(p, image.deviceIndependentSize().toSize(), pressed);
  QPointF c(18, 18 + (pressed ? 0.8 : 0));
  const QColor colours[3] = {QColor(0x3c, 0xe0, 0x5a), QColor(0xf0, 0x40, 0x3a), QColor(0x40, 0xb0, 0xff)};
  QColor col = Lit(colours[kind], pressed);
  if (pressed) Glow(p, c, 13, colours[kind]);
  p.setBrush(col);
  if (kind == 0) {
    QPolygonF tri{{c.x() - 5, c.y() - 8}, {c.x() + 8, c.y()}, {c.x() - 5, c.y() + 8}};
    p.drawPolygon(tri);
  } else if (kind == 1) {
    p.drawRoundedRect(QRectF(c.x() - 6.5, c.y() - 6.5, 13, 13), 1.5, 1.5);
  } else {
    // Three list lines and a turning arrow: the folder's scores one after another.
    for (int i = 0; i < 3; ++i) p.drawRect(QRectF(c.x() - 9, c.y() - 6 + i * 5, 8, 2));
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(col, 2.2, Qt::SolidLine, Qt::RoundCap));
    p.drawArc(QRectF(c.x() - 1, c.y() - 7, 11, 13), 120 * 16, -290 * 16);
    p.setPen(Qt::NoPen);
    p.setBrush(col);
    QPointF tip(c.x() + 1.2, c.y() - 5.4);
    p.drawPolygon(QPolygonF{tip + QPointF(-1, -3.8), tip + QPointF(3.8, 0.2), tip + QPointF(-1.2, 3.6)});
  }
  return image;
}

void Label(QPainter& p, const QRectF& r, const QString& text, QColor colour, int px, bool bold = true) {
  QFont f(QStringLiteral("IPAexGothic"));
  f.setPixelSize(px);
  f.setBold(bold);
  p.setFont(f);
  p.setPen(colour);
  p.drawText(r, Qt::AlignCenter, text);
  p.setPen(Qt::NoPen);
}

// A square key with a small drawing: a note, "MIDI", a wave; an arrow or a play mark.
QImage ConversionButton(int kind, bool pressed) {  // 0 score->MIDI, 1 play MIDI, 2 MIDI->AIFF, 3 play AIFF
  QImage image = NewPicture(kConversionButtonSize);
  QPainter p(&image);
  BeginSmooth(p);
  QRectF key(1.5, 1.5, 32, 32);
  QLinearGradient face(0, 0, 0, 35);
  face.setColorAt(0, pressed ? QColor(0x2a, 0x26, 0x22) : QColor(0x6e, 0x64, 0x58));
  face.setColorAt(1, pressed ? QColor(0x44, 0x3e, 0x36) : QColor(0x26, 0x22, 0x1e));
  p.setBrush(QColor(0x0c, 0x0a, 0x08));
  p.drawRoundedRect(key.adjusted(-1, -1, 1, 1), 6, 6);
  p.setBrush(face);
  p.drawRoundedRect(key.adjusted(1, 1, -1, -1), 5, 5);
  double dy = pressed ? 0.8 : 0;
  const QColor amber = Lit(QColor(0xff, 0xc8, 0x3c), pressed), blue = Lit(QColor(0x70, 0xd0, 0xff), pressed);
  const QColor green = Lit(QColor(0x50, 0xe8, 0x70), pressed);
  auto miniNote = [&](double x, double y) {
    p.setBrush(amber);
    p.drawEllipse(QPointF(x, y), 3.2, 2.4);
    p.drawRect(QRectF(x + 2.2, y - 11, 1.3, 11));
    p.drawRect(QRectF(x + 2.2, y - 11, 4, 1.6));
  };
  auto wave = [&](double x0, double x1, double y) {
    QPainterPath w;
    for (double x = x0; x <= x1; x += 0.5) {
      double v = y - 4.5 * std::sin((x - x0) * 0.9) * std::exp(-(x - x0) * 0.05);
      x == x0 ? w.moveTo(x, v) : w.lineTo(x, v);
    }
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(blue, 1.5));
    p.drawPath(w);
    p.setPen(Qt::NoPen);
  };
  auto arrow = [&](double y) {
    p.setBrush(QColor(0xf0, 0xf0, 0xf0));
    p.drawPolygon(QPolygonF{{13, y - 1}, {19, y - 1}, {19, y - 3.5}, {23, y}, {19, y + 3.5}, {19, y + 1}, {13, y + 1}});
  };
  auto play = [&](double x, double y) {
    p.setBrush(green);
    p.drawPolygon(QPolygonF{{x, y - 5}, {x + 8, y}, {x, y + 5}});
  };
  switch (kind) {
    case 0: miniNote(7.5, 16 + dy); arrow(12 + dy); Label(p, QRectF(2, 20 + dy, 31, 11), "MIDI", amber, 8); break;
    case 1: Label(p, QRectF(2, 5 + dy, 31, 11), "MIDI", amber, 8); play(13.5, 23 + dy); break;
    case 2: Label(p, QRectF(2, 4 + dy, 31, 11), "MIDI", amber, 8); arrow(17 + dy); wave(6, 29, 27 + dy); break;
    default: wave(5, 29, 11 + dy); play(13.5, 24 + dy); break;
  }
  return image;
}

// The drawn window buttons: a glossy dot; the mouse over it shows its sign, a press
// darkens it.
QImage WindowButton(QColor colour, int state, int sign) {  // state 0 rest, 1 over, 2 pressed
  QImage image = NewPicture(kWindowButtonSize);
  QPainter p(&image);
  BeginSmooth(p);
  QPointF c(9.5, 12);
  QColor base = state == 2 ? colour.darker(150) : colour;
  p.setBrush(QColor(0, 0, 0, 120));
  p.drawEllipse(c + QPointF(0, 0.6), 7.2, 7.2);
  QRadialGradient g(c - QPointF(1.5, 2.5), 8.5);
  g.setColorAt(0, base.lighter(140));
  g.setColorAt(1, base.darker(130));
  p.setBrush(g);
  p.drawEllipse(c, 6.5, 6.5);
  p.setBrush(QColor(255, 255, 255, state == 2 ? 40 : 110));
  p.drawEllipse(QPointF(c.x(), c.y() - 3.2), 3.8, 2.2);
  if (state >= 1 && sign) {
    p.setPen(QPen(QColor(0x40, 0x10, 0x08, 220), 1.4, Qt::SolidLine, Qt::RoundCap));
    if (sign == 1) {
      p.drawLine(c + QPointF(-2.6, -2.6), c + QPointF(2.6, 2.6));
      p.drawLine(c + QPointF(-2.6, 2.6), c + QPointF(2.6, -2.6));
    } else {
      p.drawLine(c + QPointF(-3, 0), c + QPointF(3, 0));
    }
  }
  return image;
}

QImage Speaker(int level) {
  QImage image = NewPicture(kSpeakerSize);
  QPainter p(&image);
  BeginSmooth(p);
  const QColor ink(0x20, 0xfe, 0xfe);
  p.setBrush(ink);
  p.drawPolygon(QPolygonF{{2, 9}, {6, 9}, {11, 4}, {11, 20}, {6, 15}, {2, 15}});
  p.setBrush(Qt::NoBrush);
  for (int i = 1; i <= level; ++i) {
    p.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap));
    double r = 3.5 * i;
    p.drawArc(QRectF(11 - r, 12 - r, 2 * r, 2 * r), -50 * 16, 100 * 16);
  }
  if (level == 0) {  // silent: a small cross
    p.setPen(QPen(QColor(0xff, 0x60, 0x60), 1.6, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(15, 9), QPointF(21, 15));
    p.drawLine(QPointF(15, 15), QPointF(21, 9));
  }
  return image;
}

// Pale parchment for the rows of the score list, with faint grain, so black text of
// any row stands out.
QImage ListBack() {
  QImage image = NewPicture(kListBackSize, QColor(0xf6, 0xef, 0xdc));
  const int scale = static_cast<int>(image.devicePixelRatio());
  const int width = kListBackSize.width;
  for (int row0 = 0; row0 < image.height(); ++row0) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(row0));
    const int y = row0 / scale;
    for (int column = 0; column < image.width(); ++column) {
      const int x = column / scale;
      double v = 4 * std::sin(y * 0.21 + std::sin(x * 0.05) * 2) + ((x * 7 + y * 13) % 11 - 5) * 0.5;
      double edge = std::min(x, width - 1 - x) < 6 ? (6 - std::min(x, width - 1 - x)) * 2.5 : 0;
      int r = int(246 + v - edge), g = int(239 + v - edge), b = int(220 + v * 0.6 - edge * 1.3);
      row[column] = qRgb(std::clamp(r, 0, 255), std::clamp(g, 0, 255), std::clamp(b, 0, 255));
    }
  }
  return image;
}

// A dark glass panel with a bevel, behind the status texts in cyan and pink.
QImage StatusPanel() {
  QImage image = NewPicture(kStatusPanelSize);
  QPainter p(&image);
  BeginSmooth(p);
  QRectF r(0.5, 0.5, 159, 29);
  QLinearGradient bezel(0, 0, 0, 30);
  bezel.setColorAt(0, QColor(0x9a, 0x90, 0x84));
  bezel.setColorAt(1, QColor(0x2a, 0x26, 0x22));
  p.setBrush(bezel);
  p.drawRoundedRect(r, 6, 6);
  QLinearGradient glass(0, 0, 0, 30);
  glass.setColorAt(0, QColor(0x06, 0x12, 0x16));
  glass.setColorAt(1, QColor(0x10, 0x22, 0x28));
  p.setBrush(glass);
  p.drawRoundedRect(r.adjusted(2.5, 2.5, -2.5, -2.5), 4, 4);
  p.setBrush(QColor(255, 255, 255, 18));
  p.drawRoundedRect(QRectF(4, 4, 152, 9), 3, 3);
  return image;
}

// The button that steps the back picture: a gilt medallion with a treble clef.
QImage BackButton(const MusicFont& font, int state) {  // 0 over, 1 rest, 2 pressed
  QImage image = NewPicture(kBackButtonSize);
  QPainter p(&image);
  BeginSmooth(p);
  QPointF c(30, 30 + (state == 2 ? 1 : 0));
  if (state == 0) Glow(p, c, 30, QColor(0xff, 0xe0, 0x80));
  QRadialGradient gold(c - QPointF(6, 8), 30);
  gold.setColorAt(0, state == 2 ? QColor(0xb0, 0x88, 0x30) : QColor(0xff, 0xe8, 0x9a));
  gold.setColorAt(0.7, QColor(0xb0, 0x80, 0x28));
  gold.setColorAt(1, QColor(0x5a, 0x3a, 0x0c));
  p.setBrush(gold);
  p.drawEllipse(c, 25, 25);
  QRadialGradient inner(c + QPointF(0, 4), 24);
  inner.setColorAt(0, state == 2 ? QColor(0x20, 0x10, 0x08) : QColor(0x4a, 0x24, 0x10));
  inner.setColorAt(1, QColor(0x18, 0x0a, 0x04));
  p.setBrush(inner);
  p.drawEllipse(c, 20, 20);
  QColor ink = state == 0 ? QColor(0xff, 0xf0, 0xb0) : QColor(0xf0, 0xc8, 0x60);
  DrawGlyph(p, font, "clefs.G", c.x() - 8.5, c.y() + 5, ink, 1.0, 1.0, 5.2);
  return image;
}

}  // namespace

void DrawButtons(const MusicFont& font, PictureSet& out) {
  const char* play[3] = {"PlayButton", "StopButton", "RepeatButton"};
  for (int i = 0; i < 3; ++i) {
    out[play[i]] = PlayButton(i, false);
    out[std::string(play[i]) + "B"] = PlayButton(i, true);
  }
  const char* conversion[4] = {"ChangeMidi", "PlayMidi", "MidiToAiff", "PlayAiff"};
  for (int i = 0; i < 4; ++i) {
    out[std::string(conversion[i]) + "0"] = ConversionButton(i, false);
    out[std::string(conversion[i]) + "1"] = ConversionButton(i, true);
  }
  const QColor red(0xf0, 0x50, 0x48), yellow(0xf6, 0xbe, 0x2e), green(0x3c, 0xc8, 0x48);
  out["ButtonR"] = WindowButton(red, 0, 1);
  out["ButtonRI"] = WindowButton(red, 1, 1);
  out["ButtonRP"] = WindowButton(red, 2, 1);
  out["ButtonY"] = WindowButton(yellow, 0, 2);
  out["ButtonYI"] = WindowButton(yellow, 1, 2);
  out["ButtonYP"] = WindowButton(yellow, 2, 2);
  out["ButtonG"] = WindowButton(green, 0, 0);
  for (int i = 0; i <= 3; ++i) out["Speaker" + std::to_string(i)] = Speaker(i);
  out["ListBack"] = ListBack();
  out["Display2"] = StatusPanel();
  for (int i = 0; i <= 2; ++i) out["musi" + std::to_string(i)] = BackButton(font, i);
}

}  // namespace lirenza::pictures
