// The help menu's pages: they open from the menu, every link between them leads to a
// page, every picture is there at the proportions the page gives it and was taken from
// the window as built now, and a missing folder is told, not shown empty.
#include <QDateTime>
#include <QDirIterator>
#include <QImageReader>
#include <QRegularExpression>
#include <QTextBrowser>

#include "window/help_window.h"
#include "window_fixture.h"

using namespace lirenza;

class HelpTest : public testing::WindowTest {
  Q_OBJECT

  window::HelpWindow* Help() { return window->findChild<window::HelpWindow*>(); }
  static QStringList Pages(const QString& folder) { return QDir(folder).entryList({QStringLiteral("*.html")}); }
  static QString Text(const QString& path) { return QString::fromStdString(testing::FileBytes(path)); }

 private slots:
  void init() { MakeWindow(); }

  void theMenuOpensTheContents() {
    QVERIFY(window->RunMenuCommand(window::MenuCommand::Help));
    QWidget* help = Help()->Window();
    QVERIFY(help && help->isVisible());
    QCOMPARE(Help()->Browser()->documentTitle(), "Lirenzaヘルプ");
    QVERIFY(Help()->Browser()->toPlainText().contains("純正律と調律表"));
    // Following a link and coming back, as a reader does.
    Help()->Browser()->setSource(QUrl(QStringLiteral("tuning.html")));
    QCOMPARE(Help()->Browser()->documentTitle(), "純正律と調律表");
    Help()->Browser()->backward();
    QCOMPARE(Help()->Browser()->documentTitle(), "Lirenzaヘルプ");
    help->close();
  }

  void everyLinkAndPictureOfEveryPageIsThere() {
    const QString folder = window::HelpWindow::DefaultFolder();
    const QStringList pages = Pages(folder);
    QVERIFY2(pages.size() >= 6, qPrintable(folder));
    const QRegularExpression link(QStringLiteral("href=\"([^\"#:]+)\"")), picture(QStringLiteral(
                                      "<img src=\"([^\"]+)\" width=\"(\\d+)\" height=\"(\\d+)\">"));
    // Built together with the window: a picture older than the window's code shows
    // a window that no longer is.
    const QDateTime windowBuilt = QFileInfo(QStringLiteral(LIRENZA_WINDOW_LIBRARY)).lastModified();
    int pictures = 0;
    for (const QString& page : pages) {
      const QString text = Text(QDir(folder).filePath(page));
      for (auto m = link.globalMatch(text); m.hasNext();) {
        const QString target = m.next().captured(1);
        QVERIFY2(QFileInfo::exists(QDir(folder).filePath(target)), qPrintable(page + " links to " + target));
      }
      for (auto m = picture.globalMatch(text); m.hasNext();) {
        const auto found = m.next();
        const QString path = QDir(folder).filePath(found.captured(1));
        QImageReader reader(path);
        QCOMPARE(reader.format(), QByteArray("png"));
        const QSize size = reader.size();
        const double shown = found.captured(2).toDouble() / found.captured(3).toDouble();
        QVERIFY2(std::abs(double(size.width()) / size.height() - shown) < 0.03 * shown,
                 qPrintable(QStringLiteral("%1 is %2x%3, shown %4x%5").arg(path).arg(size.width()).arg(size.height())
                                .arg(found.captured(2), found.captured(3))));
        QVERIFY2(QFileInfo(path).lastModified() >= windowBuilt, qPrintable(path + " is older than the window"));
        ++pictures;
      }
    }
    QVERIFY(pictures >= 6);
  }

  void aMissingFolderIsToldInOneSentence() {
    Help()->SetFolder(QStringLiteral("/nonexistent/help"));
    window->RunMenuCommand(window::MenuCommand::Help);
    QCOMPARE(dialogs->told.size(), 1);
    QVERIFY(!Help()->Window());
  }
};

QTEST_MAIN(HelpTest)
#include "help_test.moc"
