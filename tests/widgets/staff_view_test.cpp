// The staff canvas driven with the mouse as a user would, checked on the pixels it paints.
#include <QSignalSpy>

#include "window_fixture.h"

using namespace lirenza;
using lirenza::testing::Ink;
using window::StaffView;

namespace {
// The head of a note clicked at a point stands just right of it.
QRect HeadAround(QPoint p) { return {p.x(), p.y() - 3, 9, 7}; }
QRect HeadOf(const Note& note) { return StaffView::NoteRect(note).adjusted(4, 15, -2, -13); }
}  // namespace

class StaffViewTest : public testing::WindowTest {
  Q_OBJECT

  QImage blank;  // the empty staff: lines and bar lines are ink too

  QImage Shot() { return testing::Grab(&View()); }
  // Whether the grab shows a head at p that the empty staff has not.
  bool HeadShownAt(const QImage& shot, QPoint p) { return Ink(shot, HeadAround(p)) > Ink(blank, HeadAround(p)) + 10; }
  bool SameAsBlankAt(const QImage& shot, QPoint p) { return Ink(shot, HeadAround(p)) == Ink(blank, HeadAround(p)); }

 private slots:
  void init() {
    MakeWindow();
    QVERIFY(window->Pictures().Problems().isEmpty());
    blank = Shot();
  }

  void doubleClickPutsTheHeadWhereClicked_data() {
    QTest::addColumn<QPoint>("click");
    QTest::newRow("first bar, on a space") << QPoint(40, 58);
    QTest::newRow("third bar, high") << QPoint(330, 22);
    QTest::newRow("last bar, low") << QPoint(780, 100);
  }
  void doubleClickPutsTheHeadWhereClicked() {
    QFETCH(QPoint, click);
    QSignalSpy changed(&View(), &StaffView::staffChanged);
    ClickStaff(click);
    QCOMPARE(TheStaff().NoteCount(), 0);  // a single click only places the entry column
    ClickStaff(click);
    QCOMPARE(TheStaff().NoteCount(), 1);
    QCOMPARE(changed.count(), 1);
    const QImage after = Shot();
    QVERIFY2(HeadShownAt(after, click), "no head at the click");
    // The loudness digit of the note is painted under its head.
    const QRect digit = StaffView::NoteRect(TheStaff().notes[1]).adjusted(7, 19, 0, 0);
    QVERIFY(Ink(after, {digit.topLeft(), QSize(7, 8)}) > Ink(blank, {digit.topLeft(), QSize(7, 8)}));
  }

  void dragMovesTheNoteAndRepaintsOnlyItsPlaces() {
    const QPoint from(200, 58), to = from + QPoint(300, -12), grip(4, 0);
    DoubleClickStaff(from);
    const int pitch = TheStaff().notes[1].pitch;
    QTest::qWait(20);  // the paints the new note asked for
    testing::PaintedRegion paints;
    View().installEventFilter(&paints);
    clock->now += 1e6;  // not a double click on the note
    QTest::mousePress(&View(), Qt::LeftButton, {}, from + grip);
    QTest::mouseMove(&View(), to + grip);
    QTest::mouseRelease(&View(), Qt::LeftButton, {}, to + grip);
    QTRY_VERIFY(!paints.painted.isEmpty());
    QVERIFY2(!paints.painted.contains(QPoint(60, 120)), "a drag repainted the whole staff");
    const QImage after = Shot();
    QVERIFY(SameAsBlankAt(after, from));
    // The drop snaps to the grid: the head lands within a column and a row of the mouse.
    const QRect head = HeadOf(TheStaff().notes[1]);
    const QPoint miss = head.center() - (to + grip);
    QVERIFY2(std::abs(miss.x()) <= 8 && std::abs(miss.y()) <= 3, "dropped far from the mouse");
    QVERIFY(Ink(after, head) > Ink(blank, head) + 10);
    QVERIFY2(TheStaff().notes[1].pitch > pitch, "moved up, the note sounds higher");
  }

  void deleteGestures_data() {
    QTest::addColumn<bool>("byBackspace");
    QTest::newRow("double click on the note") << false;
    QTest::newRow("Backspace after a press") << true;
  }
  void deleteGestures() {
    QFETCH(bool, byBackspace);
    DoubleClickStaff({100, 58});
    DoubleClickStaff({300, 58});
    clock->now += 1e6;
    ClickStaff({104, 58});
    // Away and back over the note after the press: its hover sound is on when it is deleted.
    QTest::mouseMove(&View(), {500, 58});
    QVERIFY(sound->players[kScorePlayer].StillSounding().empty());
    QTest::mouseMove(&View(), {104, 58});
    QCOMPARE(sound->players[kScorePlayer].StillSounding().size(), 1u);
    byBackspace ? QTest::keyClick(&View(), Qt::Key_Backspace) : ClickStaff({104, 58});
    QCOMPARE(TheStaff().NoteCount(), 1);
    QCOMPARE(TheStaff().notes[1].left, 300 + 116);
    QVERIFY2(sound->players[kScorePlayer].StillSounding().empty(), "the deleted note's hover sound hangs");
    QVERIFY(SameAsBlankAt(Shot(), {100, 58}));
  }

  void noteMenuChoiceChangesTheNote() {
    DoubleClickStaff({200, 58});
    DoubleClickStaff({400, 58});
    const int pitch = TheStaff().notes[1].pitch;
    const QRect sign = StaffView::NoteRect(TheStaff().notes[1]).adjusted(0, 6, -10, -5);
    const QImage before = Shot();
    QVERIFY(ChooseOnStaff({204, 58}, [](const QAction* a) {
      return StaffView::NoteChoiceOf(a) == NoteMenuChoice{NoteMenuChoice::Kind::Accidental, 1};
    }));
    QCOMPARE(TheStaff().notes[1].accidentalSign, 1);
    TheStaff().notes[2].sounding = true;
    const QImage after = Shot();
    QCOMPARE(TheStaff().notes[1].pitch, pitch + 1);  // the paint spelled the sharp into the note
    QVERIFY2(Ink(after, sign) > Ink(before, sign), "no sharp drawn before the head");
    QCOMPARE(TheStaff().notes[2].pitch, pitch);
  }

  void staffMenuRunsTheBarOperationUnderTheMouse() {
    DoubleClickStaff({40, 58});
    DoubleClickStaff({200, 58});
    const int kept = TheStaff().notes[2].left;
    QSignalSpy changed(&View(), &StaffView::staffChanged);
    QVERIFY(ChooseOnStaff({60, 100}, [](const QAction* a) { return StaffView::BarOperationOf(a) == BarOperation::Clear; }));
    QCOMPARE(TheStaff().NoteCount(), 1);
    QCOMPARE(TheStaff().notes[1].left, kept);
    QCOMPARE(changed.count(), 1);
  }

  void scrollingMovesWhatIsPainted() {
    DoubleClickStaff({400, 58});
    View().ScrollTo(kBarWidth + 5);  // cut to a whole bar
    const QImage after = Shot();
    QVERIFY(SameAsBlankAt(after, {400, 58}));
    QVERIFY(HeadShownAt(after, {400 - kBarWidth, 58}));
  }
};

QTEST_MAIN(StaffViewTest)
#include "staff_view_test.moc"
