// The violin meets the fingerboard's geometry; the backs keep the texts readable.
#include <QPainter>
#include <QtTest/QtTest>
#include <algorithm>
#include <set>

#include "pixels.h"
#include "violin/fingerboard.h"

namespace test = lirenza::test;
using test::Built;

namespace {

// The pictures are drawn by the same geometry the window will draw notes by.
QRect Rect(const lirenza::Rect& r) { return QRect(r.x, r.y, r.width, r.height); }
int StringRow(int string) { return lirenza::HandGeometryAt(string, 0).string.y; }
int CellX(int cell) { return lirenza::HandGeometryAt(1, cell).finger.x; }

// What the fingerboard does for a note on and a note off.
void NoteOn(QImage& board, int string, int cell) {
  QPainter p(&board);
  const lirenza::HandGeometry g = lirenza::HandGeometryAt(string, cell);
  if (g.fingertip) p.drawImage(g.finger.x, g.finger.y, Built("Yubi"));
  p.drawImage(Rect(g.string), Built("GenS"));
}
void NoteOff(QImage& board, const QImage& violin, int string, int cell) {
  QPainter p(&board);
  const lirenza::HandGeometry g = lirenza::HandGeometryAt(string, cell);
  p.setCompositionMode(QPainter::CompositionMode_Source);
  p.drawImage(QPoint(g.finger.x, g.finger.y), violin, Rect(g.finger));
  p.setCompositionMode(QPainter::CompositionMode_SourceOver);
  p.drawImage(Rect(g.string), Built("Gen"));
}

}  // namespace

class ViolinPicturesTest : public QObject {
  Q_OBJECT
 private slots:
  void stringsLieOnTheirRows_data() {
    QTest::addColumn<int>("string");
    for (int s = 1; s <= 4; ++s) QTest::newRow(qPrintable(QString("string %1").arg(s))) << s;
  }
  // The picture's strings are what a note off paints back: the same three rows from
  // the open string's start to the bridge, with the fingerboard showing between them.
  void stringsLieOnTheirRows() {
    QFETCH(int, string);
    QImage violin = Built("Violin"), gen = Built("Gen");
    int row = StringRow(string);
    for (int x = 104; x < 634; x += 7) {
      for (int dy = 0; dy < 3; ++dy)
        QCOMPARE(violin.pixel(x, row + dy), gen.pixel(0, dy));
      QVERIFY(violin.pixel(x, row - 1) != gen.pixel(0, 0) && violin.pixel(x, row + 3) != gen.pixel(0, 2));
    }
    // Ebony under every cell a finger is drawn on, on both sides of the string.
    for (int cell = 1; cell <= 16; ++cell)
      for (int y : {row - 3, row + 6})
        QVERIFY2(test::Luminance(violin.pixel(CellX(cell) + 7, y)) < 0.05,
                 qPrintable(QString("no fingerboard under cell %1 at row %2").arg(cell).arg(y)));
  }

  // A note on shows; its note off leaves the violin exactly as it was, for every
  // string and every cell that is drawn.
  void noteOffRestoresTheViolin() {
    QImage violin = Built("Violin").convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int string = 1; string <= 4; ++string)
      for (int cell = 0; cell <= 16; ++cell) {
        QImage board = violin;
        NoteOn(board, string, cell);
        QVERIFY(board != violin);
        NoteOff(board, violin, string, cell);
        QVERIFY2(board == violin, qPrintable(QString("string %1 cell %2 leaves a mark").arg(string).arg(cell)));
      }
  }

  // The sounding length ends where the bridge begins.
  void bridgeStandsWhereTheStringsEnd() {
    QImage violin = Built("Violin"), gen = Built("Gen");
    for (int string = 1; string <= 4; ++string) {
      int row = StringRow(string) + 1;
      QCOMPARE(violin.pixel(633, row), gen.pixel(0, 1));
      for (int x = 634; x <= 637; ++x) {
        QRgb c = violin.pixel(x, row);
        QVERIFY2(qAlpha(c) == 255 && qRed(c) > 150 && qRed(c) > qBlue(c) + 40 && c != gen.pixel(0, 1),
                 qPrintable(QString("no bridge at %1, %2").arg(x).arg(row)));
      }
    }
  }

  // The fingertip is drawn at (x, 11s + 174): its pad must cover the string, rows
  // 5 to 7 of the picture, and leave the corners clear.
  void fingertipSitsOnTheString() {
    QImage yubi = Built("Yubi");
    test::Centre c = test::AlphaCentre(yubi, yubi.rect());
    QVERIFY(std::abs(c.x - 7.5) < 1.0);
    QVERIFY(std::abs(c.y - 6.5) < 1.0);
    for (int y = 5; y <= 7; ++y) QCOMPARE(test::Alpha(yubi, 7, y), 255);
    QCOMPARE(test::Alpha(yubi, 0, 14), 0);
    QCOMPARE(test::Alpha(yubi, 14, 14), 0);
  }

  void bowIsSolid() {
    QImage bow = Built("Bow");
    for (int y = 0; y < bow.height(); ++y)
      for (int x = 0; x < bow.width(); ++x) QCOMPARE(test::Alpha(bow, x, y), 255);
  }

  void backsKeepTheTextsReadable_data() {
    QTest::addColumn<int>("back");
    for (int i = 0; i < 12; ++i) QTest::newRow(qPrintable(QString("ViolinBack%1").arg(i))) << i;
  }
  // Yellow and cyan labels stand straight on the back: even its brightest pixels under
  // them must leave a contrast of 4.5 to 1. The window's shape comes from the back, so
  // its corners are clear and every control stands on it.
  void backsKeepTheTextsReadable() {
    QFETCH(int, back);
    QImage image = Built(QString("ViolinBack%1").arg(back));
    const QRect labels[] = {{65, 31, 33, 14},   {1054, 13, 70, 16},  {791, 235, 30, 16}, {789, 252, 30, 16},
                            {958, 247, 35, 22}, {87, 243, 50, 19},   {86, 260, 50, 19},  {88, 278, 50, 19},
                            {603, 236, 115, 17}, {295, 305, 620, 19}, {212, 323, 50, 14}, {206, 339, 65, 14},
                            {42, 472, 40, 18},  {61, 497, 25, 14},   {61, 519, 25, 14},  {61, 553, 55, 14},
                            {61, 574, 30, 14},  {127, 475, 60, 14},  {156, 497, 25, 20}, {157, 519, 25, 20},
                            {157, 543, 25, 20}, {41, 673, 50, 16},   {540, 6, 120, 22},  {8, 752, 300, 22},
                            {1132, 726, 41, 12}, {100, 30, 275, 15}, {406, 31, 580, 15}};
    const double yellow = test::Luminance(qRgb(255, 255, 0)), cyan = test::Luminance(qRgb(0, 255, 255));
    for (const QRect& r : labels) {
      std::vector<double> lum;
      for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x) {
          QVERIFY2(test::Alpha(image, x, y) == 255, qPrintable(QString("label at %1,%2 off the back").arg(x).arg(y)));
          lum.push_back(test::Luminance(image.pixel(x, y)));
        }
      std::sort(lum.begin(), lum.end());
      double bright = lum[lum.size() * 98 / 100];
      double contrast = (std::min(yellow, cyan) + 0.05) / (bright + 0.05);
      QVERIFY2(contrast >= 4.5, qPrintable(QString("contrast %1 at %2,%3").arg(contrast).arg(r.x()).arg(r.y())));
    }
    for (QPoint corner : {QPoint(0, 0), QPoint(1209, 0), QPoint(0, 779), QPoint(1209, 779)})
      QCOMPARE(test::Alpha(image, corner.x(), corner.y()), 0);
  }

  // Twelve backs, twelve portraits: no two are the same picture.
  void everyBackIsItsOwn() {
    std::set<QByteArray> seen;
    for (int i = 0; i < 12; ++i) {
      QImage portrait = Built(QString("ViolinBack%1").arg(i)).copy(330, 610, 140, 160);
      QVERIFY(seen.insert(QByteArray(reinterpret_cast<const char*>(portrait.constBits()), portrait.sizeInBytes())).second);
    }
  }

  // Pressed, under the mouse and at rest must look different, or a click shows nothing.
  void buttonStatesDiffer() {
    const char* pairs[][2] = {{"PlayButton", "PlayButtonB"}, {"StopButton", "StopButtonB"},
                              {"RepeatButton", "RepeatButtonB"}, {"ChangeMidi0", "ChangeMidi1"},
                              {"PlayMidi0", "PlayMidi1"}, {"MidiToAiff0", "MidiToAiff1"},
                              {"PlayAiff0", "PlayAiff1"}, {"ButtonR", "ButtonRI"}, {"ButtonRI", "ButtonRP"},
                              {"ButtonY", "ButtonYI"}, {"ButtonYI", "ButtonYP"}, {"musi0", "musi1"},
                              {"musi1", "musi2"}, {"ButtonR", "ButtonY"}};
    for (auto& pair : pairs) QVERIFY2(Built(pair[0]) != Built(pair[1]), pair[0]);
  }

  // Louder levels show more sound waves.
  void speakerGrowsWithTheVolume() {
    auto ink = [](const QImage& image) {
      double sum = 0;
      for (int y = 0; y < image.height(); ++y)
        for (int x = 12; x < image.width(); ++x) sum += test::Alpha(image, x, y);
      return sum;
    };
    QVERIFY(ink(Built("Speaker1")) < ink(Built("Speaker2")));
    QVERIFY(ink(Built("Speaker2")) < ink(Built("Speaker3")));
    QVERIFY(Built("Speaker0") != Built("Speaker1"));
  }
};

QTEST_GUILESS_MAIN(ViolinPicturesTest)
#include "test_picture_violin.moc"
