// The staff pictures meet the grid: note heads on row 18, staff lines where a note of
// that Top puts its head, bar lines in the bar gaps, signatures on their lines.
#include <QtTest/QtTest>

#include "pixels.h"
#include "score/note_tables.h"

using namespace lirenza;
using test::Built;

namespace {

constexpr int kLinePitches[] = {77, 74, 71, 67, 64, 57, 53, 50, 47, 43};

// A note on line i of the staff line table has Top 36 + 3i and its head 18 pixels lower.
int Row(int pitch, int canvasTop) {
  int index = 0;
  for (std::string_view rest = kStaffLineTable; std::stoi(std::string(rest)) != pitch; ++index)
    rest.remove_prefix(rest.find(',') + 1);
  return 36 + 3 * index + 18 - canvasTop;
}

bool InkIn(const QImage& image, int y0, int y1) { return !test::InkBox(image, QRect(0, y0, 15, y1 - y0 + 1)).isEmpty(); }

}  // namespace

class StaffPicturesTest : public QObject {
  Q_OBJECT
 private slots:
  void notesHaveTheirHeadOnRow18_data() {
    QTest::addColumn<QString>("digit");
    for (char d : std::string_view("0123456789ABCDEF")) QTest::newRow(std::string(1, d).c_str()) << QString(d);
  }
  // A click at height y puts Top at y - 18: the head must be centred there in both
  // families, or every note sounds a line away from where it is drawn. Stems point
  // into the staff: up in n, down in u; the whole note has none.
  void notesHaveTheirHeadOnRow18() {
    QFETCH(QString, digit);
    const QImage n = Built("n" + digit), u = Built("u" + digit);
    // Columns 5 to 10, rows 14 to 22 hold the head alone: stems run in columns 4 and 11.
    const test::Centre inN = test::AlphaCentre(n, QRect(5, 14, 6, 9)), inU = test::AlphaCentre(u, QRect(5, 14, 6, 9));
    QVERIFY(inN.weight > 10 && inU.weight > 10);
    QVERIFY2(std::abs(inN.y - 18.5) <= 0.35 && std::abs(inU.y - 18.5) <= 0.35,
             qPrintable(QString("head centres %1 and %2").arg(inN.y).arg(inU.y)));
    QVERIFY(std::abs(inN.x - inU.x) < 0.3);
    const bool stemmed = digit != "0";
    QVERIFY(InkIn(n, 2, 8) == stemmed && InkIn(u, 27, 34) == stemmed);
    QVERIFY(!InkIn(n, 27, 34) && !InkIn(u, 0, 5));
  }

  // The staff and its head stand at Top 60: each line is one pixel high on its row, with
  // no grey row beside it. Middle C lies between the staves with no line of its own.
  void staffLinesAreCrispOnTheirRows() {
    for (auto [name, x0, x1] : {std::tuple{"Sheet1", 0, 10373}, {"Sheet2", 0, 10373}, {"Sheet", 40, 74}, {"Repeat", 0, 3}}) {
      const QImage sheet = Built(name);
      for (int pitch : kLinePitches)
        for (int x = x0, row = Row(pitch, 60); x <= x1; x += 13) {
          if (x1 > 100 && std::abs((x - 139) % 144) <= 1) continue;  // bar lines
          QVERIFY2(test::Ink(sheet, x, row) && test::Luminance(sheet.pixel(x, row + 1)) > 0.6 &&
                       test::Luminance(sheet.pixel(x, row - 1)) > 0.6,
                   qPrintable(QString("%1: no crisp line at %2, %3").arg(name).arg(x).arg(row)));
        }
      int inked = 0, total = 0;
      for (int x = x0; x <= x1; x += 5, ++total) inked += test::Ink(sheet, x, Row(60, 60));
      QVERIFY(inked * 4 < total);
    }
  }

  // A bar spans Left 120 + 144b to 264 + 144b; its last 16 pixels take no notes and
  // show the bar line, which scrolls with the notes in steps of 144.
  void barLinesStandInTheBarGaps() {
    for (const char* name : {"Sheet1", "Sheet2"}) {
      const QImage sheet = Built(name);
      int bars = 0;
      for (int x = 0; x < sheet.width(); ++x) {
        bool full = true;
        for (int y = Row(77, 60); y <= Row(43, 60) && full; ++y) full = test::Ink(sheet, x, y);
        bars += full;
        QVERIFY2(!full || x % 144 >= 136, qPrintable(QString("%1: bar line at %2 is in the notes").arg(name).arg(x)));
      }
      QCOMPARE(bars, (sheet.width() + 4) / 144);
    }
  }

  void keySignaturePutsEachSignOnItsLine_data() {
    QTest::addColumn<int>("keySignature");
    for (int k = 1; k <= 14; ++k) QTest::newRow(qPrintable(QString::number(k))) << k;
  }
  // Each key adds one sign to the one before it; the new sign must stand on the line
  // the key table alters, in the treble and in the bass.
  void keySignaturePutsEachSignOnItsLine() {
    QFETCH(int, keySignature);
    const bool sharps = keySignature <= 7;
    const int before = keySignature == 1 || keySignature == 8 ? 0 : keySignature - 1;
    int added = -1;  // the pitch class this key alters that the one before does not
    for (int pc : {0, 2, 4, 5, 7, 9, 11})
      if (KeySignatureShift(keySignature, 60 + pc) != 0 && KeySignatureShift(before, 60 + pc) == 0) added = pc;
    QVERIFY(added >= 0);
    QCOMPARE(KeySignatureShift(keySignature, 60 + added), sharps ? 1 : -1);
    // The customary places: a sharp sits in the upper octave up to G, a flat up to E;
    // the bass sign stands two octaves lower.
    const int treble = 60 + added + (added <= (sharps ? 7 : 4) ? 12 : 0);
    const QImage now = Built(QString::fromStdString(KeySignaturePicture(keySignature)));
    const QImage then = Built(QString::fromStdString(KeySignaturePicture(before)));
    QImage diff(now.size(), QImage::Format_ARGB32);
    for (int y = 0; y < now.height(); ++y)
      for (int x = 0; x < now.width(); ++x)
        diff.setPixel(x, y, qRgba(0, 0, 0, std::abs(test::Alpha(now, x, y) - test::Alpha(then, x, y)) > 60 ? 255 : 0));
    const int split = Row(60, 98);
    for (auto [pitch, region] : {std::pair{treble, QRect(0, 0, 30, split)}, {treble - 24, QRect(0, split, 30, 76 - split)}}) {
      const QRect sign = test::InkBox(diff, region);
      QVERIFY2(!sign.isEmpty(), "no new sign");
      const double line = Row(pitch, 98) + 0.5, centre = (sign.top() + sign.bottom() + 1) / 2.0;
      const double below = sign.bottom() + 1 - line;  // a flat's belly sits on its line, its stem above
      QVERIFY2(sharps ? std::abs(centre - line) <= 1.5 : below >= 1.0 && below <= 4.5,
               qPrintable(QString("sign %1..%2, line at %3").arg(sign.top()).arg(sign.bottom()).arg(line)));
    }
  }

  // The printed page: a note of Top T on print line k has its head at T + 8 + 108k,
  // five bars of 144 to a line, and the bass of the eleventh line does not fit.
  // Ten whole lines of treble and bass staves, each where the print puts the heads of
  // its notes (a note of Top T prints at T - 10 + 108k, its head 18 lower), and
  // nothing below the tenth: no line is only partly there.
  void printedPageHasTenWholeLinesWhereTheNotesPrint() {
    const QImage page = Built("PSheet");
    for (int line = 0; line < 10; ++line) {
      const int top = 10 - 108 * line;
      for (int pitch : kLinePitches) {
        const int row = Row(pitch, top);
        QVERIFY(row < page.height());
        for (int x = 80; x < 790; x += 29)
          QVERIFY2(test::Ink(page, x, row) || (x - 214) % 144 == 0, qPrintable(QString("line %1 row %2").arg(line).arg(row)));
      }
      for (int bar = 0; bar < 5; ++bar) QVERIFY(test::Ink(page, 214 + 144 * bar, Row(71, top)));
    }
    const int belowTenth = Row(std::end(kLinePitches)[-1], 10 - 108 * 9) + 12;
    for (int y = belowTenth; y < page.height(); y += 3)
      for (int x = 0; x < page.width(); x += 7) QVERIFY2(!test::Ink(page, x, y), qPrintable(QString("ink at %1,%2").arg(x).arg(y)));
  }
};

QTEST_GUILESS_MAIN(StaffPicturesTest)
#include "test_picture_staff.moc"
