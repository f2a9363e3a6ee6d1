// The window's bodies and what the user chooses about them: the preferences window's
// two choices, taken at once and kept in the settings file; the window's outline where
// no compositor shows the desktop through it; and the velocity digit of each note,
// which must never hide the head it belongs to.
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QRegularExpression>
#include <QPushButton>
#include <QTemporaryDir>

#include "files/preferences.h"
#include "picture_list.h"
#include "window/about_box.h"
#include "window/preferences_panel.h"
#include "window/preferences_window.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;

class BodiesTest : public testing::WindowTest {
  Q_OBJECT

  QTemporaryDir config;

  window::PreferencesWindow* Preferences() { return window->findChild<window::PreferencesWindow*>(); }
  QString PlayerName() { return Get<QLabel>(ControlId::PlayerNameLabel)->text(); }

 private slots:
  void initTestCase() {
    QVERIFY(config.isValid());
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
  }
  void init() { MakeWindow(); }

  void thePreferencesWindowShowsTakesAndKeepsBothChoices() {
    auto* settings = new window::PreferencesPanel(*window, window::PreferencesPanel::DefaultPath());
    window->SetBackPicture(3);
    const QString name = PlayerName();
    QVERIFY(window->RunMenuCommand(window::MenuCommand::Preferences));
    QDialog* dialog = Preferences()->Dialog();
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->windowTitle(), "環境設定");
    QCOMPARE(dialog->windowModality(), Qt::WindowModal);
    QComboBox* keyboard = Preferences()->KeyboardChoice();
    QComboBox* back = Preferences()->BackChoice();
    QCOMPARE(keyboard->currentText(), "JISキーボード");
    QCOMPARE(back->count(), MainWindow::kBackPictureCount);
    QCOMPARE(back->currentText(), "ヴィオッティ");
    QCOMPARE(back->itemData(3, Qt::ToolTipRole).toString(), ToQString(pictures::kPortraitNames[3]));

    keyboard->setCurrentIndex(1);
    back->setCurrentIndex(7);
    QCOMPARE(window->KeyboardLayout(), 1);
    QCOMPARE(window->BackPicture(), 7);
    QCOMPARE(PlayerName(), name);  // chosen here, the back changes alone
    QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
    QVERIFY(!dialog->isVisible());

    QVERIFY(settings->Save());
    const lirenza::Preferences saved = ReadPreferences(testing::FileBytes(window::PreferencesPanel::DefaultPath()));
    QCOMPARE(saved.keyboardLayout, 1);
    QCOMPARE(saved.backPicture, 7);

    // Opened again, it shows what the window holds now, and a back outside the twelve
    // (from a settings file of another version) as no row rather than a wrong one.
    window->SetBackPicture(MainWindow::kBackPictureCount);
    window->RunMenuCommand(window::MenuCommand::Preferences);
    QCOMPARE(keyboard->currentIndex(), 1);
    QCOMPARE(back->currentIndex(), -1);
    QCOMPARE(window->BackPicture(), MainWindow::kBackPictureCount);  // showing is not choosing
    dialog->close();
  }

  void theAboutBoxGivesTheVersionAndEveryLicence() {
    QVERIFY(window->RunMenuCommand(window::MenuCommand::About));
    QMessageBox* box = window->findChild<window::AboutBox*>()->Box();
    QVERIFY(box && box->isVisible());
    const QString text = box->text();
    QVERIFY2(QRegularExpression(QStringLiteral("Lirenza \\d+\\.\\d+\\.\\d+")).match(text).hasMatch(), qPrintable(text));
    for (const char* licence : {"GPL-3.0-or-later", "MIT", "SIL Open Font License", "IPA フォントライセンス"})
      QVERIFY2(text.contains(QString::fromUtf8(licence)), licence);
    box->close();
  }

  void withoutACompositorTheWindowTakesTheBacksOutline() {
    QVERIFY(window->mask().isEmpty());  // the offscreen desktop composites
    const QImage back = window->Pictures().Picture(QStringLiteral("ViolinBack0")).convertToFormat(QImage::Format_ARGB32);
    QPoint clear(-1, -1), solid(-1, -1), soft(-1, -1);
    for (int y = 0; y < back.height(); ++y)
      for (int x = 0; x < back.width(); ++x) {
        const int alpha = qAlpha(back.pixel(x, y));
        if (alpha == 0 && clear.x() < 0) clear = {x, y};
        if (alpha == 255 && solid.x() < 0) solid = {x, y};
        if (alpha > 0 && alpha < 160 && soft.x() < 0) soft = {x, y};
      }
    QVERIFY2(clear.x() >= 0 && solid.x() >= 0 && soft.x() >= 0, "the back has no clear corner or soft edge");

    window->SetDesktopComposites(false);
    const QRegion outline = window->mask();
    QVERIFY(!outline.contains(clear));
    QVERIFY(outline.contains(solid));
    QVERIFY(outline.contains(soft));
    // The soft edge lies over the body colour, not over black.
    window->SetBodyColour(QColor(0xb3, 0xb3, 0xb3));
    const QImage shown = window->grab().toImage().convertToFormat(QImage::Format_ARGB32);
    const QRgb edge = shown.pixel(soft);
    QCOMPARE(qAlpha(edge), 255);
    QVERIFY2(qGray(edge) > qGray(back.pixel(soft)) * qAlpha(back.pixel(soft)) / 255 + 20,
             "the soft edge is drawn over black");

    window->SetDesktopComposites(true);
    QVERIFY(window->mask().isEmpty());
  }

  // Stems up and down, flagged and not, across the violin's range: in each note's
  // picture the head fills columns 4 to 12 of rows 15 to 22.
  void theVelocityDigitNeverCoversItsNotesHead() {
    LoadKestraLine(TheStaff(), "G398 B398 D498 F498 A498 C598 E598 G598 B598 D698 "
                               "G394 D494 A494 E594 B594 F694 G39B E59B D692 A490 E690");
    window->ShowStaffScroll();
    const QImage staff = View().grab().toImage().convertToFormat(QImage::Format_RGB32);
    const auto isDigitInk = [&](int x, int y) {
      const QRgb c = staff.pixel(x, y);
      return qBlue(c) > 150 && qBlue(c) > qRed(c) + 80 && qBlue(c) > qGreen(c) + 80;
    };
    int notesSeen = 0;
    for (int i = 1; i <= TheStaff().NoteCount(); ++i) {
      const QRect rect = window::StaffView::NoteRect(TheStaff().notes[i]);
      if (!staff.rect().contains(rect)) continue;
      ++notesSeen;
      int digitInk = 0;
      for (int y = rect.top(); y < rect.top() + 36 && y < staff.height(); ++y)
        for (int x = rect.left(); x < rect.left() + 16; ++x) {
          if (!isDigitInk(x, y)) continue;
          ++digitInk;
          const QPoint inNote(x - rect.left(), y - rect.top());
          QVERIFY2(!QRect(4, 15, 9, 8).contains(inNote),
                   qPrintable(QStringLiteral("note %1 (%2): digit ink on its head at %3,%4")
                                  .arg(i).arg(QString::fromStdString(TheStaff().notes[i].token))
                                  .arg(inNote.x()).arg(inNote.y())));
        }
      QVERIFY2(digitInk > 5, qPrintable(QStringLiteral("note %1 shows no velocity digit").arg(i)));
    }
    QVERIFY(notesSeen >= 15);
  }
};

QTEST_MAIN(BodiesTest)
#include "bodies_test.moc"
