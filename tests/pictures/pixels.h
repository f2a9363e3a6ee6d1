#pragma once
// Reading the built pictures pixel by pixel.
#include <QImage>
#include <QtTest/QtTest>
#include <cmath>

namespace lirenza::test {

inline QImage Built(const QString& name) {
  return QImage(QStringLiteral(LIRENZA_TEST_PICTURES_DIR "/") + name + ".png").convertToFormat(QImage::Format_ARGB32);
}

inline int Alpha(const QImage& image, int x, int y) { return qAlpha(image.pixel(x, y)); }

// Relative luminance as the contrast rules of readable text define it.
inline double Luminance(QRgb c) {
  auto channel = [](int v) { double s = v / 255.0; return s <= 0.03928 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4); };
  return 0.2126 * channel(qRed(c)) + 0.7152 * channel(qGreen(c)) + 0.0722 * channel(qBlue(c));
}

inline bool Ink(const QImage& image, int x, int y) { return Alpha(image, x, y) > 200 && Luminance(image.pixel(x, y)) < 0.1; }

// Alpha-weighted centre of a region, pixel centres at +0.5.
struct Centre { double x = 0, y = 0, weight = 0; };
inline Centre AlphaCentre(const QImage& image, QRect region) {
  Centre c;
  for (int y = region.top(); y <= region.bottom(); ++y)
    for (int x = region.left(); x <= region.right(); ++x) {
      const double a = Alpha(image, x, y) / 255.0;
      c.x += a * (x + 0.5), c.y += a * (y + 0.5), c.weight += a;
    }
  if (c.weight > 0) c.x /= c.weight, c.y /= c.weight;
  return c;
}

// The box of pixels whose alpha is above the threshold.
inline QRect InkBox(const QImage& image, QRect region, int threshold = 100) {
  QRect box;
  for (int y = region.top(); y <= region.bottom(); ++y)
    for (int x = region.left(); x <= region.right(); ++x)
      if (Alpha(image, x, y) > threshold) box |= QRect(x, y, 1, 1);
  return box;
}

}  // namespace lirenza::test
