// The entry buttons and the staff head driven through the real window: a choice must
// reach the next note, and the key and time menus must change the score, its tuning and
// what the head and the staff show exactly as the editor does on its own.
#include <QLineEdit>
#include <QSignalSpy>

#include "editor/key_time.h"
#include "files/score_file.h"
#include "window/staff_head_panel.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;

class EntryHeadTest : public testing::WindowTest {
  Q_OBJECT

  testing::PaintedRegion staffPaints;

  QImage Shot(ControlId id) { return testing::Grab(Get(id)); }
  // Presses a signature and chooses item from the menu that opens (-1: its title), once the
  // menu is gone and the staff under it painted again: later paints are the choice's.
  void Choose(ControlId signature, int item) {
    QTest::mousePress(Get(signature), Qt::LeftButton);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu);
    menu->close();
    QTest::qWait(50);
    staffPaints.painted = QRegion();
    testing::FindItem(*menu, [item](const QAction* a) { return window::StaffHeadPanel::ItemOf(a) == item; }).second->trigger();
  }
  // Notes high and low, and a rest.
  void EnterMelody() {
    for (QPoint p : {QPoint(40, 30), QPoint(200, 58), QPoint(330, 70), QPoint(500, 130)}) DoubleClickStaff(p);
    Click(ControlId::LengthButton, 24);
    DoubleClickStaff({650, 60});
  }

 private slots:
  void init() {
    MakeWindow();
    View().installEventFilter(&staffPaints);
  }

  void buttonsChooseWhatTheNextNoteIs_data() {
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("loudness");
    QTest::addColumn<int>("articulation");
    QTest::addColumn<QString>("digits");  // velocity and duration digit of the note
    QTest::newRow("whole, ppp, staccato") << 0 << 0 << 0 << "30";
    QTest::newRow("sixty-fourth, ff, normal") << 15 << 7 << 1 << "DF";
    QTest::newRow("eighth rest") << 24 << 5 << 2 << "08";
  }
  void buttonsChooseWhatTheNextNoteIs() {
    QFETCH(int, length);
    QFETCH(int, loudness);
    QFETCH(int, articulation);
    const std::pair<ControlId, int> chosen[] = {{ControlId::LengthButton, length},
                                                {ControlId::VelocityButton, loudness},
                                                {ControlId::ArticulationButton, articulation}};
    for (auto [family, index] : chosen) Click(family, index), Click(family, index);  // pressed again, it stays down
    DoubleClickStaff({200, 58});
    QTEST(QString::fromStdString(TheStaff().notes.back().velocityDigit + TheStaff().notes.back().durationDigit), "digits");
    QCOMPARE(window->State().entry.gate, kArticulationGates[articulation]);
    for (auto [family, index] : chosen)
      for (int i = 0; i < layout::FamilySize(family); ++i) QCOMPARE(Checked(family, i), i == index);
    Click(ControlId::StaffEnd);  // the repeat bar is a first click: one more enters a note
    ClickStaff({400, 58});
    QCOMPARE(TheStaff().NoteCount(), 2);
  }

  void menuItemsChangeTheScoreAsTheEditorDoes_data() {
    QTest::addColumn<bool>("key");
    QTest::addColumn<int>("item");
    QTest::addColumn<bool>("busy");
    for (int item : {1, 8, 14, kOctaveUpItem, kOctaveDownItem, -1})
      QTest::addRow("key %d", item) << true << item << false;
    for (int item : {2, 0, -1}) QTest::addRow("time %d", item) << false << item << false;
    QTest::newRow("key 3 while playing") << true << 3 << true;
    QTest::newRow("octave while playing") << true << int(kOctaveUpItem) << true;
    QTest::newRow("time 2 while playing") << false << 2 << true;
  }
  void menuItemsChangeTheScoreAsTheEditorDoes() {
    QFETCH(bool, key);
    QFETCH(int, item);
    QFETCH(bool, busy);
    EnterMelody();
    window->State().modes.playing = busy;
    Staff expected = TheStaff();
    TuningTables expectedTuning = window->State().tuning;
    if (item >= 0) key ? ChooseKey(expected, expectedTuning, window->State().modes, item)
                       : ChooseTime(expected, window->State().modes, item);
    const bool changed = expected.notes != TheStaff().notes || expected.keySignature != TheStaff().keySignature ||
                         expected.timeSignature != TheStaff().timeSignature;
    const ControlId head = key ? ControlId::KeySignature : ControlId::TimeSignature;
    const QImage headBefore = Shot(head), sheet = Shot(ControlId::StaffCanvas);
    QSignalSpy changes(window.get(), &MainWindow::scoreChanged);
    Choose(head, item);
    if (changed || !key) QTRY_VERIFY(staffPaints.painted.contains(QPoint(800, 70)));  // the metre's title too
    QVERIFY(TheStaff().notes == expected.notes);
    QCOMPARE(std::pair(TheStaff().keySignature, TheStaff().timeSignature),
             std::pair(expected.keySignature, expected.timeSignature));
    QCOMPARE(window->State().tuning.pitches, expectedTuning.pitches);
    QCOMPARE(changes.count(), changed ? 1 : 0);  // no step to undo for a choice that changed nothing
    QCOMPARE(Shot(ControlId::StaffCanvas) != sheet, changed);  // moved notes, or a triple metre's sheet
    QCOMPARE(Shot(head) != headBefore, changed && item < kKeyCount);
    if (!busy) return;
    Click(ControlId::LengthButton, 8);  // refused: the chosen length stays down
    QVERIFY(!Checked(ControlId::LengthButton, 8) && Checked(ControlId::LengthButton, 24));
    Click(ControlId::VelocityButton, 1);  // no change to the score: loudness still works
    QCOMPARE(std::pair(window->State().entry.lengthButton, window->State().entry.loudnessButton), std::pair(24, 1));
  }

  void headAndFieldsFollowTheScore() {
    QTRY_VERIFY_WITH_TIMEOUT(window->StartPauseOver(), 3000);
    const QImage noKey = Shot(ControlId::KeySignature);
    ScoreFile opened;
    opened.title = "荒城の月", opened.comment = "滝廉太郎", opened.keySignature = 3;
    LoadScoreText(TheStaff(), ScoreFileText(opened));
    TheStaff().hasChanges = false;
    window->NotifyScoreChanged(window::ScoreChange::Replaced);
    QVERIFY(Shot(ControlId::KeySignature) != noKey);
    auto* title = Get<QLineEdit>(ControlId::TitleField);
    QCOMPARE(title->text(), QStringLiteral("荒城の月"));
    QVERIFY(!TheStaff().hasChanges);  // showing the score is no change to it
    QVERIFY(!title->isEnabled());  // play mode takes the keys
    window->State().modes.playing = true;  // a mode change while playing leaves the fields locked
    Click(ControlId::ModeButton, 0);
    QVERIFY(!title->isEnabled());
    window->State().modes.playing = false;
    Click(ControlId::ModeButton, 1);
    Click(ControlId::ModeButton, 0);
    QTest::keyClicks(Get(ControlId::ComposerField), "!");
    QCOMPARE(QString::fromStdString(TheStaff().comment), QStringLiteral("滝廉太郎!"));
    QVERIFY(TheStaff().hasChanges);
  }
};

QTEST_MAIN(EntryHeadTest)
#include "entry_head_test.moc"
