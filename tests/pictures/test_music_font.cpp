// Where the program finds its music font at run time, and what a caller gets when the
// font is missing or is not the right one.
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtConcurrent>

#include "music_font.h"

using namespace lirenza::pictures;

namespace {

void PutFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(bytes);
}

// Sets LIRENZA_FONTS_DIR for one test and puts back what was there.
class FontsFolderOverride {
 public:
  explicit FontsFolderOverride(const QString& folder) : before_(qgetenv("LIRENZA_FONTS_DIR")) {
    qputenv("LIRENZA_FONTS_DIR", folder.toLocal8Bit());
  }
  ~FontsFolderOverride() {
    if (before_.isEmpty()) qunsetenv("LIRENZA_FONTS_DIR");
    else qputenv("LIRENZA_FONTS_DIR", before_);
  }

 private:
  QByteArray before_;
};

}  // namespace

class MusicFontTest : public QObject {
  Q_OBJECT

 private slots:
  void firstFolderHoldingTheFontWins_data() {
    // Folders a, b, c; which hold a file of the font's name, which a folder of that name;
    // the folder expected (empty: none).
    QTest::addColumn<QString>("filesIn");
    QTest::addColumn<QString>("foldersNamedLikeTheFont");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none holds it") << "" << "" << "";
    QTest::newRow("only the last") << "c" << "" << "c";
    QTest::newRow("first of two") << "bc" << "" << "b";
    QTest::newRow("all hold it") << "abc" << "" << "a";
    QTest::newRow("a folder of that name is no font") << "c" << "a" << "c";
  }
  void firstFolderHoldingTheFontWins() {
    QFETCH(QString, filesIn);
    QFETCH(QString, foldersNamedLikeTheFont);
    QFETCH(QString, expected);
    QTemporaryDir root;
    QStringList folders;
    const QString fontName = QString::fromLatin1(kMusicFontFile);
    for (QChar letter : QStringLiteral("abc")) {
      const QString folder = root.filePath(letter);
      QVERIFY(QDir().mkpath(folder));
      if (filesIn.contains(letter)) PutFile(QDir(folder).filePath(fontName), "x");
      if (foldersNamedLikeTheFont.contains(letter)) QVERIFY(QDir(folder).mkdir(fontName));
      folders << folder;
    }
    folders.insert(1, root.filePath(QStringLiteral("missing")));
    const QString found = FirstMusicFontIn(folders);
    QCOMPARE(found, expected.isEmpty() ? QString() : QDir(root.filePath(expected)).filePath(fontName));
  }

  void namedFolderAloneIsAsked() {
    QTemporaryDir root;
    FontsFolderOverride only(root.path());
    QCOMPARE(MusicFontFolders(), QStringList{root.path()});
    // The package's copy exists on this machine, yet the named folder alone counts.
    QVERIFY(FindEmmentaler().isEmpty());
  }

  void unusableFontIsAClearFailure_data() {
    QTest::addColumn<QByteArray>("contents");  // null: no file at all
    QTest::addColumn<QString>("reasonMentions");
    QTest::newRow("missing") << QByteArray() << QStringLiteral("emmentaler-20.otf");
    QTest::newRow("empty file") << QByteArray("") << QStringLiteral("is not the Emmentaler");
    QTest::newRow("text, not a font") << QByteArray("not a font at all\n") << QStringLiteral("is not the Emmentaler");
    QTest::newRow("cut short") << QByteArray("OTTO\x00\x0a\x00\x80", 8) << QStringLiteral("is not the Emmentaler");
  }
  void unusableFontIsAClearFailure() {
    QFETCH(QByteArray, contents);
    QFETCH(QString, reasonMentions);
    QTemporaryDir root;
    if (!contents.isNull()) PutFile(root.filePath(QString::fromLatin1(kMusicFontFile)), contents);
    FontsFolderOverride only(root.path());
    QString reason;
    QVERIFY(LoadRunTimeMusicFont(&reason) == nullptr);
    QVERIFY2(reason.contains(reasonMentions), qPrintable(reason));
  }

  void shippedCopyLoadsOnceForEveryThread() {
    // The build tree's copy (the one the program finds first) draws a note head, and
    // every thread that asks gets the one font.
    QVERIFY(qEnvironmentVariableIsEmpty("LIRENZA_FONTS_DIR"));
    QVERIFY(FindEmmentaler().startsWith(QStringLiteral(LIRENZA_TEST_FONTS_DIR)));
    QList<int> askers(8);
    const QList<const MusicFont*> fonts =
        QtConcurrent::blockingMapped(askers, [](int) { return RunTimeMusicFont(); });
    QVERIFY(fonts.first() != nullptr);
    for (const MusicFont* font : fonts) QCOMPARE(font, fonts.first());
    const QRectF head = fonts.first()->Glyph("noteheads.s2", 12.0).boundingRect();
    QCOMPARE(qRound(head.height()), 12);
  }
};

QTEST_MAIN(MusicFontTest)
#include "test_music_font.moc"
