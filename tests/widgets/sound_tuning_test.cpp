// The instrument menus, the two sliders and the tuning fields driven through the real
// window: a menu item must reach all seven players and name itself on its button, a
// slider must set what playback reads and what the labels show, and the tuning fields
// must follow the staff's key however it changed.
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSlider>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

#include "editor/key_time.h"
#include "files/score_file.h"
#include "violin/fakes.h"
#include "violin/instrument_table.h"
#include "violin/tempo_table.h"
#include "window/control_factory.h"
#include "window/main_window.h"
#include "window/picture_canvas.h"

using namespace lirenza;
using layout::ControlId;
using window::ScoreChange;

class SoundTuningTest : public QObject {
  Q_OBJECT

  testing::FakeSound sound;
  std::unique_ptr<MainWindow> window;

  template <typename Widget>
  Widget* Get(ControlId id, int index = 0) {
    return static_cast<Widget*>(window->Control(id, index));
  }
  QString Text(ControlId id) { return Get<QLabel>(id)->text(); }
  QSlider* Slider(ControlId id) { return Get<QSlider>(id); }

  // Opens the menu button as a press does and clicks the item whose identifier is item.
  void ChooseFromMenu(ControlId button, int item) {
    bool clicked = false;
    QTimer::singleShot(0, this, [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (!menu) return;
      for (QAction* action : menu->actions())
        if (!action->isSeparator() && action->data().toInt() == item) {
          QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
          clicked = true;
          return;
        }
      menu->close();
    });
    QTest::mousePress(Get<QToolButton>(button), Qt::LeftButton);
    QTRY_VERIFY2(clicked, "no such item");
  }
  // Every player was given exactly this instrument since the log was cleared, in order.
  void ExpectEveryPlayerOn(int instrument) {
    testing::Log expected;
    for (int k = 0; k < kNotePlayers; ++k) expected.push_back("player" + std::to_string(k) + " inst " + std::to_string(instrument));
    QCOMPARE(sound.log, expected);
  }
  // The text is drawn whole in the widget's font, within its place.
  static bool Fits(QWidget* w, const QString& text, int room = 0) {
    return QFontMetrics(w->font()).horizontalAdvance(text) <= w->width() - room;
  }
  // The tuning tables the staff's key gives on their own, to compare the fields with.
  static TuningTables TunedTo(int key) {
    TuningTables t;
    TuneToKey(t, key);
    return t;
  }
  void ExpectTuningShown(int key) {
    const TuningTables expected = TunedTo(key);
    for (int j = 0; j < 12; ++j) {
      QCOMPARE(Get<QLineEdit>(ControlId::RatioField, j)->text(), QString::fromStdString(expected.ratioTexts[j]));
      QCOMPARE(Get<QLineEdit>(ControlId::FrequencyField, j)->text(), QString::fromStdString(expected.frequencyTexts[j]));
    }
    QCOMPARE(Text(ControlId::KeyNameLabel), QString::fromStdString(expected.keyName));
    // What every note sounds with; every key rewrites these indexes.
    for (int i = 11; i <= 119; ++i) QCOMPARE(window->State().tuning.pitches[i], expected.pitches[i]);
    // A4 is held at 440 Hz by the choice of the tonics, whatever the key.
    QCOMPARE(Get<QLineEdit>(ControlId::FrequencyField, 9)->text(), QStringLiteral("440"));
  }

 private slots:
  void init() {
    sound.log.clear();
    window::WindowServices services;
    services.ports = sound.ports;
    services.clock = std::make_shared<testing::FakeClock>();
    window = std::make_unique<MainWindow>(services);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
  }

  void startsOnTheViolinWithTheGroupsInMenuOrder() {
    ExpectEveryPlayerOn(kViolin);  // once each: the start's group choice does not sound first
    const InstrumentGroup& strings = *InstrumentGroupAt(window->State().instrumentGroupMenu);
    QCOMPARE(Get<QToolButton>(ControlId::InstrumentGroupMenu)->text(), ToQString(strings.name));
    QCOMPARE(Get<QToolButton>(ControlId::InstrumentMenu)->text(), ToQString(strings.names[0]));
    QCOMPARE(Get<QToolButton>(ControlId::InstrumentMenu)->menu()->actions().size(), qsizetype(strings.names.size()));
    const QList<QAction*> groups = Get<QToolButton>(ControlId::InstrumentGroupMenu)->menu()->actions();
    QCOMPARE(groups.size(), kInstrumentGroupMenuItems);
    for (int i = 0; i < groups.size(); ++i) {
      QCOMPARE(groups[i]->isSeparator(), i == kInstrumentSeparator);
      if (i != kInstrumentSeparator) QCOMPARE(groups[i]->data().toInt(), i);
    }
  }

  void menusSetOneInstrumentOnEveryPlayer_data() {
    QTest::addColumn<int>("group");
    QTest::addColumn<int>("row");  // -1: only the group is chosen
    QTest::newRow("a group sounds its first row") << 0 << -1;
    QTest::newRow("GS variation of a piano") << 0 << 15;
    QTest::newRow("last of the longest group") << 15 << 40;
    QTest::newRow("drum kit after the separator") << 17 << 6;
    QTest::newRow("back to the violin") << 5 << 0;
  }
  void menusSetOneInstrumentOnEveryPlayer() {
    QFETCH(int, group);
    QFETCH(int, row);
    sound.log.clear();
    ChooseFromMenu(ControlId::InstrumentGroupMenu, group);
    const int shownRow = std::max(row, 0);
    if (row >= 0) {
      sound.log.clear();
      ChooseFromMenu(ControlId::InstrumentMenu, row);
    }
    InstrumentEntry chosen{};
    for (const InstrumentEntry& e : AllInstruments())
      if (e.group == group && e.row == shownRow) chosen = e;
    ExpectEveryPlayerOn(chosen.number);
    if (group == 17) QVERIFY(chosen.number > 16384);  // bank 128 holds the kits

    auto* groupButton = Get<QToolButton>(ControlId::InstrumentGroupMenu);
    auto* instrumentButton = Get<QToolButton>(ControlId::InstrumentMenu);
    QCOMPARE(groupButton->text(), ToQString(chosen.groupName));
    QCOMPARE(instrumentButton->text(), ToQString(chosen.name));
    QVERIFY2(Fits(groupButton, groupButton->text(), 16) && Fits(instrumentButton, instrumentButton->text(), 16),
             "a caption is cut off");
    const window::WindowState& state = window->State();
    QCOMPARE(std::tuple(state.instrumentGroupMenu, state.instrumentMenuRow, state.instrument),
             std::tuple(group, shownRow, chosen.number));
  }

  void tempoSliderSetsThePaceAndItsLabels_data() {
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("value");
    QTest::newRow("slowest") << int(QAbstractSlider::SliderToMinimum) << 0;
    QTest::newRow("one step up") << int(QAbstractSlider::SliderSingleStepAdd) << 8;
    QTest::newRow("one page down") << int(QAbstractSlider::SliderPageStepSub) << 6;
    QTest::newRow("fastest") << int(QAbstractSlider::SliderToMaximum) << kTempoSliderMax;
  }
  void tempoSliderSetsThePaceAndItsLabels() {
    QFETCH(int, action);
    QFETCH(int, value);
    Slider(ControlId::TempoSlider)->triggerAction(QAbstractSlider::SliderAction(action));
    const TempoRow expected = TempoForSlider(value);
    QCOMPARE(window->State().tempoFactor, expected.tempoFactor);
    QCOMPARE(window->State().tempoSlider, value);  // what a save writes
    const QString number = QString::number(expected.number);
    QCOMPARE(Text(ControlId::TempoSliderNumber), number);
    QCOMPARE(Text(ControlId::TempoNumber), number);
    QCOMPARE(Text(ControlId::TempoWord), QString::fromStdString(expected.term));
    for (ControlId id : {ControlId::TempoSliderNumber, ControlId::TempoNumber, ControlId::TempoWord})
      QVERIFY2(Fits(Get<QLabel>(id), Text(id)), qPrintable(Text(id) + " is cut off"));
  }

  void speakerShowsTheVolumeLevel_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("picture");
    QTest::newRow("silent") << 0 << "Speaker0";
    QTest::newRow("level 3") << 3 << "Speaker1";
    QTest::newRow("level 5 of step 7") << 7 << "Speaker2";
    QTest::newRow("level 6") << 8 << "Speaker3";
    QTest::newRow("loudest") << 9 << "Speaker3";
  }
  void speakerShowsTheVolumeLevel() {
    QFETCH(int, value);
    QFETCH(QString, picture);
    QVERIFY(window->Pictures().Picture("Speaker0") != window->Pictures().Picture("Speaker3"));
    Slider(ControlId::VolumeSlider)->setValue(value);
    QCOMPARE(Get<PictureCanvas>(ControlId::Speaker)->ShownPicture(), window->Pictures().Picture(picture));
  }

  void tuningFollowsEachKeyChoice_data() {
    QTest::addColumn<int>("key");
    for (int key : {1, 3, 5, 7, 10, 14, 0}) QTest::newRow(qPrintable(QString::number(key))) << key;
  }
  void tuningFollowsEachKeyChoice() {
    QFETCH(int, key);
    ExpectTuningShown(0);
    window::WindowState& state = window->State();
    QVERIFY(ChooseKey(state.staff, state.tuning, state.modes, 2));  // another key first
    window->NotifyScoreChanged(ScoreChange::Edited);
    QVERIFY(ChooseKey(state.staff, state.tuning, state.modes, key));
    window->NotifyScoreChanged(ScoreChange::Edited);
    ExpectTuningShown(key);
  }

  // The score's tempo and key come with it; the instrument stays what it was. A save
  // leaves a new score, at the start tempo and in C.
  void openedScoreMovesTheSliderAndTheTuning() {
    ChooseFromMenu(ControlId::InstrumentGroupMenu, 7);
    sound.log.clear();
    ScoreFile score;
    score.tempoSlider = 12;
    score.keySignature = 11;
    score.instrumentGroup = 0;
    score.instrumentRow = 3;
    window::WindowState& state = window->State();
    state.tempoSlider = LoadScoreText(state.staff, ScoreFileText(score));
    window->NotifyScoreChanged(ScoreChange::Replaced);
    QCOMPARE(Slider(ControlId::TempoSlider)->value(), 12);
    QCOMPARE(Text(ControlId::TempoWord), QString::fromStdString(TempoForSlider(12).term));
    QCOMPARE(state.tempoFactor, TempoForSlider(12).tempoFactor);
    ExpectTuningShown(11);
    QVERIFY(sound.log.empty());

    WindowSettings settings;
    settings.tempoSlider = state.tempoSlider;
    ResetAfterSave(state.staff, settings);
    state.tempoSlider = settings.tempoSlider;
    window->NotifyScoreChanged(ScoreChange::Saved);
    QCOMPARE(Slider(ControlId::TempoSlider)->value(), kTempoSliderStart);
    QCOMPARE(state.tempoFactor, TempoForSlider(kTempoSliderStart).tempoFactor);
    ExpectTuningShown(0);
  }

  // White on grey and white on black, drawn whole: a read-only field must not grey its
  // text or lose its background, and no figure may be cut off.
  void tuningFieldsAreReadable() {
    window::WindowState& state = window->State();
    QVERIFY(ChooseKey(state.staff, state.tuning, state.modes, 10));  // the widest ratio texts
    window->NotifyScoreChanged(ScoreChange::Edited);
    window->grab().save("/tmp/sound_tuning_window.png");
    for (ControlId id : {ControlId::RatioField, ControlId::FrequencyField}) {
      const layout::Control& row = layout::ControlAt(id);
      for (int j = 0; j < 12; ++j) {
        auto* field = Get<QLineEdit>(id, j);
        QVERIFY2(Fits(field, field->text(), 4), qPrintable(field->text()));
        const QImage shot = field->grab().toImage();
        int background = 0, ink = 0;
        for (int y = 0; y < shot.height(); ++y)
          for (int x = 0; x < shot.width(); ++x) {
            const QRgb p = shot.pixel(x, y);
            background += (p & 0xffffff) == *row.backColour;
            ink += qGray(p) > qGray(*row.backColour) + 0x60;
          }
        QVERIFY2(background > shot.width() * shot.height() / 2, qPrintable(field->objectName()));
        QVERIFY2(ink > 3, qPrintable(field->objectName()));
      }
    }
  }
};

QTEST_MAIN(SoundTuningTest)
#include "sound_tuning_test.moc"
