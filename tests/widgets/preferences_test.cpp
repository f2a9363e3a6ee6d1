// The settings on the real window, in a configuration folder of the test's own: the
// first close writes what the window shows, a later start shows it again (the sliders
// acting as when moved), and a damaged file or one from another desktop costs only
// the settings it cannot give.
#include <QFile>
#include <QSlider>
#include <QTemporaryDir>

#include "files/preferences.h"
#include "violin/tempo_table.h"
#include "window/preferences_panel.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;

class PreferencesTest : public testing::WindowTest {
  Q_OBJECT

  QTemporaryDir config;
  QString File() const { return config.path() + QStringLiteral("/Lirenza/Lirenza.json"); }
  QSlider* Slider(ControlId id) { return Get<QSlider>(id); }
  window::PreferencesPanel* Start() { return new window::PreferencesPanel(*window, window::PreferencesPanel::DefaultPath()); }
  void WriteFile(const std::string& text) {
    QVERIFY(QDir().mkpath(config.path() + QStringLiteral("/Lirenza")));
    testing::WriteBytes(File(), text);
  }

 private slots:
  void initTestCase() {
    QVERIFY(config.isValid());
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
  }
  void init() {
    QDir(config.path()).removeRecursively();
    QDir().mkpath(config.path());
    MakeWindow();
  }

  void firstCloseWritesWhatTheWindowShows() {
    const QPoint startPlace = window->pos();
    Start();
    QCOMPARE(window->pos(), startPlace);
    QVERIFY(!QFile::exists(File()));
    window->move(30, 40);
    Slider(ControlId::VolumeSlider)->setValue(2);
    Slider(ControlId::TempoSlider)->setValue(12);
    Click(ControlId::BackPictureButton);
    QVERIFY(window->close());
    Preferences expected;
    expected.windowPlace = WindowPlace{30, 40};
    expected.volumeSlider = 2, expected.tempoSlider = 12, expected.backPicture = 1;
    QCOMPARE(ReadPreferences(testing::FileBytes(File())), expected);
  }

  void aCancelledCloseWritesNothing() {
    Start();
    TheStaff().hasChanges = true;
    closeQuestion->answer = CloseQuestion::Answer::Cancel;
    QVERIFY(!window->close());
    QCOMPARE(closeQuestion->asked, 1);
    QVERIFY(!QFile::exists(File()));
  }

  void aStartShowsTheSavedSettingsAndKeepsTheRest() {
    Preferences saved;
    saved.windowPlace = WindowPlace{25, 35};
    saved.keyboardLayout = 1, saved.volumeSlider = 3, saved.tempoSlider = 12, saved.backPicture = 6;
    saved.printerSetup = std::string("paper\0A4\xff", 9);
    WriteFile(PreferencesText(saved));
    launcher->started.clear();
    Start();
    QCOMPARE(window->pos(), QPoint(25, 35));
    QCOMPARE(Slider(ControlId::VolumeSlider)->value(), 3);
    QCOMPARE(launcher->started.size(), 1);  // the computer's volume follows the slider
    QCOMPARE(launcher->started.front().last(), QString::number(VolumeLevel(3)));
    QCOMPARE(window->State().tempoFactor, TempoForSlider(12).tempoFactor);
    QCOMPARE(window->BackPicture(), 6);
    QCOMPARE(window->KeyboardLayout(), 1);
    QVERIFY(window->PrinterSetup() == saved.printerSetup);
    QVERIFY(window->close());
    QCOMPARE(ReadPreferences(testing::FileBytes(File())), saved);
  }

  void damagedFilesGiveWhatTheyCan_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("placeTaken");
    QTest::addColumn<int>("volume");
    QTest::addColumn<int>("tempo");
    QTest::addColumn<int>("back");
    QTest::newRow("not JSON") << "Sl0Value=3" << false << kVolumeSliderStart << kTempoSliderStart << 0;
    QTest::newRow("cut short") << "{\"MWLeft\":20,\"MWTop\":30,\"Sl0Value\":3,\"Sl1Val" << true << 3 << kTempoSliderStart << 0;
    QTest::newRow("partial") << "{\"backFlag\":4}" << false << kVolumeSliderStart << kTempoSliderStart << 4;
    QTest::newRow("out of range") << "{\"Sl0Value\":12,\"Sl1Value\":-3,\"backFlag\":15}" << false
                                  << kVolumeSliderStart << kTempoSliderStart << 0;
    QTest::newRow("place on no screen") << "{\"MWLeft\":-5000,\"MWTop\":-5000,\"Sl1Value\":2}" << false
                                        << kVolumeSliderStart << 2 << 0;
  }
  void damagedFilesGiveWhatTheyCan() {
    QFETCH(QString, text);
    QFETCH(bool, placeTaken);
    QFETCH(int, volume);
    QFETCH(int, tempo);
    QFETCH(int, back);
    WriteFile(text.toStdString());
    const QPoint startPlace = window->pos();
    Start();
    QCOMPARE(window->pos(), placeTaken ? QPoint(20, 30) : startPlace);
    QCOMPARE(Slider(ControlId::VolumeSlider)->value(), volume);
    QCOMPARE(Slider(ControlId::TempoSlider)->value(), tempo);
    QCOMPARE(window->BackPicture(), back);
  }
};

QTEST_MAIN(PreferencesTest)
#include "preferences_test.moc"
