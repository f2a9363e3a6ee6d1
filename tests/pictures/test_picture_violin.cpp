// The violin meets the fingerboard's geometry.
#include <QPainter>
#include <QtTest/QtTest>

#include "pixels.h"
#include "violin/fingerboard.h"

namespace test = lirenza::test;
using test::Built;

namespace {

QRect Rect(const lirenza::Rect& r) { return QRect(r.x, r.y, r.width, r.height); }

}  // namespace

class ViolinPicturesTest : public QObject {
  Q_OBJECT
 private slots:
  // The picture's strings are what a note off paints back: the same three rows from the
  // open string's start to the bridge, the fingerboard's ebony beside them under every
  // cell, and the maple bridge right where the sounding length ends.
  void stringsRunOnTheirRowsToTheBridge() {
    const QImage violin = Built("Violin"), gen = Built("Gen");
    for (int string = 1; string <= 4; ++string) {
      const int row = lirenza::HandGeometryAt(string, 0).string.y;
      for (int x = 104; x < 634; x += 7) {
        for (int dy = 0; dy < 3; ++dy) QCOMPARE(violin.pixel(x, row + dy), gen.pixel(0, dy));
        QVERIFY(violin.pixel(x, row - 1) != gen.pixel(0, 0) && violin.pixel(x, row + 3) != gen.pixel(0, 2));
      }
      QCOMPARE(violin.pixel(633, row + 1), gen.pixel(0, 1));
      for (int cell = 1; cell <= 16; ++cell)
        for (int y : {row - 3, row + 6})
          QVERIFY2(test::Luminance(violin.pixel(lirenza::HandGeometryAt(1, cell).finger.x + 7, y)) < 0.05,
                   qPrintable(QString("no fingerboard under cell %1 at row %2").arg(cell).arg(y)));
      for (int x = 634; x <= 637; ++x) {
        const QRgb c = violin.pixel(x, row + 1);
        QVERIFY2(qAlpha(c) == 255 && qRed(c) > 150 && qRed(c) > qBlue(c) + 40 && c != gen.pixel(0, 1),
                 qPrintable(QString("no bridge at %1, %2").arg(x).arg(row + 1)));
      }
    }
  }

  // A note on shows the fingertip, its pad over the string, and the sounding string;
  // its note off leaves the violin exactly as it was, on every string and cell.
  void noteOffRestoresTheViolin() {
    const QImage violin = Built("Violin").convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage yubi = Built("Yubi");
    const test::Centre pad = test::AlphaCentre(yubi, yubi.rect());
    QVERIFY(std::abs(pad.x - 7.5) < 1.0 && std::abs(pad.y - 6.5) < 1.0);
    for (int y = 5; y <= 7; ++y) QCOMPARE(test::Alpha(yubi, 7, y), 255);
    QVERIFY(test::Alpha(yubi, 0, 14) == 0 && test::Alpha(yubi, 14, 14) == 0);
    for (int string = 1; string <= 4; ++string)
      for (int cell = 0; cell <= 16; ++cell) {
        const lirenza::HandGeometry g = lirenza::HandGeometryAt(string, cell);
        QImage board = violin;
        QPainter p(&board);
        if (g.fingertip) p.drawImage(g.finger.x, g.finger.y, yubi);
        p.drawImage(Rect(g.string), Built("GenS"));
        p.end();
        QVERIFY(board != violin);
        p.begin(&board);
        p.setCompositionMode(QPainter::CompositionMode_Source);
        p.drawImage(QPoint(g.finger.x, g.finger.y), violin, Rect(g.finger));
        p.setCompositionMode(QPainter::CompositionMode_SourceOver);
        p.drawImage(Rect(g.string), Built("Gen"));
        p.end();
        QVERIFY2(board == violin, qPrintable(QString("string %1 cell %2 leaves a mark").arg(string).arg(cell)));
      }
  }

  // Each back wears its own violinist, painted in colour: a face in skin tones inside
  // the medallion, and no two portraits alike.
  void eachBackShowsItsOwnPortraitInColour() {
    const QRect medallion(350, 630, 100, 110);  // inside the oval, in window pixels
    QList<QImage> portraits;
    for (int i = 0; i < 12; ++i) {
      const QImage back = Built(QStringLiteral("ViolinBack%1").arg(i)).convertToFormat(QImage::Format_RGB32);
      const QImage portrait = back.copy(medallion);
      int skin = 0;
      for (int y = 0; y < portrait.height(); ++y)
        for (int x = 0; x < portrait.width(); ++x) {
          const QColor c = portrait.pixelColor(x, y);
          // Warm light skin, cheek and lips; the ivory ground and a dark silhouette are not.
          skin += c.red() > 190 && c.red() - c.green() > 30 && c.green() > 120;
        }
      QVERIFY2(skin > 150, qPrintable(QStringLiteral("back %1 shows %2 pixels of face").arg(i).arg(skin)));
      portraits << portrait;
    }
    for (int a = 0; a < 12; ++a)
      for (int b = a + 1; b < 12; ++b) {
        int differing = 0;
        for (int y = 0; y < medallion.height(); ++y)
          for (int x = 0; x < medallion.width(); ++x) {
            const QColor ca = portraits[a].pixelColor(x, y), cb = portraits[b].pixelColor(x, y);
            differing += std::abs(ca.red() - cb.red()) + std::abs(ca.green() - cb.green()) +
                             std::abs(ca.blue() - cb.blue()) > 60;
          }
        QVERIFY2(differing > 400, qPrintable(QStringLiteral("backs %1 and %2 look alike").arg(a).arg(b)));
      }
  }
};

QTEST_GUILESS_MAIN(ViolinPicturesTest)
#include "test_picture_violin.moc"
