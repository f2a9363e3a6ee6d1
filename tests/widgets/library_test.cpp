// The score library on a real window, in a home of its own: the folder it lists, the
// files its gestures move, and the installed scores a start copies in.
#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTreeWidget>

#include "files/score_file.h"
#include "window/library_panel.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;

class LibraryTest : public testing::WindowTest {
  Q_OBJECT

  QTemporaryDir home;
  QString library, installed, desktop;

  QTreeWidget* List() { return Get<QTreeWidget>(ControlId::ScoreList); }
  window::LibraryPanel& Panel() { return *window->findChild<window::LibraryPanel*>(); }
  QStringList Titles() {
    QStringList titles;
    for (int row = 0; row < List()->topLevelItemCount(); ++row) titles << List()->topLevelItem(row)->text(1);
    return titles;
  }
  QString InGenre(int genre, const QString& name) { return QStringLiteral("%1/Score0%2/%3").arg(library).arg(genre).arg(name); }
  static void WriteScore(const QString& path, const std::string& title) {
    ScoreFile file;
    file.title = title;
    testing::WriteBytes(path, ScoreFileText(file));
  }
  void SelectRow(const QString& title) {
    const QList<QTreeWidgetItem*> found = List()->findItems(title, Qt::MatchExactly, 1);
    QVERIFY(!found.isEmpty());
    List()->setCurrentItem(found.first());
  }
  void DoubleClickSelected() {
    const QRect row = List()->visualItemRect(List()->currentItem());
    // The toolkit's double click follows a press and release on the same row.
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, {}, row.center());
    QTest::mouseDClick(List()->viewport(), Qt::LeftButton, {}, row.center());
  }
  void Drop(const QString& path) {
    auto* data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(path)});
    // As a drag from another program arrives: it enters, then drops.
    QDragEnterEvent enter(QPoint(20, 20), Qt::MoveAction | Qt::CopyAction, data, Qt::LeftButton, {});
    QApplication::sendEvent(List()->viewport(), &enter);
    QDropEvent drop(QPointF(20, 20), Qt::MoveAction | Qt::CopyAction, data, Qt::LeftButton, {});
    QApplication::sendEvent(List()->viewport(), &drop);
    delete data;
  }
  QStringList TrashedNames() { return QDir(home.filePath("data/Trash/files")).entryList(QDir::Files); }

 private slots:
  void initTestCase() {
    QVERIFY(home.isValid());
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath("data")));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath("config")));
    installed = home.filePath("installed");
    qputenv("LIRENZA_SCORES", QFile::encodeName(installed));
    library = window::LibraryPanel::LibraryFolder();
    desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    QVERIFY(library.startsWith(home.path()) && desktop.startsWith(home.path()));
  }

  // A fresh library for each test; the installed scores hold one score in genre 0.
  void init() {
    for (const QString& folder : {home.filePath("data"), desktop, installed}) QDir(folder).removeRecursively();
    QDir(installed).mkpath("Score00");
    WriteScore(installed + "/Score00/Shipped.note", "Shipped");
    MakeWindow();
  }

  void startFillsTheLibraryOnceAndNeverRestoresARemovedScore() {
    QCOMPARE(Titles(), QStringList{"Shipped"});
    for (int genre = 0; genre < 10; ++genre) QVERIFY(QFileInfo(InGenre(genre, "")).isDir());

    // A score the user removed stays removed; one of the user's own, named like a newly
    // shipped one, is kept as the user wrote it; a newly shipped one comes in.
    QVERIFY(QFile::remove(InGenre(0, "Shipped.note")));
    QDir(installed).mkpath("Score07");
    WriteScore(installed + "/Score07/Mine.note", "shipped");
    WriteScore(installed + "/Score07/New.note", "New");
    testing::WriteBytes(InGenre(7, "Mine.note"), "the user's");
    QCOMPARE(window::LibraryPanel::FillLibrary(installed, library), 1);
    QCOMPARE(window::LibraryPanel::FillLibrary(installed, library), 0);
    QVERIFY(!QFileInfo::exists(InGenre(0, "Shipped.note")));
    QCOMPARE(testing::FileBytes(InGenre(7, "Mine.note")), std::string("the user's"));
    QVERIFY(QFileInfo::exists(InGenre(7, "New.note")));
  }

  void listShowsTheGenreSortedAndFollowsChangesFromOutside() {
    for (const char* name : {"曲10.note", "曲2.note", "Allegro.note", "a.note.note", "notes.txt", "keynote"})
      testing::WriteBytes(InGenre(3, QString::fromUtf8(name)), "");
    Click(ControlId::GenreButton, 3);
    QVERIFY(Checked(ControlId::GenreButton, 3) && !Checked(ControlId::GenreButton, 0));
    QCOMPARE(Titles(), (QStringList{"a.note", "Allegro", "曲2", "曲10"}));
    QCOMPARE(List()->topLevelItem(3)->text(0), QString(" 4"));
    QCOMPARE(List()->currentItem(), List()->topLevelItem(0));

    // Another program adds, renames and removes; the list follows within a second and
    // keeps the selected score selected.
    SelectRow("曲2");
    testing::WriteBytes(InGenre(3, "Bolero.note"), "");
    QTRY_COMPARE_WITH_TIMEOUT(Titles(), (QStringList{"a.note", "Allegro", "Bolero", "曲2", "曲10"}), 1000);
    QCOMPARE(List()->currentItem()->text(1), QString("曲2"));
    QVERIFY(QFile::rename(InGenre(3, "Allegro.note"), InGenre(3, "Zapateado.note")));
    QVERIFY(QFile::remove(InGenre(3, "a.note.note")));
    QTRY_COMPARE_WITH_TIMEOUT(Titles(), (QStringList{"Bolero", "Zapateado", "曲2", "曲10"}), 1000);

    Click(ControlId::GenreButton, 4);
    QVERIFY(Titles().isEmpty() && Panel().SelectedPath().isEmpty());

    // A title longer than the list is wide is drawn small enough to be read whole.
    const QString longTitle = QString::fromUtf8("アイネ・クライネ・ナハトムジーク");
    testing::WriteBytes(InGenre(4, longTitle + ".note"), "");
    QTRY_COMPARE_WITH_TIMEOUT(Titles(), QStringList{longTitle}, 1000);
    const QTreeWidgetItem* row = List()->topLevelItem(0);
    QVERIFY(QFontMetrics(List()->font()).horizontalAdvance(longTitle) > List()->columnWidth(1));
    QVERIFY(QFontMetrics(row->font(1)).horizontalAdvance(longTitle) < List()->columnWidth(1));
    QCOMPARE(row->toolTip(1), longTitle);
  }

  void doubleClickOpensTrashesOrWaits() {
    WriteScore(InGenre(0, "Waltz.note"), "Waltz");
    QTRY_COMPARE_WITH_TIMEOUT(Titles(), (QStringList{"Shipped", "Waltz"}), 1000);
    SelectRow("Waltz");

    window->State().modes.playing = true;
    DoubleClickSelected();
    QCOMPARE(TheStaff().title, std::string());
    window->State().modes.playing = false;

    DoubleClickSelected();
    QCOMPARE(TheStaff().title, std::string("Waltz"));
    QVERIFY(TheStaff().hasChanges);

    // With Delete held, even where the staff had the keyboard when it went down, the
    // score goes to the trash, and the staff keeps what it holds.
    SelectRow("Shipped");
    QTest::keyPress(&View(), Qt::Key_Delete);
    DoubleClickSelected();
    QTest::keyRelease(List(), Qt::Key_Delete);
    QCOMPARE(TrashedNames(), QStringList{"Shipped.note"});
    QCOMPARE(Titles(), QStringList{"Waltz"});
    QCOMPARE(TheStaff().title, std::string("Waltz"));
    QVERIFY(dialogs->told.isEmpty());
  }

  // Each move out of or into the library, onto a free name and onto a taken one.
  void movesNeverReplaceAFile() {
    struct Case {
      const char* gesture;
      bool desktopExists, nameTaken;
      QString expectedAt;  // where the score ends, relative to home
    };
    const Case cases[] = {
        {"backspace", true, false, "Desktop/Shipped.note"},
        {"backspace", true, true, "data/Lirenza/ScoreBox/Score00/Shipped.note"},
        {"backspace", false, false, "data/Trash/files/Shipped.note"},
        {"drop", true, false, "data/Lirenza/ScoreBox/Score00/Dropped.note"},
        {"drop", true, true, "Desktop/Dropped.note"},
    };
    for (const Case& c : cases) {
      init();
      const bool drop = QByteArray(c.gesture) == "drop";
      if (c.desktopExists) QDir().mkpath(desktop);
      const QString moved = drop ? desktop + "/Dropped.note" : InGenre(0, "Shipped.note");
      const QString target = drop ? InGenre(0, "Dropped.note") : desktop + "/Shipped.note";
      if (drop) testing::WriteBytes(moved, "dropped");
      if (c.nameTaken) testing::WriteBytes(target, "already there");
      const std::string movedBytes = testing::FileBytes(moved);
      if (drop) {
        Drop(moved);
      } else {
        List()->setFocus();
        QTest::keyClick(List(), Qt::Key_Backspace);
      }
      QVERIFY2(QFileInfo::exists(home.filePath(c.expectedAt)), c.expectedAt.toUtf8());
      QCOMPARE(dialogs->told.size(), c.nameTaken ? 1 : 0);
      if (c.nameTaken) {
        QCOMPARE(testing::FileBytes(target), std::string("already there"));
        QCOMPARE(testing::FileBytes(moved), movedBytes);
        QVERIFY(dialogs->told[0].contains(QFileInfo(target).fileName()) && dialogs->told[0].count("。") == 1);
      } else {
        QCOMPARE(Titles().contains(drop ? "Dropped" : "Shipped"), c.expectedAt.contains("ScoreBox"));
      }
    }
  }

  void dropsThatAreNoScoresStayWhereTheyAre() {
    QDir().mkpath(desktop);
    for (const char* name : {"keynote", "tune.txt"}) {
      testing::WriteBytes(desktop + '/' + name, "x");
      Drop(desktop + '/' + name);
      QVERIFY(QFileInfo::exists(desktop + '/' + name));
    }
    QCOMPARE(Titles(), QStringList{"Shipped"});
  }

  void listPlayLoadsTheSelectedRow() {
    WriteScore(InGenre(0, "Tango.note"), "Tango");
    QTRY_COMPARE_WITH_TIMEOUT(Titles().size(), 2, 1000);
    SelectRow("Tango");
    Click(ControlId::TransportButton, 2);
    QCOMPARE(TheStaff().title, std::string("Tango"));
    Click(ControlId::TransportButton, 1);
  }
};

QTEST_MAIN(LibraryTest)
#include "library_test.moc"
