// Every picture the layout names is built at its size, and the window's store reads
// each once and survives a missing or broken file.
#include <QTemporaryDir>
#include <QtTest/QtTest>

#include "picture_list.h"
#include "pixels.h"
#include "window/picture_store.h"

using namespace lirenza;

class PictureFilesTest : public QObject {
  Q_OBJECT
 private slots:
  // A missing file or a wrong size breaks a control's look or the grid it sits on; only
  // the key of C has nothing to show.
  void everyPictureIsBuiltAtItsSize() {
    for (const auto& spec : pictures::AllPictures()) {
      const QString name = QString::fromStdString(spec.name);
      const QImage image = test::Built(name);
      QVERIFY2(image.size() == QSize(spec.size.width, spec.size.height), qPrintable(name + " is missing or misshapen"));
      QCOMPARE(!test::InkBox(image, image.rect(), 0).isEmpty(), name != "S0");
    }
  }

  // A picture handed out stays whole while every other picture is loaded after it,
  // and asking again gives the same pixels rather than a second read. Pictures read
  // ahead on their thread are the ones a plain read gives.
  void storeKeepsAPictureWhileOthersLoad() {
    PictureStore store(QStringLiteral(LIRENZA_TEST_PICTURES_DIR));
    store.ReadAhead({"Sheet1", "n4"});
    QVERIFY(!store.IsLoaded("n4"));
    QCOMPARE(store.Picture("Sheet1"), QImage(QStringLiteral(LIRENZA_TEST_PICTURES_DIR "/Sheet1.png")));
    const QImage first = store.Picture("n4"), drawnFirst = first.copy();
    QCOMPARE(first.size(), QSize(15, 35));
    for (const auto& spec : pictures::AllPictures()) store.Picture(QString::fromStdString(spec.name));
    QCOMPARE(first, drawnFirst);
    QCOMPARE(store.Picture("n4").cacheKey(), first.cacheKey());
    QVERIFY(store.Problems().isEmpty());
  }

  // A missing or broken file is named once, and the control gets an empty picture of its size.
  void storeNamesABadFileOnceAndGoesOn() {
    QTemporaryDir dir;
    QFile broken(dir.filePath("Yubi.png"));
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("not a picture") > 0);
    broken.close();
    PictureStore store(dir.path());
    store.ReadAhead({"Sheet1", "Yubi"});  // told when asked for, once, as any other
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Sheet1\\.png is missing"));
    const QImage sheet = store.Picture("Sheet1");
    QCOMPARE(sheet.size(), QSize(10374, 188));
    QCOMPARE(test::Alpha(sheet.convertToFormat(QImage::Format_ARGB32), 10, 10), 0);
    store.Picture("Sheet1");
    QCOMPARE(store.Problems().size(), 1);
    QVERIFY(store.Problems().first().contains(dir.path() + "/Sheet1.png"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Yubi\\.png cannot be read"));
    QCOMPARE(store.Picture("Yubi").size(), QSize(15, 15));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("NoSuchPicture\\.png is missing"));
    QVERIFY(store.Picture("NoSuchPicture").isNull());
    QCOMPARE(store.Problems().size(), 3);
  }
};

QTEST_GUILESS_MAIN(PictureFilesTest)
#include "test_picture_files.moc"
