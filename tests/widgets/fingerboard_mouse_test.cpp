// The mouse as the left hand, through the real window and its own violin picture: what
// a press on the fingerboard sounds on the live player, draws and enters, and that every
// note it starts ends, with its finger wiped, however the mouse is let go or taken away.
#include <QContextMenuEvent>
#include <QDialog>
#include <QScrollBar>

#include "violin/fingerboard.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;
using testing::Log;

namespace {

std::string On(int index) { return "player0 p(" + std::to_string(index) + ") 80"; }
std::string Off(int index) { return "player0 p(" + std::to_string(index) + ") 0"; }

// What happens while a note is held, before the mouse is let go.
enum class Meanwhile {
  Nothing, OtherWindowActive, OtherProgramActive, DialogOpens, ContextMenuOpens, ViolinHidden, Retuned,
  PlayStartsAndStops, EditModeChosen,
};

}  // namespace

Q_DECLARE_METATYPE(Meanwhile)

class FingerboardMouseTest : public testing::WindowTest {
  Q_OBJECT

  QImage clean;  // the violin canvas as it shows with no note on

  QWidget* Canvas() { return Get(ControlId::ViolinCanvas); }
  QWidget* Bow() { return Get(ControlId::BowCanvas); }
  // What the violin canvas shows that the clean violin does not.
  QRegion Inked() { return testing::Differences(testing::Grab(Canvas()), clean); }
  // Through the window, as the pointer would: the toolkit decides who gets the event.
  QPoint InWindow(QPoint onCanvas) { return Canvas()->mapTo(window.get(), onCanvas); }
  void Press(QPoint onCanvas, Qt::KeyboardModifiers mods = {}) {
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, mods, InWindow(onCanvas));
  }
  // Let go far from the violin, over the staff.
  void ReleaseOverStaff() {
    QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, View().mapTo(window.get(), QPoint(300, 70)));
  }
  // The notes started and ended on the live player (its instrument changes left out).
  Log Live() {
    return sound->Lines([](const std::string& l) {
      return l.starts_with("player0 ") && !l.starts_with("player0 inst");
    });
  }

 private slots:
  // The window draws on its own violin, as the real program does.
  void init() {
    MakeWindow(true);
    window->State().tuning = testing::MarkedTuning();
    clean = testing::Grab(Canvas());
  }

  // Where a press lands and how it is spelled are the fingerboard's own business; here,
  // that the window hands it the press where it is on the canvas, with Alt, and enters,
  // draws and ends what comes back. A black key is a sharp, or with Alt a flat.
  void aPressSoundsShowsAndEntersWhatItLandsOn_data() {
    QTest::addColumn<bool>("alt");
    QTest::addColumn<int>("line");        // the staff line the note is written on
    QTest::addColumn<int>("accidental");  // 0 none, 1 sharp, 2 flat
    QTest::newRow("A string, first finger: a sharp") << false << 69 << 1;
    QTest::newRow("the same with Alt: a flat") << true << 71 << 2;
  }
  void aPressSoundsShowsAndEntersWhatItLandsOn() {
    QFETCH(bool, alt);
    QFETCH(int, line);
    QFETCH(int, accidental);
    const int column = TheStaff().entryLeft;
    // A pixel inside the A string's row: a press mapped a pixel or two off lands on the E string.
    Press({115, 197}, alt ? Qt::AltModifier : Qt::NoModifier);

    QCOMPARE(Live(), Log{On(70)});
    QVERIFY(!Inked().isEmpty());
    QVERIFY(Bow()->isVisible());
    QCOMPARE(TheStaff().NoteCount(), 1);
    const Note& note = TheStaff().notes[1];
    QCOMPARE(note.left, column);
    QCOMPARE(note.linePitch, line);
    QCOMPARE(note.accidentalSign, accidental);
    QCOMPARE(note.pitch, 70);  // written as it sounded

    ReleaseOverStaff();
    QCOMPARE(Live(), (Log{On(70), Off(70)}));
    QCOMPARE(Inked(), QRegion());
    QVERIFY(!Bow()->isVisible());
    // The note is one step of the history.
    window->RunMenuCommand(window::MenuCommand::Undo);
    QCOMPARE(TheStaff().NoteCount(), 0);
  }

  // The note about to be entered would fall right of the staff: the staff pages on by
  // whole bars first, whether or not the press then finds a string. A press that misses
  // the strings plays, draws and enters nothing.
  void theStaffPagesWhenTheEntryColumnPassedIt_data() {
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("noteLeft");  // -1: no note
    QTest::newRow("a press on the E string") << 190 << 280;
    QTest::newRow("a press above the strings") << 150 << -1;
  }
  void theStaffPagesWhenTheEntryColumnPassedIt() {
    QFETCH(int, y);
    QFETCH(int, noteLeft);
    TheStaff().entryLeft = kPageColumn;
    Press({200, y});
    ReleaseOverStaff();
    QCOMPARE(TheStaff().scrollValue, 720);
    QCOMPARE(Get<QScrollBar>(ControlId::StaffScrollBar)->value(), 720);
    QCOMPARE(TheStaff().NoteCount(), noteLeft < 0 ? 0 : 1);
    QCOMPARE(Live().size(), noteLeft < 0 ? 0u : 2u);
    QCOMPARE(Inked(), QRegion());
    if (noteLeft >= 0) QCOMPARE(TheStaff().notes[1].left, noteLeft);
  }

  // While a score plays the fingerboard is no input, and the release that follows ends
  // nothing either.
  void aPressDuringPlaybackIsIgnoredAndSoIsItsRelease() {
    Press({115, 197});  // a score to play
    ReleaseOverStaff();
    Click(ControlId::TransportButton, 0);
    QVERIFY(window->State().modes.playing);
    Press({140, 208});
    ReleaseOverStaff();
    QCOMPARE(Live().size(), 2u);
    QCOMPARE(TheStaff().NoteCount(), 1);
    Click(ControlId::TransportButton, 1);
  }

  // The bow stands over the strings while another note sounds; a press on it is a
  // press on the string under it (right of the cells: the open string).
  void aPressOnTheShownBowReachesTheString() {
    window->Services().ports.view->ShowFinger(4, 2);  // a note from elsewhere shows the bow
    QVERIFY(Bow()->isVisible());
    Press({Bow()->geometry().center().x(), 186});
    ReleaseOverStaff();
    QCOMPARE(Live(), (Log{On(76), Off(76)}));
    QCOMPARE(TheStaff().NoteCount(), 1);
  }

  // A quick second press comes as a double click: it is one more note, not a press on
  // the window's body, which would minimise the window.
  void aQuickSecondPressIsAnotherNote() {
    QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, {}, InWindow({215, 197}));
    QCOMPARE(Live(), (Log{On(74), Off(74), On(74), Off(74)}));
    QCOMPARE(TheStaff().NoteCount(), 2);
    QVERIFY(!window->isMinimized());
    QCOMPARE(Inked(), QRegion());
  }

  // Whatever happens while a note is held, it ends exactly once with its finger wiped:
  // at once when its release can no longer come, else at the release. Afterwards the
  // violin plays as before.
  void aHeldNoteAlwaysEndsOnce_data() {
    QTest::addColumn<Meanwhile>("meanwhile");
    QTest::addColumn<bool>("endsAtOnce");
    QTest::newRow("released away from the violin") << Meanwhile::Nothing << false;
    QTest::newRow("another window becomes active") << Meanwhile::OtherWindowActive << true;
    QTest::newRow("another program becomes active") << Meanwhile::OtherProgramActive << true;
    QTest::newRow("a dialog opens") << Meanwhile::DialogOpens << true;
    QTest::newRow("a context menu opens") << Meanwhile::ContextMenuOpens << true;
    QTest::newRow("the violin is hidden") << Meanwhile::ViolinHidden << true;
    QTest::newRow("the key's tuning changes") << Meanwhile::Retuned << false;
    QTest::newRow("play starts and stops") << Meanwhile::PlayStartsAndStops << false;
    QTest::newRow("edit mode is chosen") << Meanwhile::EditModeChosen << false;
  }
  void aHeldNoteAlwaysEndsOnce() {
    QFETCH(Meanwhile, meanwhile);
    QFETCH(bool, endsAtOnce);
    QWidget other;
    if (meanwhile == Meanwhile::OtherWindowActive) {
      other.show();
      QVERIFY(QTest::qWaitForWindowActive(&other));
      window->activateWindow();
      QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    QDialog dialog(window.get());
    const Log played{On(74), Off(74)};  // A string, fifth cell

    Press({215, 197});
    QCOMPARE(Live(), Log{On(74)});
    switch (meanwhile) {
      case Meanwhile::Nothing: break;
      case Meanwhile::OtherWindowActive:
        other.activateWindow();
        QTRY_VERIFY(!window->isActiveWindow());
        break;
      case Meanwhile::OtherProgramActive: {
        QApplicationStateChangeEvent inactive(Qt::ApplicationInactive);
        QApplication::sendEvent(qApp, &inactive);
        break;
      }
      case Meanwhile::DialogOpens: dialog.open(); break;
      case Meanwhile::ContextMenuOpens: {
        QWidget* field = Get(ControlId::RatioField, 0);  // the Menu key on a text field
        const QPoint middle = field->rect().center();
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, middle, field->mapToGlobal(middle));
        QApplication::sendEvent(field, &menuKey);
        QTRY_VERIFY(QApplication::activePopupWidget());
        break;
      }
      case Meanwhile::ViolinHidden: Canvas()->hide(); break;
      case Meanwhile::Retuned:  // as a new key retunes every pitch
        for (auto& pitch : window->State().tuning.pitches) pitch += 5;
        break;
      case Meanwhile::PlayStartsAndStops:
        Click(ControlId::TransportButton, 0);
        QVERIFY(window->State().modes.playing);
        Click(ControlId::TransportButton, 1);
        break;
      case Meanwhile::EditModeChosen: Get<QAbstractButton>(ControlId::ModeButton, 0)->click(); break;
    }
    if (endsAtOnce) {
      QCOMPARE(Live(), played);
      QCOMPARE(Inked(), QRegion());
      QVERIFY(!Bow()->isVisible());
    }

    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    dialog.close();
    Canvas()->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    ReleaseOverStaff();
    QCOMPARE(Live(), played);
    QCOMPARE(Inked(), QRegion());
    QVERIFY(!Bow()->isVisible());

    window->State().tuning = testing::MarkedTuning();
    Press({115, 197});
    ReleaseOverStaff();
    QCOMPARE(Live().size(), 4u);
    QCOMPARE(Live().back(), Off(70));
  }
};

QTEST_MAIN(FingerboardMouseTest)
#include "fingerboard_mouse_test.moc"
