// The twelve portraits of the violin's back: each stays inside the medallion that
// holds it, each is told apart from the others, and each is drawn as vectors, so it
// agrees with itself at any scale.
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QtTest>
#include <cmath>

#include "portrait.h"

using lirenza::pictures::DrawPortrait;

namespace {

// The medallion's oval around the portrait's origin, as the back draws it.
const QPointF kOvalCentre(6, -4);
constexpr double kOvalRx = 62, kOvalRy = 72;

QImage Draw(int index, double scale, bool clipToOval) {
  const QSize size(int(std::ceil(160 * scale)), int(std::ceil(180 * scale)));
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter p(&image);
  p.translate(size.width() / 2.0 - kOvalCentre.x() * scale, size.height() / 2.0 - kOvalCentre.y() * scale);
  p.scale(scale, scale);
  if (clipToOval) {
    QPainterPath oval;
    oval.addEllipse(kOvalCentre, kOvalRx, kOvalRy);
    p.setClipPath(oval);
  }
  DrawPortrait(p, index, QColor(0x2a, 0x18, 0x10));
  p.end();
  return image;
}

// Mean difference per channel (0..255) over the whole image.
double MeanDifference(const QImage& a, const QImage& b) {
  double sum = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) {
      const QRgb pa = a.pixel(x, y), pb = b.pixel(x, y);
      sum += std::abs(qRed(pa) - qRed(pb)) + std::abs(qGreen(pa) - qGreen(pb)) +
             std::abs(qBlue(pa) - qBlue(pb)) + std::abs(qAlpha(pa) - qAlpha(pb));
    }
  return sum / (4.0 * a.width() * a.height());
}

int PaintedPixels(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) count += qAlpha(image.pixel(x, y)) > 0;
  return count;
}

}  // namespace

class PortraitTest : public QObject {
  Q_OBJECT
 private slots:
  void staysInsideTheMedallion_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("scale");
    for (int index = 0; index < 12; ++index)
      for (double scale : {1.0, 2.0, 3.5})
        QTest::addRow("%d at %.1fx", index, scale) << index << scale;
  }
  // The medallion clips the shoulders: the portrait must keep that clip (not replace it
  // with its own when it shades hair or lace), and the head must not run into the
  // frame above.
  void staysInsideTheMedallion() {
    QFETCH(int, index);
    QFETCH(double, scale);
    const QImage clipped = Draw(index, scale, true);
    const QPointF centre(clipped.width() / 2.0, clipped.height() / 2.0);
    const double margin = 1.5;  // the antialiased edge of the clip
    int outside = 0;
    for (int y = 0; y < clipped.height(); ++y)
      for (int x = 0; x < clipped.width(); ++x) {
        const double dx = (x + 0.5 - centre.x()) / (kOvalRx * scale + margin);
        const double dy = (y + 0.5 - centre.y()) / (kOvalRy * scale + margin);
        if (dx * dx + dy * dy > 1 && qAlpha(clipped.pixel(x, y)) > 0) ++outside;
      }
    QCOMPARE(outside, 0);
    QVERIFY(PaintedPixels(clipped) > clipped.width() * clipped.height() / 8);  // a whole figure, not a scrap

    const QImage free = Draw(index, scale, false);
    const int ovalTop = int(centre.y() - kOvalRy * scale - margin);
    for (int y = 0; y < ovalTop; ++y)
      for (int x = 0; x < free.width(); ++x)
        if (qAlpha(free.pixel(x, y)) > 0) QFAIL(qPrintable(QStringLiteral("head above the frame at row %1").arg(y)));
  }

  // Each sitter is his own man: no two portraits nearly alike.
  void twelveDifferentSitters() {
    std::vector<QImage> portraits;
    for (int index = 0; index < 12; ++index) portraits.push_back(Draw(index, 1.0, true));
    for (int a = 0; a < 12; ++a)
      for (int b = a + 1; b < 12; ++b) {
        const double difference = MeanDifference(portraits[size_t(a)], portraits[size_t(b)]);
        if (difference < 4.0)
          QFAIL(qPrintable(QStringLiteral("portraits %1 and %2 differ by only %3").arg(a).arg(b).arg(difference)));
      }
  }

  void sameAtEveryScale_data() {
    QTest::addColumn<int>("index");
    for (int index = 0; index < 12; ++index) QTest::addRow("%d", index) << index;
  }
  // Drawn at twice the size and brought down, a portrait matches the one drawn at 1x:
  // every line and shade scales with the painter.
  void sameAtEveryScale() {
    QFETCH(int, index);
    const QImage once = Draw(index, 1.0, true);
    const QImage twice = Draw(index, 2.0, true).scaled(once.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const double difference = MeanDifference(once, twice);
    QVERIFY2(difference < 3.0, qPrintable(QString::number(difference)));
  }

  // An index from outside the twelve still draws a whole portrait, one of the twelve.
  void indexOutsideTheTwelve_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("sameAs");
    QTest::newRow("twelve") << 12 << 0;
    QTest::newRow("minus one") << -1 << 11;
    QTest::newRow("large") << 1000 << 1000 % 12;
  }
  void indexOutsideTheTwelve() {
    QFETCH(int, index);
    QFETCH(int, sameAs);
    QCOMPARE(Draw(index, 1.0, true), Draw(sameAs, 1.0, true));
  }

  // The back goes on drawing after the portrait with the painter as it left it.
  void leavesThePainterAsItWas() {
    QImage image(200, 200, QImage::Format_ARGB32_Premultiplied);
    QPainter p(&image);
    p.translate(100, 100);
    p.setPen(QPen(Qt::red, 3));
    p.setBrush(Qt::green);
    const QTransform before = p.transform();
    DrawPortrait(p, 7, Qt::black);
    QCOMPARE(p.transform(), before);
    QCOMPARE(p.pen().color(), QColor(Qt::red));
    QCOMPARE(p.brush().color(), QColor(Qt::green));
    QVERIFY(!p.hasClipping());
  }
};

QTEST_MAIN(PortraitTest)
#include "test_portraits.moc"
