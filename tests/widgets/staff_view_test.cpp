// The staff canvas driven with the mouse as a user would, checked on the pixels it paints.
#include <QAction>
#include <QMenu>
#include <QPaintEvent>
#include <QSignalSpy>
#include <QtTest>
#include <functional>

#include "violin/fakes.h"
#include "window/picture_store.h"
#include "window/staff_view.h"

using namespace lirenza;
using lirenza::testing::FakeClock;
using lirenza::testing::FakeConfirm;
using lirenza::testing::FakeSound;

namespace {

// Menus are answered by the test, and every painted region is kept.
class TestStaffView : public window::StaffView {
 public:
  using StaffView::StaffView;
  std::function<bool(const QAction*)> pick;
  QRegion painted;

 protected:
  QAction* RunMenu(QMenu& menu, QPoint) override {
    std::vector<QAction*> all;
    for (QAction* a : menu.actions()) {
      all.push_back(a);
      if (a->menu()) for (QAction* b : a->menu()->actions()) all.push_back(b);
    }
    for (QAction* a : all)
      if (pick && pick(a)) return a;
    return nullptr;
  }
  void paintEvent(QPaintEvent* event) override {
    painted += event->region();
    StaffView::paintEvent(event);
  }
};

// Dark pixels in a box: the notes are ink, the sheet's lines are grey.
int Ink(const QImage& image, QRect box) {
  int n = 0;
  for (int y = box.top(); y <= box.bottom(); ++y)
    for (int x = box.left(); x <= box.right(); ++x)
      if (image.rect().contains(x, y) && qGray(image.pixel(x, y)) < 90) ++n;
  return n;
}

// The head of a note clicked at a point stands just right of it.
QRect HeadAround(QPoint p) { return {p.x(), p.y() - 3, 9, 7}; }
QRect HeadOf(const Note& note) { return window::StaffView::NoteRect(note).adjusted(4, 15, -2, -13); }

}  // namespace

class StaffViewTest : public QObject {
  Q_OBJECT

  Staff staff;
  Modes modes;
  EntryState entry;
  TuningTables tuning;
  FakeSound sound;
  FakeClock clock;
  FakeConfirm confirm;
  PictureStore pictures{PictureStore::DefaultFolder()};
  std::unique_ptr<TestStaffView> view;
  QImage blank;  // the empty staff: lines and bar lines are ink too

  QImage Grab() { return view->grab().toImage().convertToFormat(QImage::Format_RGB32); }
  void Click(QPoint p, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(view.get(), button, {}, p);
    QTest::mouseRelease(view.get(), button, {}, p);
  }
  void DoubleClick(QPoint p) {
    clock.now += 1e6;  // far from any earlier click
    Click(p);
    Click(p);
  }

 private slots:
  void init() {
    staff = Staff{};
    entry = EntryState{};
    TuneToKey(tuning, 0);
    view = std::make_unique<TestStaffView>(
        window::StaffViewState{staff, modes, entry, tuning, sound.ports, clock, pictures, confirm});
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    QVERIFY(pictures.Problems().isEmpty());
    blank = Grab();
  }

  void doubleClickPutsTheHeadWhereClicked_data() {
    QTest::addColumn<QPoint>("click");
    QTest::newRow("first bar, on a space") << QPoint(40, 58);
    QTest::newRow("third bar, high") << QPoint(330, 22);
    QTest::newRow("last bar, low") << QPoint(780, 100);
  }
  void doubleClickPutsTheHeadWhereClicked() {
    QFETCH(QPoint, click);
    const QImage before = blank;
    QSignalSpy changed(view.get(), &window::StaffView::staffChanged);
    Click(click);
    QCOMPARE(staff.NoteCount(), 0);  // a single click only places the entry column
    Click(click);
    QCOMPARE(staff.NoteCount(), 1);
    QCOMPARE(changed.count(), 1);
    const QImage after = Grab();
    QVERIFY2(Ink(after, HeadAround(click)) > Ink(before, HeadAround(click)) + 10, "no head at the click");
    // The loudness digit of the note is painted under its head.
    const QRect note = window::StaffView::NoteRect(staff.notes[1]);
    QVERIFY(Ink(after, {note.left() + 7, note.top() + 19, 7, 8}) > Ink(before, {note.left() + 7, note.top() + 19, 7, 8}));
  }

  void dragMovesTheNoteAndRepaintsOnlyItsPlaces() {
    const QPoint from(200, 58);
    DoubleClick(from);
    const int pitch = staff.notes[1].pitch;
    view->painted = QRegion();
    clock.now += 1e6;  // not a double click on the note
    QTest::mousePress(view.get(), Qt::LeftButton, {}, from + QPoint(4, 0));
    const QPoint to = from + QPoint(300, -12);
    QTest::mouseMove(view.get(), to + QPoint(4, 0));
    QTest::mouseRelease(view.get(), Qt::LeftButton, {}, to + QPoint(4, 0));
    QTRY_VERIFY(!view->painted.isEmpty());
    QVERIFY2(!view->painted.contains(QPoint(60, 120)), "a drag repainted the whole staff");
    const QImage after = Grab();
    QCOMPARE(Ink(after, HeadAround(from)), Ink(blank, HeadAround(from)));
    // The drop snaps to the grid: the head lands within a column and a row of the mouse.
    const QRect head = HeadOf(staff.notes[1]);
    const QPoint miss = head.center() - (to + QPoint(4, 0));
    QVERIFY2(std::abs(miss.x()) <= 8 && std::abs(miss.y()) <= 3, "dropped far from the mouse");
    QVERIFY(Ink(after, head) > Ink(blank, head) + 10);
    QVERIFY2(staff.notes[1].pitch > pitch, "moved up, the note sounds higher");
  }

  void hoverSoundsTheNoteUnderTheMouse() {
    DoubleClick({200, 58});
    QTest::mouseMove(view.get(), {204, 58});
    QCOMPARE(sound.players[kScorePlayer].StillSounding().size(), 1u);
    QTest::mouseMove(view.get(), {500, 58});
    QVERIFY(sound.players[kScorePlayer].StillSounding().empty());
  }

  void deleteGestures_data() {
    QTest::addColumn<bool>("byBackspace");
    QTest::newRow("double click on the note") << false;
    QTest::newRow("Backspace after a press") << true;
  }
  void deleteGestures() {
    QFETCH(bool, byBackspace);
    DoubleClick({100, 58});
    DoubleClick({300, 58});
    clock.now += 1e6;
    Click({104, 58});
    // Back over the note after the press: its hover sound is on when it is deleted.
    QTest::mouseMove(view.get(), {500, 58});
    QTest::mouseMove(view.get(), {104, 58});
    if (byBackspace) QTest::keyClick(view.get(), Qt::Key_Backspace);
    else Click({104, 58});
    QCOMPARE(staff.NoteCount(), 1);
    QCOMPARE(staff.notes[1].left, 300 + 116);
    QVERIFY2(sound.players[kScorePlayer].StillSounding().empty(), "the deleted note's hover sound hangs");
    QCOMPARE(Ink(Grab(), HeadAround({100, 58})), Ink(blank, HeadAround({100, 58})));
  }

  void noteMenuChoiceChangesTheNote() {
    DoubleClick({200, 58});
    DoubleClick({400, 58});
    const int pitch = staff.notes[1].pitch;
    const QRect sign = window::StaffView::NoteRect(staff.notes[1]).adjusted(0, 6, -10, -5);
    const QImage before = Grab();
    view->pick = [](const QAction* a) {
      return window::StaffView::NoteChoiceOf(a) == NoteMenuChoice{NoteMenuChoice::Kind::Accidental, 1};
    };
    clock.now += 1e6;
    Click({204, 58}, Qt::RightButton);
    QCOMPARE(staff.notes[1].accidentalSign, 1);
    staff.notes[2].sounding = true;
    const QImage after = Grab();
    after.save("/tmp/staff_view.png");
    QCOMPARE(staff.notes[1].pitch, pitch + 1);  // the paint spelled the sharp into the note
    QVERIFY2(Ink(after, sign) > Ink(before, sign), "no sharp drawn before the head");
    QCOMPARE(staff.notes[2].pitch, pitch);
  }

  void staffMenuRunsTheBarOperationUnderTheMouse() {
    DoubleClick({40, 58});
    DoubleClick({200, 58});
    const int kept = staff.notes[2].left;
    view->pick = [](const QAction* a) { return window::StaffView::BarOperationOf(a) == BarOperation::Clear; };
    QSignalSpy changed(view.get(), &window::StaffView::staffChanged);
    clock.now += 1e6;  // a right click soon after a click would make a note
    Click({60, 100}, Qt::RightButton);
    QCOMPARE(staff.NoteCount(), 1);
    QCOMPARE(staff.notes[1].left, kept);
    QCOMPARE(changed.count(), 1);
  }

  void scrollingMovesWhatIsPainted() {
    DoubleClick({400, 58});
    view->ScrollTo(kBarWidth + 5);  // cut to a whole bar
    const QImage after = Grab();
    QCOMPARE(Ink(after, HeadAround({400, 58})), Ink(blank, HeadAround({400, 58})));
    QVERIFY(Ink(after, HeadAround({400 - kBarWidth, 58})) > Ink(blank, HeadAround({400 - kBarWidth, 58})) + 10);
  }
};

QTEST_MAIN(StaffViewTest)
#include "staff_view_test.moc"
