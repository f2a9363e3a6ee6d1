// The entry buttons and the staff head driven through the real window: what the buttons
// choose must reach the next note, and the key and time menus must change the score, its
// tuning and what the head and the staff show, as the editor would on its own.
#include <QAbstractButton>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QtTest>

#include "editor/key_time.h"
#include "files/score_file.h"
#include "violin/fakes.h"
#include "window/main_window.h"
#include "window/staff_head_panel.h"
#include "window/staff_view.h"

using namespace lirenza;
using layout::ControlId;
using window::ScoreChange;

class EntryHeadTest : public QObject {
  Q_OBJECT

  testing::FakeSound sound;
  std::shared_ptr<testing::FakeClock> clock;
  std::unique_ptr<MainWindow> window;

  Staff& staff() { return window->State().staff; }
  QAbstractButton* Button(ControlId id, int index) {
    return static_cast<QAbstractButton*>(window->Control(id, index));
  }
  QImage Grab(ControlId id) { return window->Control(id)->grab().toImage(); }
  void DoubleClick(QPoint p) {
    clock->now += 1e6;  // far from any earlier click
    for (int i = 0; i < 2; ++i) QTest::mouseClick(&window->Staff(), Qt::LeftButton, {}, p);
  }
  // Presses a signature and clicks the item in the menu that opens; -1 is the title.
  void Choose(ControlId signature, int item) {
    QTest::mousePress(window->Control(signature), Qt::LeftButton);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu);
    for (QAction* action : menu->actions())
      if (!action->isSeparator() && window::StaffHeadPanel::ItemOf(action) == item) {
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        QTRY_VERIFY(!menu->isVisible());
        return;
      }
    QFAIL("no such item");
  }
  // A few notes over the staff, high and low, and a rest.
  void EnterMelody() {
    for (QPoint p : {QPoint(40, 30), QPoint(200, 58), QPoint(330, 70), QPoint(500, 130)}) DoubleClick(p);
    QTest::mouseClick(Button(ControlId::LengthButton, 24), Qt::LeftButton);
    DoubleClick({650, 60});
  }

 private slots:
  void init() {
    clock = std::make_shared<testing::FakeClock>();
    window::WindowServices services;
    services.ports = sound.ports;
    services.clock = clock;
    window = std::make_unique<MainWindow>(services);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
  }

  void buttonsChooseWhatTheNextNoteIs_data() {
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("loudness");
    QTest::addColumn<int>("articulation");
    QTest::addColumn<QString>("digits");  // velocity and duration digit of the note
    QTest::newRow("whole, ppp, staccato") << 0 << 0 << 0 << "30";
    QTest::newRow("eighth, ff, normal") << 8 << 7 << 1 << "D8";
    QTest::newRow("sixty-fourth, fff, legato") << 15 << 8 << 2 << "FF";
    QTest::newRow("quarter rest") << 20 << 5 << 0 << "04";
  }
  void buttonsChooseWhatTheNextNoteIs() {
    QFETCH(int, length);
    QFETCH(int, loudness);
    QFETCH(int, articulation);
    QFETCH(QString, digits);
    QTest::mouseClick(Button(ControlId::LengthButton, length), Qt::LeftButton);
    QTest::mouseClick(Button(ControlId::VelocityButton, loudness), Qt::LeftButton);
    QTest::mouseClick(Button(ControlId::VelocityButton, loudness), Qt::LeftButton);  // pressed again: stays
    QTest::mouseClick(Button(ControlId::ArticulationButton, articulation), Qt::LeftButton);
    DoubleClick({200, 58});
    QCOMPARE(staff().NoteCount(), 1);
    const Note& note = staff().notes[1];
    QCOMPARE(QString::fromStdString(note.velocityDigit + note.durationDigit), digits);
    QCOMPARE(window->State().entry.gate, kArticulationGates[articulation]);
    for (auto [family, chosen] : {std::pair{ControlId::LengthButton, length}, {ControlId::VelocityButton, loudness},
                                  {ControlId::ArticulationButton, articulation}})
      for (int i = 0; i < layout::FamilySize(family); ++i) QCOMPARE(Button(family, i)->isChecked(), i == chosen);
    // The repeat bar at the staff's end counts as a first click: one more click enters.
    QTest::mouseClick(window->Control(ControlId::StaffEnd), Qt::LeftButton);
    QTest::mouseClick(&window->Staff(), Qt::LeftButton, {}, {400, 58});
    QCOMPARE(staff().NoteCount(), 2);
  }

  void keyMenuMovesTheNotesRetunesAndRepaints_data() {
    QTest::addColumn<int>("item");
    for (int item : {1, 5, 8, 14, kOctaveUpItem, kOctaveDownItem})
      QTest::addRow("%s", KeyMenuCaption(item).data()) << item;
  }
  void keyMenuMovesTheNotesRetunesAndRepaints() {
    QFETCH(int, item);
    EnterMelody();
    Staff expected = staff();
    TuningTables expectedTuning = window->State().tuning;
    QVERIFY(ChooseKey(expected, expectedTuning, Modes{}, item));
    const QImage head = Grab(ControlId::KeySignature), sheet = Grab(ControlId::StaffCanvas);
    QSignalSpy changes(window.get(), &MainWindow::scoreChanged);
    Choose(ControlId::KeySignature, item);
    QVERIFY(staff().notes == expected.notes);
    QCOMPARE(staff().keySignature, expected.keySignature);
    QCOMPARE(window->State().tuning.pitches, expectedTuning.pitches);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes[0][0].value<ScoreChange>(), ScoreChange::Edited);
    QVERIFY(Grab(ControlId::StaffCanvas) != sheet);  // the notes moved on screen
    QCOMPARE(Grab(ControlId::KeySignature) != head, item < kKeyCount);
    Choose(ControlId::KeySignature, 0);
    QCOMPARE(Grab(ControlId::KeySignature), head);
  }

  void timeMenuChangesPicturesOnly() {
    EnterMelody();
    const std::vector<Note> notes = staff().notes;
    const QImage head = Grab(ControlId::TimeSignature), sheet = Grab(ControlId::StaffCanvas);
    QSignalSpy changes(window.get(), &MainWindow::scoreChanged);
    Choose(ControlId::TimeSignature, -1);
    Choose(ControlId::TimeSignature, 0);  // the metre already set
    QCOMPARE(changes.count(), 0);
    Choose(ControlId::TimeSignature, 2);
    QCOMPARE(staff().timeSignature, 2);
    QCOMPARE(changes.count(), 1);
    QVERIFY(staff().notes == notes);
    QVERIFY(Grab(ControlId::TimeSignature) != head);
    QVERIFY(Grab(ControlId::StaffCanvas) != sheet);  // a triple metre's sheet
  }

  void busyRefusesLengthKeyAndTime() {
    EnterMelody();
    const Staff before = staff();
    window->State().modes.playing = true;
    QSignalSpy changes(window.get(), &MainWindow::scoreChanged);
    QTest::mouseClick(Button(ControlId::LengthButton, 8), Qt::LeftButton);
    QVERIFY(!Button(ControlId::LengthButton, 8)->isChecked());
    QVERIFY(Button(ControlId::LengthButton, 24)->isChecked());
    QCOMPARE(window->State().entry.lengthButton, 24);
    QTest::mouseClick(Button(ControlId::VelocityButton, 1), Qt::LeftButton);
    QCOMPARE(window->State().entry.loudnessButton, 1);  // loudness is no change to the score
    Choose(ControlId::KeySignature, 3);
    Choose(ControlId::KeySignature, kOctaveUpItem);
    Choose(ControlId::TimeSignature, 4);
    QVERIFY(staff().notes == before.notes);
    QCOMPARE(std::pair(staff().keySignature, staff().timeSignature), std::pair(0, 0));
    QCOMPARE(changes.count(), 0);
  }

  void headAndFieldsFollowTheScore() {
    // The start pause puts the captions into the fields, and so into the score.
    QTRY_VERIFY_WITH_TIMEOUT(window->StartPauseOver(), 3000);
    QCOMPARE(QString::fromStdString(staff().title), QStringLiteral("曲名"));
    Choose(ControlId::KeySignature, 3);
    const QImage threeSharps = Grab(ControlId::KeySignature);
    Choose(ControlId::KeySignature, 0);
    ScoreFile opened;
    opened.title = "荒城の月", opened.comment = "滝廉太郎", opened.keySignature = 3;
    LoadScoreText(staff(), ScoreFileText(opened));
    staff().hasChanges = false;
    window->NotifyScoreChanged(ScoreChange::Replaced);
    QCOMPARE(Grab(ControlId::KeySignature), threeSharps);
    auto* title = static_cast<QLineEdit*>(window->Control(ControlId::TitleField));
    QCOMPARE(title->text(), QStringLiteral("荒城の月"));
    QVERIFY(!staff().hasChanges);  // showing the score is no change to it
    // Typing goes back into the score, in edit mode only: play mode takes the keys.
    QVERIFY(!title->isEnabled());
    QTest::mouseClick(Button(ControlId::ModeButton, 0), Qt::LeftButton);
    QVERIFY(title->isEnabled());
    QTest::keyClicks(window->Control(ControlId::ComposerField), "!");
    QCOMPARE(QString::fromStdString(staff().comment), QStringLiteral("滝廉太郎!"));
    QVERIFY(staff().hasChanges);
  }
};

QTEST_MAIN(EntryHeadTest)
#include "entry_head_test.moc"
