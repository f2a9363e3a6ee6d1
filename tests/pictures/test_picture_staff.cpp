// The staff pictures meet the grid: note heads on row 18, staff lines where a note of
// that Top puts its head, bar lines in the bar gaps, signatures on their lines.
#include <QtTest/QtTest>
#include <array>
#include <set>

#include "pixels.h"
#include "score/note_tables.h"

using namespace lirenza;
using test::Built;

namespace {

constexpr std::array<int, 10> kLinePitches = {77, 74, 71, 67, 64, 57, 53, 50, 47, 43};
const char kDigits[] = "0123456789ABCDEF";

// The row of a pitch's line in a canvas whose Top is canvasTop, by the staff line table:
// a note of that pitch has Top = 36 + 3 * index, and its head lies 18 pixels lower.
int Row(int pitch, int canvasTop) {
  int index = 0;
  std::string_view table = kStaffLineTable;
  for (size_t start = 0; start < table.size(); ++index) {
    size_t end = table.find(',', start);
    if (std::stoi(std::string(table.substr(start, end - start))) == pitch) break;
    start = end == std::string_view::npos ? table.size() : end + 1;
  }
  return 36 + 3 * index + 18 - canvasTop;
}

bool SameRegion(const QImage& a, const QImage& b, QRect r) {
  for (int y = r.top(); y <= r.bottom(); ++y)
    for (int x = r.left(); x <= r.right(); ++x)
      if (a.pixel(x, y) != b.pixel(x, y)) return false;
  return true;
}

}  // namespace

class StaffPicturesTest : public QObject {
  Q_OBJECT
 private slots:
  void noteHeadIsCentredOnRow18_data() {
    QTest::addColumn<QString>("name");
    for (char family : {'n', 'u'})
      for (int d = 0; d < 16; ++d) {
        QString name = QString(QChar(family)) + kDigits[d];
        QTest::newRow(qPrintable(name)) << name;
      }
  }
  // A click at height y puts Top at y - 18: the head must be centred there, in both
  // families, or every note would sound a line away from where it is drawn.
  void noteHeadIsCentredOnRow18() {
    QFETCH(QString, name);
    QImage note = Built(name);
    // Columns 5 to 10 and rows 14 to 22 hold the head alone: stems run in columns 4
    // and 11, flags and triplet marks keep out of these rows.
    test::Centre head = test::AlphaCentre(note, QRect(5, 14, 6, 9));
    QVERIFY2(head.weight > 10, "no note head");
    QVERIFY2(std::abs(head.y - 18.5) <= 0.35, qPrintable(QString("head centre %1").arg(head.y)));
    test::Centre inN = test::AlphaCentre(Built("n" + name.mid(1)), QRect(5, 14, 6, 9));
    QVERIFY(std::abs(head.x - inN.x) < 0.3);
  }

  void stemsGoUpInNAndDownInU_data() {
    QTest::addColumn<int>("digit");
    for (int d = 0; d < 16; ++d) QTest::newRow(qPrintable(QString(kDigits[d]))) << d;
  }
  // The families are chosen by height so stems point into the staff; a family with the
  // wrong direction puts stems through the neighbouring staff.
  void stemsGoUpInNAndDownInU() {
    QFETCH(int, digit);
    QImage n = Built(QString("n") + kDigits[digit]), u = Built(QString("u") + kDigits[digit]);
    auto inkIn = [](const QImage& image, int y0, int y1) {
      return !test::InkBox(image, QRect(0, y0, 15, y1 - y0 + 1)).isEmpty();
    };
    bool stemmed = digit != 0;  // the whole note has none
    QCOMPARE(inkIn(n, 2, 8), stemmed);
    QCOMPARE(inkIn(n, 27, 34), false);
    QCOMPARE(inkIn(u, 27, 34), stemmed);
    QCOMPARE(inkIn(u, 0, 5), false);
  }

  // Sixteen values, sixteen different pictures in each family.
  void everyLengthHasItsOwnPicture() {
    for (char family : {'n', 'u', 'r'}) {
      std::set<qint64> seen;
      std::set<QByteArray> bits;
      for (int d = 0; d < 16; ++d) {
        QImage image = Built(QString(QChar(family)) + kDigits[d]);
        QVERIFY2(bits.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes())).second,
                 qPrintable(QString("%1%2 repeats another length").arg(family).arg(kDigits[d])));
      }
    }
  }

  void staffLinesAreCrispOnTheirRows_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("x0");
    QTest::addColumn<int>("x1");
    QTest::newRow("Sheet1") << "Sheet1" << 0 << 10373;
    QTest::newRow("Sheet2") << "Sheet2" << 0 << 10373;
    QTest::newRow("Sheet") << "Sheet" << 40 << 74;  // under the key signature
    QTest::newRow("Repeat") << "Repeat" << 0 << 3;
  }
  // The staff head, the staff and its narrow end stand at Top 60: a line's row is its note's Top + 18 - 60, one
  // pixel high, with no grey row beside it.
  void staffLinesAreCrispOnTheirRows() {
    QFETCH(QString, name);
    QFETCH(int, x0);
    QFETCH(int, x1);
    QImage sheet = Built(name);
    for (int pitch : kLinePitches) {
      int row = Row(pitch, 60);
      for (int x = x0; x <= x1; x += 13) {
        if (name.startsWith("Sheet1") || name.startsWith("Sheet2"))
          if (std::abs((x - 139) % 144) <= 1) continue;  // bar lines
        QVERIFY2(test::Ink(sheet, x, row), qPrintable(QString("no line at %1, %2").arg(x).arg(row)));
        QVERIFY2(test::Luminance(sheet.pixel(x, row + 1)) > 0.6 && test::Luminance(sheet.pixel(x, row - 1)) > 0.6,
                 qPrintable(QString("line at row %1 is blurred at x %2").arg(row).arg(x)));
      }
    }
    // Middle C lies between the staves with no solid line of its own.
    int middleC = Row(60, 60), inked = 0, total = 0;
    QCOMPARE(middleC, (Row(64, 60) + Row(57, 60)) / 2);
    for (int x = x0; x <= x1; x += 5, ++total) inked += test::Ink(sheet, x, middleC);
    QVERIFY(inked * 4 < total);
  }

  void barLinesStandInTheBarGaps_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("Sheet1") << "Sheet1";
    QTest::newRow("Sheet2") << "Sheet2";
  }
  // A bar spans Left 120 + 144b to 264 + 144b; the last 16 pixels take no notes and
  // show the bar line, which scrolls with the notes in steps of 144.
  void barLinesStandInTheBarGaps() {
    QFETCH(QString, name);
    QImage sheet = Built(name);
    int top = Row(77, 60), bottom = Row(43, 60);
    int bars = 0;
    for (int x = 0; x < sheet.width(); ++x) {
      bool full = true;
      for (int y = top; y <= bottom && full; ++y) full = test::Ink(sheet, x, y);
      if (!full) continue;
      ++bars;
      int left = x + 120;  // window Left of this column at scroll 0, modulo the bars
      int inBar = (left - 120) % 144;
      QVERIFY2(inBar >= 128 + 8 && inBar < 144, qPrintable(QString("bar line at %1 is in the notes").arg(x)));
    }
    QCOMPARE(bars, (sheet.width() - 139 + 143) / 144);
  }

  void sheetsTellTheTwoKindsOfMetre() {
    QImage duple = Built("Sheet1"), triple = Built("Sheet2");
    QVERIFY(!SameRegion(duple, triple, QRect(0, 40, 144, 80)));
  }

  void keySignaturePutsEachSignOnItsLine_data() {
    QTest::addColumn<int>("keySignature");
    for (int k = 1; k <= 14; ++k) QTest::newRow(qPrintable(QString::number(k))) << k;
  }
  // Each key adds one sign to the one before it; the new sign must stand on the line
  // the key table alters, in the treble and in the bass.
  void keySignaturePutsEachSignOnItsLine() {
    QFETCH(int, keySignature);
    bool sharps = keySignature <= 7;
    int before = keySignature == 1 || keySignature == 8 ? 0 : keySignature - 1;
    // The pitch class this key alters that the one before does not.
    int added = -1;
    for (int pc : {0, 2, 4, 5, 7, 9, 11})
      if (KeySignatureShift(keySignature, 60 + pc) != 0 && KeySignatureShift(before, 60 + pc) == 0) added = pc;
    QVERIFY(added >= 0);
    QCOMPARE(KeySignatureShift(keySignature, 60 + added), sharps ? 1 : -1);
    // The customary places of signature signs in the two staves.
    const std::map<int, std::pair<int, int>> places = sharps
        ? std::map<int, std::pair<int, int>>{{5, {77, 53}}, {0, {72, 48}}, {7, {79, 55}}, {2, {74, 50}},
                                             {9, {69, 45}}, {4, {76, 52}}, {11, {71, 47}}}
        : std::map<int, std::pair<int, int>>{{11, {71, 47}}, {4, {76, 52}}, {9, {69, 45}}, {2, {74, 50}},
                                             {7, {67, 43}}, {0, {72, 48}}, {5, {65, 41}}};
    QImage now = Built(QString::fromStdString(KeySignaturePicture(keySignature)));
    QImage then = Built(QString::fromStdString(KeySignaturePicture(before)));
    QImage diff(now.size(), QImage::Format_ARGB32);
    diff.fill(Qt::transparent);
    for (int y = 0; y < now.height(); ++y)
      for (int x = 0; x < now.width(); ++x)
        if (std::abs(test::Alpha(now, x, y) - test::Alpha(then, x, y)) > 60) diff.setPixel(x, y, qRgba(0, 0, 0, 255));
    const int split = Row(60, 98);  // middle C, between the staves
    for (auto [pitch, region] : {std::pair{places.at(added).first, QRect(0, 0, 30, split)},
                                 std::pair{places.at(added).second, QRect(0, split, 30, 76 - split)}}) {
      QRect sign = test::InkBox(diff, region);
      QVERIFY2(!sign.isEmpty(), "no new sign");
      double row = Row(pitch, 98) + 0.5;
      if (sharps)
        QVERIFY2(std::abs((sign.top() + sign.bottom() + 1) / 2.0 - row) <= 1.5,
                 qPrintable(QString("sharp centred at %1, line at %2").arg((sign.top() + sign.bottom() + 1) / 2.0).arg(row)));
      else  // a flat's belly sits on its line, its stem rising above
        QVERIFY2(sign.bottom() + 1 - row >= 1.0 && sign.bottom() + 1 - row <= 4.5,
                 qPrintable(QString("flat ends at %1, line at %2").arg(sign.bottom() + 1).arg(row)));
    }
  }

  void timeSignaturesFollowTheMetres() {
    // timeSignature: 4/4, 6/8, 3/4, 2/4, 2/2, 12/8, 5/4, 3/8, 9/8, as the time menu lists them.
    const int metres[9][2] = {{4, 4}, {6, 8}, {3, 4}, {2, 4}, {2, 2}, {12, 8}, {5, 4}, {3, 8}, {9, 8}};
    const QRect upper(0, Row(77, 107), 12, Row(71, 107) - Row(77, 107));
    const QRect lower(0, Row(71, 107) + 1, 12, Row(64, 107) - Row(71, 107));
    std::set<std::string> names;
    for (int a = 0; a < 9; ++a) {
      std::string nameA = TimeSignaturePicture(a);
      names.insert(nameA);
      QImage ia = Built(QString::fromStdString(nameA));
      // The same signature stands on the bass staff, 36 rows lower.
      QVERIFY(SameRegion(ia.copy(0, 0, 12, 25), ia.copy(0, 36, 12, 25), QRect(0, 0, 12, 25)));
      for (int b = 0; b < 9; ++b) {
        QImage ib = Built(QString::fromStdString(TimeSignaturePicture(b)));
        QCOMPARE(SameRegion(ia, ib, upper), metres[a][0] == metres[b][0]);
        QCOMPARE(SameRegion(ia, ib, lower), metres[a][1] == metres[b][1]);
      }
    }
    QCOMPARE(names.size(), size_t{9});
  }

  // The printed page: a note of Top T on print line k has its head at T + 8 + 108k.
  void printedPageHasElevenLinesOfStaves() {
    QImage page = Built("PSheet");
    for (int line = 0; line < 11; ++line) {
      int top = -8 - 108 * line;
      for (int pitch : kLinePitches) {
        int row = Row(pitch, top);
        if (row >= page.height()) continue;
        QVERIFY2(pitch > 60 || line < 10, "the bass of the eleventh line should not fit");
        for (int x = 80; x < 790; x += 29)
          QVERIFY2(test::Ink(page, x, row) || (x - 214) % 144 == 0,
                   qPrintable(QString("print line %1: no staff line at row %2").arg(line).arg(row)));
      }
      for (int bar = 0; bar < 5; ++bar)  // five bars of 144 to a line
        QVERIFY(test::Ink(page, 75 + 139 + 144 * bar, Row(71, top)));
    }
  }
};

QTEST_GUILESS_MAIN(StaffPicturesTest)
#include "test_picture_staff.moc"
