// Every picture the layout names is built at its size, and the window's store reads
// each once and survives a missing file.
#include <QTemporaryDir>
#include <QtTest/QtTest>
#include <set>

#include "picture_list.h"
#include "pixels.h"
#include "window/picture_store.h"

using namespace lirenza;

class PictureFilesTest : public QObject {
  Q_OBJECT
 private slots:
  void everyPictureIsBuiltAtItsSize_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    for (const auto& spec : pictures::AllPictures())
      QTest::newRow(spec.name.c_str()) << QString::fromStdString(spec.name)
                                       << QSize(spec.size.width, spec.size.height);
  }
  // A missing file or a wrong size breaks a control's look or the grid it sits on.
  void everyPictureIsBuiltAtItsSize() {
    QFETCH(QString, name);
    QFETCH(QSize, size);
    QImage image = test::Built(name);
    QVERIFY2(!image.isNull(), qPrintable(name + ".png is missing"));
    QCOMPARE(image.size(), size);
    // Only the key of C has nothing to show; every other picture has something drawn.
    bool drawn = false;
    for (int y = 0; y < image.height() && !drawn; ++y)
      for (int x = 0; x < image.width() && !drawn; ++x) drawn = test::Alpha(image, x, y) > 0;
    QCOMPARE(drawn, name != "S0");
  }

  void listHasTheFamiliesOfTheLayout() {
    std::set<std::string> names;
    for (const auto& spec : pictures::AllPictures()) QVERIFY(names.insert(spec.name).second);
    for (const char* name : {"n0", "nF", "u7", "rF", "nOn", "Sh", "Fl", "Nt", "Sheet", "Sheet1",
                             "Sheet2", "PSheet", "S7", "F7", "T9", "Te", "Repeat", "PlayButtonB",
                             "PlayAiff1", "ButtonG", "Speaker3", "ListBack", "Display2", "Violin",
                             "GenS", "Yubi", "Bow", "ViolinBack11", "musi2"})
      QVERIFY2(names.count(name), name);
    QCOMPARE(names.size(), size_t{129});
  }

  // The preferences list shows one portrait name per back picture.
  void twelveDistinctPortraitNames() {
    std::set<std::string_view> names(pictures::kPortraitNames.begin(), pictures::kPortraitNames.end());
    QCOMPARE(names.size(), size_t{12});
    QVERIFY(!names.count(""));
  }

  // A picture handed out stays whole while every other picture is loaded after it,
  // and asking again gives the same pixels rather than a second read.
  void storeKeepsAPictureWhileOthersLoad() {
    PictureStore store(QStringLiteral(LIRENZA_TEST_PICTURES_DIR));
    QVERIFY(!store.IsLoaded("n4"));
    QImage first = store.Picture("n4");
    const QImage drawnFirst = first.copy();
    QCOMPARE(first.size(), QSize(15, 35));
    for (const auto& spec : pictures::AllPictures()) store.Picture(QString::fromStdString(spec.name));
    QCOMPARE(first, drawnFirst);
    QImage again = store.Picture("n4");
    QCOMPARE(again.cacheKey(), first.cacheKey());
    QVERIFY(store.Problems().isEmpty());
  }

  // A missing file is named once, and the control gets an empty picture of its size.
  void storeNamesAMissingFileAndGoesOn() {
    QTemporaryDir empty;
    PictureStore store(empty.path());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Sheet1\\.png is missing"));
    QImage sheet = store.Picture("Sheet1");
    QCOMPARE(sheet.size(), QSize(10374, 188));
    QCOMPARE(test::Alpha(sheet.convertToFormat(QImage::Format_ARGB32), 10, 10), 0);
    store.Picture("Sheet1");
    QCOMPARE(store.Problems().size(), 1);
    QVERIFY(store.Problems().first().contains(empty.path() + "/Sheet1.png"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("NoSuchPicture\\.png is missing"));
    QVERIFY(store.Picture("NoSuchPicture").isNull());
    QCOMPARE(store.Problems().size(), 2);
  }

  void storeTellsAnUnreadableFile() {
    QTemporaryDir dir;
    QFile broken(dir.filePath("Yubi.png"));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("not a picture");
    broken.close();
    PictureStore store(dir.path());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Yubi\\.png cannot be read"));
    QCOMPARE(store.Picture("Yubi").size(), QSize(15, 15));
  }

  void defaultFolderFollowsTheEnvironment() {
    qputenv("LIRENZA_PICTURES", "/somewhere/pictures");
    QCOMPARE(PictureStore::DefaultFolder(), QString("/somewhere/pictures"));
    qunsetenv("LIRENZA_PICTURES");
    QVERIFY(QFileInfo::exists(PictureStore::DefaultFolder() + "/Sheet1.png"));
  }
};

QTEST_GUILESS_MAIN(PictureFilesTest)
#include "test_picture_files.moc"
