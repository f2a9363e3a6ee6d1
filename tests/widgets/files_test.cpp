// Files and undo through the real window: a melody made with the mouse, undone and
// redone, saved, opened again and exported; saves that cannot land; damaged files;
// scores dropped on the window or opened from outside.
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QtTest>
#include <random>

#include "editor/key_time.h"
#include "files/file_io.h"
#include "files/score_file.h"
#include "files/strict_midi_reader.h"
#include "violin/fakes.h"
#include "window/main_window.h"
#include "window/staff_view.h"

using namespace lirenza;
using layout::ControlId;
using window::MenuCommand;

namespace {

struct FakeDialogs : window::Dialogs {
  QStringList answers;  // paths given in turn; none left: the dialog was cancelled
  QStringList suggested, told;
  std::optional<QString> Next() { return answers.isEmpty() ? std::nullopt : std::optional(answers.takeFirst()); }
  std::optional<QString> OpenScorePath(QWidget*) override { return Next(); }
  std::optional<QString> SaveScorePath(QWidget*, const QString& name) override { return suggested << name, Next(); }
  std::optional<QString> SaveMidiPath(QWidget*, const QString& name) override { return suggested << name, Next(); }
  void Tell(QWidget*, const QString& sentence) override { told << sentence; }
};

struct FakeQuestion : CloseQuestion {
  Answer answer = Answer::DontSave;
  int asked = 0;
  Answer Ask(QWidget*, const QString&, const QString&, const QString&, const QString&) override {
    return ++asked, answer;
  }
};

// What a score keeps of the staff, the same at any scroll: one record per note.
QStringList Kept(const Staff& staff) {
  QStringList kept;
  for (int i = 1; i <= staff.NoteCount(); ++i) {
    Note note = staff.notes[i];
    note.left += staff.appliedScroll;
    kept << QString::fromStdString(NoteRecord(note));
  }
  kept << QStringLiteral("key %1 time %2 title %3")
              .arg(staff.keySignature)
              .arg(staff.timeSignature)
              .arg(QString::fromStdString(staff.title));
  return kept;
}

QByteArray Slurp(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unread)");
}

void Spit(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

// Answers the note menu that opens next with its own keys: the submenu holding the
// wanted item is opened and Return pressed on the item.
void AnswerNextMenu(NoteMenuChoice wanted) {
  QTimer::singleShot(0, [wanted] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu) return;
    for (QAction* part : menu->actions())
      for (QAction* item : part->menu() ? part->menu()->actions() : QList<QAction*>())
        if (window::StaffView::NoteChoiceOf(item) == wanted) {
          menu->setActiveAction(part);
          part->menu()->setActiveAction(item);
          QTest::keyClick(part->menu(), Qt::Key_Return);
          return;
        }
    menu->close();
  });
}

// Counts the paints of a widget that happen while the window reads a score.
struct PaintWhileReading : QObject {
  explicit PaintWhileReading(const Modes& modes) : modes(modes) {}
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint && modes.loading) ++count;
    return false;
  }
  const Modes& modes;
  int count = 0;
};

}  // namespace

class FilesTest : public QObject {
  Q_OBJECT

  testing::FakeSound sound;
  std::shared_ptr<testing::FakeClock> clock;
  std::shared_ptr<FakeDialogs> dialogs;
  std::shared_ptr<FakeQuestion> question;
  std::unique_ptr<MainWindow> window;
  std::unique_ptr<QTemporaryDir> dir;

  Staff& TheStaff() { return window->State().staff; }
  QString Path(const QString& name) const { return dir->filePath(name); }
  void Click(QPoint p, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(&window->Staff(), button, {}, p);
    QTest::mouseRelease(&window->Staff(), button, {}, p);
  }
  void DoubleClick(QPoint p) {
    clock->now += 1e6;  // far from any earlier click
    Click(p);
    Click(p);
  }
  QPoint HeadOf(int index) { return window::StaffView::NoteRect(TheStaff().notes[index]).topLeft() + QPoint(8, 17); }
  bool Run(MenuCommand command) { return window->RunMenuCommand(command); }
  // Sends a drag of path over the window and drops it; whether the window took it.
  bool Drop(const QString& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter(QPoint(600, 400), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(QPointF(600, 400), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &drop);
    QCoreApplication::processEvents();
    return drop.isAccepted();
  }

 private slots:
  void init() {
    clock = std::make_shared<testing::FakeClock>();
    dialogs = std::make_shared<FakeDialogs>();
    question = std::make_shared<FakeQuestion>();
    window::WindowServices services;
    services.ports = sound.ports;
    services.clock = clock;
    services.confirm = std::make_shared<testing::FakeConfirm>();
    services.dialogs = dialogs;
    services.closeQuestion = question;
    window = std::make_unique<MainWindow>(services);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(dir->isValid());
  }

  void melodyEditedUndoneRedoneSavedReopenedAndExported() {
    TheStaff().title = "練習曲";
    window->NotifyScoreChanged(window::ScoreChange::Replaced);  // as if it had been opened so
    QList<QStringList> states{Kept(TheStaff())};
    for (QPoint p : {QPoint(40, 58), QPoint(120, 72), QPoint(200, 44)}) {
      DoubleClick(p);
      states << Kept(TheStaff());
    }
    QCOMPARE(TheStaff().NoteCount(), 3);

    clock->now += 1e6;  // a press, not a double click on the note
    const QPoint from = HeadOf(2);
    QTest::mousePress(&window->Staff(), Qt::LeftButton, {}, from);
    QTest::mouseMove(&window->Staff(), from + QPoint(0, -14));
    QTest::mouseRelease(&window->Staff(), Qt::LeftButton, {}, from + QPoint(0, -14));
    states << Kept(TheStaff());
    QVERIFY2(states[4] != states[3], "the drag changed nothing");

    clock->now += 1e6;
    AnswerNextMenu({NoteMenuChoice::Kind::Accidental, 1});
    Click(HeadOf(3), Qt::RightButton);
    QCOMPARE(TheStaff().notes[3].accidentalSign, 1);
    states << Kept(TheStaff());

    // The tuning follows the key back and forth: its scale and the name shown.
    auto tuned = [this] { return std::pair(window->State().tuning.scale, window->State().tuning.keyName); };
    const auto inC = tuned();
    // The transposition happens with the second bar in view.
    auto* bar = qobject_cast<QScrollBar*>(window->Control(ControlId::StaffScrollBar));
    bar->setValue(kBarWidth);
    QVERIFY(ChooseKey(TheStaff(), window->State().tuning, window->State().modes, 2));
    window->NotifyScoreChanged(window::ScoreChange::Edited);
    const auto inD = tuned();
    QVERIFY(inD != inC);
    states << Kept(TheStaff());

    // Undo and redo walk every state back and forth whatever bar is in view.
    const QImage edited = window->Staff().grab().toImage();
    for (int i = states.size() - 2; i >= -1; --i) {
      Run(MenuCommand::Undo);
      QCOMPARE(Kept(TheStaff()), states[std::max(i, 0)]);
    }
    QVERIFY(tuned() == inC);
    QVERIFY2(!TheStaff().hasChanges, "back at the opened score, nothing is changed");
    for (int i = 1; i <= states.size(); ++i) {
      Run(MenuCommand::Redo);
      QCOMPARE(Kept(TheStaff()), states[std::min<int>(i, states.size() - 1)]);
    }
    QVERIFY(tuned() == inD);
    QVERIFY(TheStaff().hasChanges);
    QCOMPARE(bar->value(), kBarWidth);
    QCOMPARE(window->Staff().grab().toImage(), edited);

    // A cancelled open leaves the staff empty, and undo brings the melody back.
    Run(MenuCommand::OpenScore);
    QCOMPARE(TheStaff().NoteCount(), 0);
    Run(MenuCommand::Undo);
    QCOMPARE(Kept(TheStaff()), states.last());

    dialogs->answers << Path("melody.note");
    Run(MenuCommand::SaveScore);
    QCOMPARE(dialogs->suggested.last(), QStringLiteral("練習曲"));
    const QByteArray text = Slurp(Path("melody.note"));
    QVERIFY2(text.endsWith(";5;0;7;2;0\n") && text.count('\n') == 1, text.constData());
    Staff reread;
    ApplyScoreFile(reread, ParseScoreFile(text.toStdString()));
    QCOMPARE(Kept(reread), states.last());
    QCOMPARE(TheStaff().NoteCount(), 0);  // a save ends the score
    QCOMPARE(TheStaff().keySignature, 0);
    Run(MenuCommand::Undo);
    QCOMPARE(TheStaff().NoteCount(), 0);

    PaintWhileReading reading(window->State().modes);
    window->Control(ControlId::LoadingLabel)->installEventFilter(&reading);
    dialogs->answers << Path("melody.note");
    Run(MenuCommand::OpenScore);
    QCOMPARE(Kept(TheStaff()), states.last());
    QVERIFY(tuned() == inD);
    QCOMPARE(window->State().documentPath, Path("melody.note"));
    QVERIFY2(reading.count > 0, "the reading label never showed");
    QVERIFY(!window->State().modes.loading && !window->Control(ControlId::LoadingLabel)->isVisible());

    // The MIDI file plays the notes in time order, each held for the gate's share of its step.
    dialogs->answers << Path("melody.mid");
    Run(MenuCommand::SaveMidi);
    QCOMPARE(Kept(TheStaff()), states.last());
    const QByteArray midi = Slurp(Path("melody.mid"));
    const testing::Decoded decoded = testing::Decode(testing::Bytes(midi.begin(), midi.end()));
    QVERIFY2(decoded.ok, decoded.error.c_str());
    QCOMPARE(decoded.program, kViolin - 1);
    std::vector<Note> byTime(TheStaff().notes.begin() + 1, TheStaff().notes.end());
    std::sort(byTime.begin(), byTime.end(), [](const Note& a, const Note& b) { return a.left < b.left; });
    QCOMPARE(decoded.notes.size(), 2 * byTime.size());
    for (std::size_t i = 0; i < byTime.size(); ++i) {
      const auto& on = decoded.notes[2 * i];
      const auto& off = decoded.notes[2 * i + 1];
      QCOMPARE(on.key, byTime[i].pitch);
      QCOMPARE(off.key, on.key);
      QVERIFY(on.velocity > 0 && off.velocity == 0);
      if (i + 1 < byTime.size())
        QCOMPARE(off.tick - on.tick, static_cast<long long>((decoded.notes[2 * i + 2].tick - on.tick) * 0.95));
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
    DoubleClick({40, 58});
    DoubleClick({120, 72});
    TheStaff().hasChanges = true;
    const QStringList before = Kept(TheStaff());
    const QString folder = Path("scores");
    QVERIFY(QDir().mkdir(folder));
    Spit(folder + "/old.note", "precious");
    Spit(folder + "/old.mid", "old tune");
    dialogs->answers << folder + "/old.note" << folder + "/old.mid" << folder + "/old.note";
    question->answer = CloseQuestion::Answer::Save;

    // Root writes anywhere: the folder is read-only for the user the saves run as.
    QFile::setPermissions(dir->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther |
                                           QFile::ExeOther | QFile::ReadGroup | QFile::ExeGroup);
    const bool asNobody = !fullDisk && ::geteuid() == 0;
    if (fullDisk) SimulateFullDisk(true);
    else QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    if (asNobody) QVERIFY(::seteuid(65534) == 0);
    Run(MenuCommand::SaveScore);
    Run(MenuCommand::SaveMidi);
    const bool closed = window->close();
    if (asNobody) QVERIFY(::seteuid(0) == 0);
    SimulateFullDisk(false);

    QVERIFY2(!closed && window->isVisible(), "closing went on although the save failed");
    QCOMPARE(Kept(TheStaff()), before);
    QVERIFY(TheStaff().hasChanges);
    QCOMPARE(Slurp(folder + "/old.note"), QByteArray("precious"));
    QCOMPARE(Slurp(folder + "/old.mid"), QByteArray("old tune"));
    QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList({"old.mid", "old.note"}));
    QCOMPARE(dialogs->told.size(), 3);
    for (const QString& sentence : dialogs->told)
      QVERIFY2(sentence.contains(reason) && sentence.contains("old.") && sentence.count("。") == 1, qPrintable(sentence));
  }

  void damagedFilesNeverTakeTheWindowDown() {
    const std::string good = "120,105,0,60,60,0,0,0,9,8,C498 152,99,1,62,62,0,1,0,9,2,D4#92 ;曲;作曲家;5;0;7;3;2\n";
    std::vector<std::string> corpus{"", ";;;;;;;;;;;;", std::string(5000, ' '), "\xEF\xBB\xBF" + good,
                                    "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20 ;x;y;a;b;c;d;e",
                                    "no score here", "\xC3\x28;\xFF;"};
    for (std::size_t cut = 1; cut < good.size(); cut += 3) corpus.push_back(good.substr(0, cut));
    for (const char* huge : {"99999999999999999999", "-2147483649", "2147483647", "-0", "1e9"}) {
      std::string damaged = good;
      for (std::size_t at = 0; (at = damaged.find("60", at)) != std::string::npos; at += std::strlen(huge))
        damaged.replace(at, 2, huge);
      corpus.push_back(damaged + damaged);
    }
    std::mt19937 random(11);
    for (int n = 0; n < 120; ++n) {
      std::string damaged = good;
      for (int k = 0; k < 1 + n % 4; ++k) damaged[random() % damaged.size()] = static_cast<char>(random() % (n % 2 ? 256 : 64) + (n % 2 ? 0 : 32));
      if (n % 7 == 0) damaged.insert(random() % damaged.size(), 1, '\0');
      corpus.push_back(damaged);
    }
    DoubleClick({40, 58});
    for (std::size_t n = 0; n < corpus.size(); ++n) {
      Spit(Path("damaged.note"), QByteArray::fromStdString(corpus[n]));
      const QStringList before = Kept(TheStaff());
      const qsizetype told = dialogs->told.size();
      dialogs->answers << Path("damaged.note");
      Run(MenuCommand::OpenScore);
      const QString what = QStringLiteral("file %1").arg(n);
      QVERIFY2(!window->State().modes.loading, qPrintable(what));
      if (dialogs->told.size() > told)
        QVERIFY2(Kept(TheStaff()) == before, qPrintable(what));
      else
        QVERIFY2(TheStaff().NoteCount() == static_cast<int>(ParseScoreFile(corpus[n]).notes.size()), qPrintable(what));
      window->Staff().grab();
      Run(MenuCommand::Undo);
      Run(MenuCommand::SaveMidi);
    }
    for (const QString& missing : {Path("gone.note"), dir->path()}) {
      dialogs->answers << missing;
      Run(MenuCommand::OpenScore);
      QVERIFY(dialogs->told.last().contains(QFileInfo(missing).fileName()));
    }
  }

  void scoresFromOutsideAskBeforeReplacingChanges_data() {
    QTest::addColumn<bool>("byDrop");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("unsaved");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("opens");
    const int cancel = int(CloseQuestion::Answer::Cancel), dontSave = int(CloseQuestion::Answer::DontSave),
              save = int(CloseQuestion::Answer::Save);
    QTest::newRow("drop, nothing unsaved") << true << "tune.note" << false << cancel << true;
    QTest::newRow("drop, upper-case suffix") << true << "TUNE.NOTE" << false << cancel << true;
    QTest::newRow("drop of another kind of file") << true << "tune.txt" << false << cancel << false;
    QTest::newRow("drop over changes, cancelled") << true << "tune.note" << true << cancel << false;
    QTest::newRow("document over changes, not saved") << false << "tune.note" << true << dontSave << true;
    QTest::newRow("document over changes, save dialog cancelled") << false << "tune.note" << true << save << false;
  }
  void scoresFromOutsideAskBeforeReplacingChanges() {
    QFETCH(bool, byDrop);
    QFETCH(QString, name);
    QFETCH(bool, unsaved);
    QFETCH(int, answer);
    QFETCH(bool, opens);
    Spit(Path(name), "120,105,0,60,60,0,0,0,9,8,C498 ;曲;;5;0;7;0;0\n");
    DoubleClick({40, 58});
    DoubleClick({120, 72});
    TheStaff().hasChanges = unsaved;
    question->answer = CloseQuestion::Answer(answer);
    const QStringList before = Kept(TheStaff());
    if (byDrop)
      QCOMPARE(Drop(Path(name)), name.endsWith(".note", Qt::CaseInsensitive));
    else
      window->OpenDocument(Path(name));
    QCOMPARE(question->asked, unsaved ? 1 : 0);
    QCOMPARE(TheStaff().NoteCount(), opens ? 1 : 2);
    QCOMPARE(window->State().documentPath, opens ? Path(name) : QString());
    QVERIFY(opens ? TheStaff().hasChanges : Kept(TheStaff()) == before);

    // Nothing comes in while a score plays.
    window->State().modes.playing = true;
    TheStaff().hasChanges = false;
    QVERIFY(!Drop(Path("tune.note")));
    window->OpenDocument(Path("tune.note"));
    QCOMPARE(window->State().documentPath, opens ? Path(name) : QString());
    window->State().modes.playing = false;
  }
};

QTEST_MAIN(FilesTest)
#include "files_test.moc"
