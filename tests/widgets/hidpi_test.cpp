// The window on a screen at 200 %: every picture comes in the pixels drawn for that
// scale, and what the window shows is drawn at it, never a picture at 100 % blown up
// (doubled pixels would show as 2 x 2 blocks, a smoothed enlargement as blurred lines).
#include "picture_list.h"
#include "window_fixture.h"

using namespace lirenza;

class HiDpiTest : public testing::WindowTest {
  Q_OBJECT

 private slots:
  void init() { MakeWindow(); }

  void everyPictureComesDrawnForTheScale() {
    QCOMPARE(qApp->devicePixelRatio(), 2.0);
    PictureStore& store = window->Pictures();
    QCOMPARE(store.Scale(), 2);
    for (const auto& spec : pictures::AllPictures()) {
      const QImage picture = store.Picture(QString::fromStdString(spec.name));
      QCOMPARE(picture.devicePixelRatio(), 2.0);
      QCOMPARE(picture.size(), QSize(spec.size.width * 2, spec.size.height * 2));
    }
    QVERIFY2(store.Problems().isEmpty(), qPrintable(store.Problems().join('\n')));
  }

  void theStaffIsDrawnAtTheScreensScale() {
    LoadKestraLine(TheStaff(), "C594 E594 G594 C694");
    window->ShowStaffScroll();
    const QImage staff = View().grab().toImage().convertToFormat(QImage::Format_RGB32);
    QCOMPARE(staff.size(), View().size() * 2);

    // A staff line: two device rows of ink, with paper right above and below.
    const int x = 2 * 40;
    int lineRows = 0, softRows = 0;
    for (int y = 0; y < staff.height(); ++y) {
      const int grey = qGray(staff.pixel(x, y));
      lineRows += grey < 100;
      softRows += grey >= 100 && grey < 200;
    }
    QCOMPARE(lineRows, 2 * 10);  // ten staff lines
    QCOMPARE(softRows, 0);

    // A note head: its edge varies within 2 x 2 blocks, as only a head drawn at this
    // scale does.
    const QRect head = window::StaffView::NoteRect(TheStaff().notes[1]).adjusted(4, 14, -2, -12);
    int mixedBlocks = 0;
    for (int y = head.top() * 2; y < head.bottom() * 2; y += 2)
      for (int x2 = head.left() * 2; x2 < head.right() * 2; x2 += 2) {
        const QRgb a = staff.pixel(x2, y);
        mixedBlocks += staff.pixel(x2 + 1, y) != a || staff.pixel(x2, y + 1) != a || staff.pixel(x2 + 1, y + 1) != a;
      }
    QVERIFY2(mixedBlocks > 4, qPrintable(QString::number(mixedBlocks)));
  }
};

int main(int argc, char** argv) {
  qputenv("QT_SCALE_FACTOR", "2");
  QApplication app(argc, argv);
  HiDpiTest test;
  return QTest::qExec(&test, argc, argv);
}
#include "hidpi_test.moc"
