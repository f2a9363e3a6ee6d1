// Files and undo through the real window: a melody made with the mouse, undone, redone,
// saved, opened again and exported; saves that cannot land; damaged files; scores
// dropped on the window or opened from outside.
#include <unistd.h>

#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTemporaryDir>
#include <random>

#include "files/score_file.h"
#include "files/strict_midi_reader.h"
#include "window/staff_head_panel.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;
using window::MenuCommand;

namespace {

// What a score keeps of the staff, the same at any scroll.
QStringList Kept(const Staff& staff) {
  QStringList kept{QStringLiteral("key %1 title %2").arg(staff.keySignature).arg(QString::fromStdString(staff.title))};
  for (int i = 1; i <= staff.NoteCount(); ++i) {
    Note note = staff.notes[i];
    note.left += staff.appliedScroll;
    kept << QString::fromStdString(NoteRecord(note));
  }
  return kept;
}

// Counts a widget's paints while the window reads a score.
struct PaintsWhileReading : QObject {
  explicit PaintsWhileReading(const Modes& modes) : modes(modes) {}
  bool eventFilter(QObject*, QEvent* event) override {
    count += event->type() == QEvent::Paint && modes.loading;
    return false;
  }
  const Modes& modes;
  int count = 0;
};

}  // namespace

class FilesTest : public testing::WindowTest {
  Q_OBJECT

  std::unique_ptr<QTemporaryDir> dir;

  QString Path(const QString& name) const { return dir->filePath(name); }
  void Run(MenuCommand command) { QVERIFY(window->RunMenuCommand(command)); }
  QPoint HeadOf(int index) { return window::StaffView::NoteRect(TheStaff().notes[index]).topLeft() + QPoint(8, 17); }
  // Drags path over the window and drops it; whether the window took it.
  bool Drop(const QString& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter(QPoint(600, 400), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QDropEvent drop(QPointF(600, 400), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    if (!QApplication::sendEvent(window.get(), &enter) || !enter.isAccepted()) return false;
    QApplication::sendEvent(window.get(), &drop);
    QCoreApplication::processEvents();
    return drop.isAccepted();
  }

 private slots:
  void init() {
    MakeWindow();
    dir = std::make_unique<QTemporaryDir>();
  }

  void melodyEditedUndoneRedoneSavedReopenedAndExported() {
    TheStaff().title = "練習曲";
    window->NotifyScoreChanged(window::ScoreChange::Replaced);  // as if it had been opened so
    QList<QStringList> states{Kept(TheStaff())};
    for (QPoint p : {QPoint(40, 58), QPoint(120, 72), QPoint(200, 44)}) DoubleClickStaff(p), states << Kept(TheStaff());
    clock->now += 1e6;  // a press, not a double click on the note
    QTest::mousePress(&View(), Qt::LeftButton, {}, HeadOf(2));
    QTest::mouseMove(&View(), HeadOf(2) + QPoint(0, -14));
    QTest::mouseRelease(&View(), Qt::LeftButton, {}, HeadOf(2) + QPoint(0, -14));
    states << Kept(TheStaff());
    QVERIFY(ChooseOnStaff(HeadOf(3), [](const QAction* a) {
      return window::StaffView::NoteChoiceOf(a) == NoteMenuChoice{NoteMenuChoice::Kind::Accidental, 1};
    }));
    states << Kept(TheStaff());
    // The tuning follows the key back and forth; the key changes with the second bar in view.
    auto tuned = [this] { return std::pair(window->State().tuning.scale, window->State().tuning.keyName); };
    const auto inC = tuned();
    auto* bar = qobject_cast<QScrollBar*>(window->Control(ControlId::StaffScrollBar));
    bar->setValue(kBarWidth);
    QVERIFY(ChooseOnControl(ControlId::KeySignature, [](const QAction* a) { return window::StaffHeadPanel::ItemOf(a) == 2; }));
    const auto inD = tuned();
    states << Kept(TheStaff());
    for (int i = 1; i < states.size(); ++i) QVERIFY2(states[i] != states[i - 1], qPrintable(QString::number(i)));

    const QImage edited = testing::Grab(&View());
    QTest::mouseMove(&View(), HeadOf(3));  // its hover sound must end when undo takes it away
    for (int i = states.size() - 2; i >= -1; --i) {
      Run(MenuCommand::Undo);
      QCOMPARE(Kept(TheStaff()), states[std::max(i, 0)]);
    }
    QVERIFY(tuned() == inC && tuned() != inD);
    QVERIFY2(!TheStaff().hasChanges, "back at the opened score, nothing is changed");
    QVERIFY(!sound->players[kScorePlayer].notes.empty() && sound->players[kScorePlayer].StillSounding().empty());
    for (int i = 1; i <= states.size(); ++i) {
      Run(MenuCommand::Redo);
      QCOMPARE(Kept(TheStaff()), states[std::min<int>(i, states.size() - 1)]);
    }
    QVERIFY(tuned() == inD && TheStaff().hasChanges);
    QCOMPARE(bar->value(), kBarWidth);
    QCOMPARE(testing::Grab(&View()), edited);

    // A scale fills the staff anew and a cancelled open leaves it empty; undo brings the melody back.
    for (bool byScale : {true, false}) {
      byScale ? void(window->RunMenuCommand(MenuCommand::Scale, 9)) : Run(MenuCommand::OpenScore);
      QCOMPARE(TheStaff().NoteCount() > 0, byScale);
      Run(MenuCommand::Undo);
      QCOMPARE(Kept(TheStaff()), states.last());
    }

    dialogs->answers << Path("melody.note");
    Run(MenuCommand::SaveScore);
    QCOMPARE(dialogs->suggested.last(), QStringLiteral("練習曲"));
    const std::string text = testing::FileBytes(Path("melody.note"));
    QVERIFY2(text.ends_with(";5;0;7;2;0\n") && std::count(text.begin(), text.end(), '\n') == 1, text.c_str());
    Staff reread;
    ApplyScoreFile(reread, ParseScoreFile(text));
    QCOMPARE(Kept(reread), states.last());
    QCOMPARE(Kept(TheStaff()), QStringList{"key 0 title 演奏"});  // a save ends the score
    Run(MenuCommand::Undo);
    QCOMPARE(TheStaff().NoteCount(), 0);

    PaintsWhileReading reading(window->State().modes);
    window->Control(ControlId::LoadingLabel)->installEventFilter(&reading);
    dialogs->answers << Path("melody.note");
    Run(MenuCommand::OpenScore);
    QCOMPARE(Kept(TheStaff()), states.last());
    QVERIFY(tuned() == inD && window->State().documentPath == Path("melody.note"));
    QVERIFY2(reading.count > 0, "the reading label never showed");
    QVERIFY(!window->State().modes.loading && !window->Control(ControlId::LoadingLabel)->isVisible());

    // A title typed after the last step stays when that step is undone.
    DoubleClickStaff({400, 58});
    static_cast<QLineEdit*>(window->Control(ControlId::TitleField))->setText("新しい題");
    Run(MenuCommand::Undo);
    QCOMPARE(Kept(TheStaff()).mid(1), states.last().mid(1));
    QCOMPARE(TheStaff().title, "新しい題");

    // The MIDI file plays the notes in time order, each held for the gate's share of its step.
    const QStringList exported = Kept(TheStaff());
    dialogs->answers << Path("melody.mid");
    Run(MenuCommand::SaveMidi);
    QCOMPARE(Kept(TheStaff()), exported);
    const std::string midi = testing::FileBytes(Path("melody.mid"));
    const testing::Decoded decoded = testing::Decode(testing::Bytes(midi.begin(), midi.end()));
    QVERIFY2(decoded.ok, decoded.error.c_str());
    QCOMPARE(decoded.program, kViolin - 1);
    std::vector<Note> byTime(TheStaff().notes.begin() + 1, TheStaff().notes.end());
    std::sort(byTime.begin(), byTime.end(), [](const Note& a, const Note& b) { return a.left < b.left; });
    QCOMPARE(decoded.notes.size(), 2 * byTime.size());
    for (std::size_t i = 0; i < decoded.notes.size(); ++i) {
      const auto &event = decoded.notes[i], &on = decoded.notes[i & ~1u];
      QVERIFY(event.key == byTime[i / 2].pitch && (event.velocity > 0) == (i % 2 == 0));
      if (i % 2 && i + 1 < decoded.notes.size())
        QCOMPARE(event.tick - on.tick, static_cast<long long>((decoded.notes[i + 1].tick - on.tick) * 0.95));
    }
  }

  void aSaveThatCannotLandLosesNothing_data() {
    QTest::addColumn<bool>("fullDisk");
    QTest::addColumn<QString>("reason");
    QTest::newRow("read-only folder") << false << QStringLiteral("書き込めない");
    QTest::newRow("full disk") << true << QStringLiteral("ディスクに空きがない");
  }
  void aSaveThatCannotLandLosesNothing() {
    QFETCH(bool, fullDisk);
    QFETCH(QString, reason);
    DoubleClickStaff({40, 58});
    TheStaff().hasChanges = true;
    const QStringList before = Kept(TheStaff());
    const QString folder = Path("scores");
    QDir().mkdir(folder);
    testing::WriteBytes(folder + "/old.note", "precious");
    testing::WriteBytes(folder + "/old.mid", "old tune");
    dialogs->answers << folder + "/old.note" << folder + "/old.mid" << folder + "/old.note";
    closeQuestion->answer = CloseQuestion::Answer::Save;
    // Root writes anywhere: the saves then run as a user for whom the folder is read-only.
    QFile(dir->path()).setPermissions(QFile::permissions(dir->path()) | QFile::ExeOther);
    const bool asNobody = !fullDisk && ::geteuid() == 0;
    fullDisk ? SimulateFullDisk(true) : void(QFile(folder).setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::ExeOther));
    bool closed = true;
    {
      if (asNobody) QVERIFY(::seteuid(65534) == 0);
      const auto restore = qScopeGuard([asNobody] {
        if (asNobody && ::seteuid(0) != 0) qFatal("cannot become root again");
        SimulateFullDisk(false);
      });
      Run(MenuCommand::SaveScore);
      Run(MenuCommand::SaveMidi);
      closed = window->close();  // asks, saves, fails
    }

    QVERIFY2(!closed && window->isVisible(), "closing went on although the save failed");
    QCOMPARE(Kept(TheStaff()), before);
    QVERIFY(TheStaff().hasChanges);
    QVERIFY(testing::FileBytes(folder + "/old.note") == "precious" && testing::FileBytes(folder + "/old.mid") == "old tune");
    QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList({"old.mid", "old.note"}));
    QCOMPARE(dialogs->told.size(), 3);
    for (const QString& sentence : dialogs->told)
      QVERIFY2(sentence.contains(reason) && sentence.contains("old.") && sentence.count("。") == 1, qPrintable(sentence));
  }

  void damagedFilesNeverTakeTheWindowDown() {
    const std::string good = "120,105,0,60,60,0,0,0,9,8,C498 152,99,1,62,62,0,1,0,9,2,D4#92 ;曲;作曲家;5;0;7;3;2\n";
    std::vector<std::string> corpus{";;;;;;;;;;;;", "no score here", "\xC3\x28;\xFF;", good + '\0' + good,
                                    QString::fromStdString(good).replace("60", "99999999999999999999").toStdString()};
    std::mt19937 random(11);
    for (std::size_t n = 0; n < 2 * good.size(); ++n) {  // cut short, then damaged at random
      corpus.push_back(good.substr(0, n));
      for (std::size_t k = 0; n >= good.size() && k <= n % 4; ++k) corpus.back()[random() % good.size()] = char(random() % 256);
    }
    DoubleClickStaff({40, 58});
    for (const std::string& bytes : corpus) {
      testing::WriteBytes(Path("damaged.note"), bytes);
      const QStringList before = Kept(TheStaff());
      const qsizetype told = dialogs->told.size();
      dialogs->answers << Path("damaged.note") << Path("damaged.mid");
      Run(MenuCommand::OpenScore);
      // Refused and told, with the staff as it was, or read as the reader reads it.
      QVERIFY2(dialogs->told.size() > told ? Kept(TheStaff()) == before
                                           : TheStaff().NoteCount() == int(ParseScoreFile(bytes).notes.size()),
               bytes.c_str());
      QVERIFY(!window->State().modes.loading);
      View().grab();
      Run(MenuCommand::SaveMidi);
      Run(MenuCommand::Undo);
    }
    for (const QString& unreadable : {Path("gone.note"), dir->path()}) {
      dialogs->answers << unreadable;
      Run(MenuCommand::OpenScore);
      QVERIFY(dialogs->told.last().contains(QFileInfo(unreadable).fileName()));
    }
  }

  void scoresFromOutsideAskBeforeReplacingChanges() {
    for (const char* name : {"TUNE.NOTE", "tune.txt"}) testing::WriteBytes(Path(name), "120,105,0,60,60,0,0,0,9,8,C498 ;曲;;5;0;7;0;0\n");
    DoubleClickStaff({40, 58});
    DoubleClickStaff({120, 72});
    const QStringList before = Kept(TheStaff());
    QVERIFY2(!Drop(Path("tune.txt")), "another kind of file was taken");
    window->State().modes.playing = true;  // nothing comes in while a score plays
    QVERIFY(!Drop(Path("TUNE.NOTE")));
    window->OpenDocument(Path("TUNE.NOTE"));
    window->State().modes.playing = false;
    // Over unsaved changes the close question comes first; cancelled, or a save that
    // does not happen, keeps them.
    TheStaff().hasChanges = true;
    for (CloseQuestion::Answer answer : {CloseQuestion::Answer::Cancel, CloseQuestion::Answer::Save}) {
      closeQuestion->answer = answer;
      QVERIFY(Drop(Path("TUNE.NOTE")));
      window->OpenDocument(Path("TUNE.NOTE"));
    }
    QCOMPARE(closeQuestion->asked, 4);
    QCOMPARE(Kept(TheStaff()), before);
    closeQuestion->answer = CloseQuestion::Answer::DontSave;
    QVERIFY(Drop(Path("TUNE.NOTE")));
    QVERIFY(TheStaff().NoteCount() == 1 && TheStaff().hasChanges && window->State().documentPath == Path("TUNE.NOTE"));
    TheStaff().hasChanges = false;
    window->OpenDocument(Path("TUNE.NOTE"));
    QCOMPARE(closeQuestion->asked, 5);
  }
};

QTEST_MAIN(FilesTest)
#include "files_test.moc"
