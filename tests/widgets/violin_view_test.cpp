// The violin canvas drawn as the fingerboard: the picture is the only record of the
// fingers, so every check reads pixels of the canvas's picture and of the canvas on
// screen against the clean violin.
#include "violin/fingerboard.h"
#include "window/violin_view.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;

namespace {

// Rectangles of a drawn note, from the same geometry the logic's click handling uses.
QRect FingerBox(int string, int cell) { return testing::Box(HandGeometryAt(string, cell).finger); }
QRect StringBox(int string, int cell) { return testing::Box(HandGeometryAt(string, cell).string); }

}  // namespace

class ViolinViewTest : public testing::WindowTest {
  Q_OBJECT

  window::ViolinView* violin = nullptr;
  QImage clean;

  QWidget* Bow() { return Get(ControlId::BowCanvas); }
  QImage OnScreen() { return testing::Grab(Get(ControlId::ViolinCanvas)); }
  QImage Drawn() { return violin->Picture().convertToFormat(QImage::Format_ARGB32); }

 private slots:
  // The window draws on its own violin when it is given no fingerboard, as the real
  // program is.
  void init() {
    MakeWindow(true);
    violin = dynamic_cast<window::ViolinView*>(window->Services().ports.view);
    QVERIFY(violin);
    clean = Drawn();
    QCOMPARE(testing::Differences(clean, window->Pictures().Picture("Violin").convertToFormat(QImage::Format_ARGB32)), QRegion());
  }

  // A note inks only its finger square (none on an open string) and its string from
  // the finger to the bridge, shows the bow, and is wiped back to the clean violin.
  void aNoteIsDrawnWhereItsCellLiesAndWipedClean_data() {
    QTest::addColumn<int>("string");
    QTest::addColumn<int>("cell");
    QTest::newRow("open E string") << 1 << 0;
    QTest::newRow("A string, fifth cell") << 2 << 5;
    QTest::newRow("G string, highest drawn cell") << 4 << 16;
  }
  void aNoteIsDrawnWhereItsCellLiesAndWipedClean() {
    QFETCH(int, string);
    QFETCH(int, cell);
    const QRect finger = FingerBox(string, cell), line = StringBox(string, cell);
    const QImage cleanOnScreen = OnScreen();
    violin->ShowFinger(string, cell);
    const QImage drawn = Drawn();
    const QRegion changed = testing::Differences(drawn, clean);
    QVERIFY(!changed.isEmpty());
    QCOMPARE(changed - (finger | line), QRegion());
    // Ink of the fingertip, left of where its string starts, only when a finger is down.
    const QRect fingerOnly(finger.left(), finger.top(), line.left() - finger.left(), finger.height());
    QCOMPARE((changed & fingerOnly).isEmpty(), cell == 0);
    // The vibrating part reaches from behind the finger to the bridge.
    QCOMPARE((changed & line).boundingRect().left() <= line.left() + 2, true);
    QCOMPARE((changed & line).boundingRect().right() >= line.right() - 2, true);
    QVERIFY(Bow()->isVisible());
    // The canvas shows it at once, in the same place, with the bow over the strings.
    const QRegion onScreen = testing::Differences(OnScreen(), cleanOnScreen);
    QVERIFY(!(onScreen & line).isEmpty());
    QVERIFY(!(onScreen & Bow()->geometry()).isEmpty());
    QCOMPARE(onScreen - (finger | line | Bow()->geometry()), QRegion());

    violin->HideFinger(string, cell);
    QCOMPARE(testing::Differences(Drawn(), clean), QRegion());
    QVERIFY(!Bow()->isVisible());
  }

  // Cells past the drawn ones sound but show nothing, and leave the bow alone.
  void aCellPastTheDrawnOnesDrawsNothing() {
    violin->ShowFinger(3, kFirstUndrawnCell);
    QCOMPARE(testing::Differences(Drawn(), clean), QRegion());
    QVERIFY(!Bow()->isVisible());
  }

  // Nothing remembers the fingers: taking the higher of two notes off one string leaves
  // the lower finger but lays that string at rest from the higher cell on.
  void takingOneOfTwoNotesOffAStringRepaintsItFromItsOwnCell() {
    violin->ShowFinger(2, 3);
    violin->ShowFinger(2, 7);
    const QImage both = Drawn();
    violin->HideFinger(2, 7);
    const QImage after = Drawn();
    const QRect lowFinger = FingerBox(2, 3), highFinger = FingerBox(2, 7);
    QCOMPARE(testing::Differences(after, both) - (highFinger | StringBox(2, 7)), QRegion());
    QVERIFY(!(testing::Differences(after, clean) & lowFinger).isEmpty());
    QCOMPARE(testing::Differences(after, clean) & highFinger, QRegion());
    QCOMPARE(testing::Differences(after, clean) & StringBox(2, 7), QRegion());
    QVERIFY(!Bow()->isVisible());  // one note off hides the bow, whatever still sounds
  }

  // The panic wipe lays the clean violin over every finger and string at once.
  void theCleanViolinWipesEveryNote() {
    const QImage cleanOnScreen = OnScreen();
    for (int string = 1; string <= 4; ++string) violin->ShowFinger(string, 2 * string);
    violin->ShowCleanViolin();
    QCOMPARE(testing::Differences(Drawn(), clean), QRegion());
    QCOMPARE(testing::Differences(OnScreen(), cleanOnScreen) - Bow()->geometry(), QRegion());
  }
};

QTEST_MAIN(ViolinViewTest)
#include "violin_view_test.moc"
