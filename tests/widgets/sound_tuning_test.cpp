// The instrument menus, the two sliders and the tuning fields driven through the real
// window: a menu item must reach all seven players and name itself on its button, a
// slider must set what playback reads and what the labels show, and the tuning fields
// must follow the staff's key however it changed, readable on their backgrounds.
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QTemporaryDir>
#include <QToolButton>

#include "editor/key_time.h"
#include "files/score_file.h"
#include "violin/instrument_table.h"
#include "violin/tempo_table.h"
#include "window/picture_canvas.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;
using window::ScoreChange;

class SoundTuningTest : public testing::WindowTest {
  Q_OBJECT

  QLabel* Label(ControlId id) { return Get<QLabel>(id); }
  static bool Fits(QWidget* w, const QString& text, int room) {
    return QFontMetrics(w->font()).horizontalAdvance(text) <= w->width() - room;
  }
  // Presses the menu button and chooses the item whose identifier is item, as a user does.
  void ChooseFromMenu(ControlId button, int item) {
    QVERIFY2(ChooseOnControl(button, [item](const QAction* a) { return a->data().toInt() == item; }), "no such item");
  }
  void ExpectReadable(ControlId id, int index) {
    auto* field = Get<QLineEdit>(id, index);
    QVERIFY2(Fits(field, field->text(), 4), qPrintable(field->text()));
    const QImage shot = testing::Grab(field);
    const QRgb back = *layout::ControlAt(id).backColour;
    int background = 0, ink = 0;
    for (int y = 0; y < shot.height(); ++y)
      for (int x = 0; x < shot.width(); ++x)
        background += (shot.pixel(x, y) & 0xffffff) == back, ink += qGray(shot.pixel(x, y)) > qGray(back) + 0x60;
    QVERIFY2(background > shot.width() * shot.height() / 2 && ink > 3, qPrintable(field->objectName()));
  }
  // The fields show the key's tuning in light figures on their grey and black, whole.
  void ExpectTuningShown(int key) {
    TuningTables expected;
    TuneToKey(expected, key);
    for (int j = 0; j < 12; ++j) {
      QCOMPARE(Get<QLineEdit>(ControlId::RatioField, j)->text(), QString::fromStdString(expected.ratioTexts[j]));
      QCOMPARE(Get<QLineEdit>(ControlId::FrequencyField, j)->text(), QString::fromStdString(expected.frequencyTexts[j]));
      for (ControlId id : {ControlId::RatioField, ControlId::FrequencyField}) ExpectReadable(id, j);
    }
    QCOMPARE(Label(ControlId::KeyNameLabel)->text(), QString::fromStdString(expected.keyName));
    QVERIFY2(Fits(Label(ControlId::KeyNameLabel), Label(ControlId::KeyNameLabel)->text(), 12), "key name cut off");
    for (int i = 11; i <= 119; ++i) QCOMPARE(window->State().tuning.pitches[i], expected.pitches[i]);  // what sounds
  }

 private slots:
  void init() { MakeWindow(); }

  void menusSetOneInstrumentOnEveryPlayer_data() {
    QTest::addColumn<int>("group");
    QTest::addColumn<int>("row");  // -1: only the group is chosen; -2: nothing, the start
    QTest::newRow("the start's violin, given once") << 5 << -2;
    QTest::newRow("a group sounds its first row") << 0 << -1;
    QTest::newRow("last of the longest group") << 15 << 40;
    QTest::newRow("drum kit after the separator") << 17 << 6;
  }
  void menusSetOneInstrumentOnEveryPlayer() {
    QFETCH(int, group);
    QFETCH(int, row);
    if (row > -2) sound->log.clear(), ChooseFromMenu(ControlId::InstrumentGroupMenu, group);
    if (row >= 0) sound->log.clear(), ChooseFromMenu(ControlId::InstrumentMenu, row);
    InstrumentEntry chosen{};
    for (const InstrumentEntry& e : AllInstruments())
      if (e.group == group && e.row == std::max(row, 0)) chosen = e;
    testing::Log everyPlayer;
    for (int k = 0; k < kNotePlayers; ++k) everyPlayer.push_back("player" + std::to_string(k) + " inst " + std::to_string(chosen.number));
    QCOMPARE(sound->log, everyPlayer);
    QCOMPARE(group == 17, chosen.number > 16384);  // bank 128 holds the kits
    auto* groupButton = Get<QToolButton>(ControlId::InstrumentGroupMenu);
    auto* instrumentButton = Get<QToolButton>(ControlId::InstrumentMenu);
    QCOMPARE(std::pair(groupButton->text(), instrumentButton->text()), std::pair(ToQString(chosen.groupName), ToQString(chosen.name)));
    QVERIFY2(Fits(groupButton, groupButton->text(), 16) && Fits(instrumentButton, instrumentButton->text(), 16), "cut off");
    const window::WindowState& state = window->State();  // what a save and a MIDI file carry
    QCOMPARE(std::tuple(state.instrumentGroupMenu, state.instrumentMenuRow, state.instrument),
             std::tuple(group, std::max(row, 0), chosen.number));
  }

  void slidersSetThePaceAndTheSpeaker_data() {
    QTest::addColumn<int>("tempoAction");
    QTest::addColumn<int>("tempo");
    QTest::addColumn<int>("volume");
    QTest::addColumn<QString>("speaker");
    QTest::newRow("slowest, silent") << int(QAbstractSlider::SliderToMinimum) << 0 << 0 << "Speaker0";
    QTest::newRow("a step up, level 3") << int(QAbstractSlider::SliderSingleStepAdd) << 8 << 3 << "Speaker1";
    QTest::newRow("a page down, level 5") << int(QAbstractSlider::SliderPageStepSub) << 6 << 7 << "Speaker2";
    QTest::newRow("fastest, loudest") << int(QAbstractSlider::SliderToMaximum) << kTempoSliderMax << 9 << "Speaker3";
  }
  void slidersSetThePaceAndTheSpeaker() {
    QFETCH(int, tempoAction);
    QFETCH(int, tempo);
    QFETCH(int, volume);
    QFETCH(QString, speaker);
    Get<QSlider>(ControlId::TempoSlider)->triggerAction(QAbstractSlider::SliderAction(tempoAction));
    const TempoRow expected = TempoForSlider(tempo);
    QCOMPARE(std::pair(window->State().tempoFactor, window->State().tempoSlider), std::pair(expected.tempoFactor, tempo));
    const QString number = QString::number(expected.number), term = QString::fromStdString(expected.term);
    for (auto [id, text] : {std::pair(ControlId::TempoSliderNumber, number), std::pair(ControlId::TempoNumber, number),
                            std::pair(ControlId::TempoWord, term)}) {
      QCOMPARE(Label(id)->text(), text);
      QVERIFY2(Fits(Label(id), text, 0), qPrintable(text + " is cut off"));
    }
    QVERIFY(window->Pictures().Picture("Speaker0") != window->Pictures().Picture("Speaker3"));
    Get<QSlider>(ControlId::VolumeSlider)->setValue(volume);
    QCOMPARE(Get<PictureCanvas>(ControlId::Speaker)->ShownPicture(), window->Pictures().Picture(speaker));
  }

  void tuningFollowsEachKeyChoice_data() {
    QTest::addColumn<int>("key");
    for (int key : {1, 3, 5, 7, 10, 14, 0}) QTest::newRow(qPrintable(QString::number(key))) << key;
  }
  void tuningFollowsEachKeyChoice() {
    QFETCH(int, key);
    ExpectTuningShown(0);
    window::WindowState& state = window->State();
    for (int chosen : {2, key}) {  // from another key than the start's
      QVERIFY(ChooseKey(state.staff, state.tuning, state.modes, chosen));
      window->NotifyScoreChanged(ScoreChange::Edited);
    }
    ExpectTuningShown(key);
  }

  // An opened score brings its tempo and key, not its instrument; a save writes the
  // menus and the tempo, and leaves a new score at the start tempo in C.
  void openedAndSavedScoresMoveTheSliderAndTheTuning() {
    QTemporaryDir dir;
    ScoreFile score;
    score.tempoSlider = 12, score.keySignature = 11;
    testing::WriteBytes(dir.filePath("opened.note"), ScoreFileText(score));
    ChooseFromMenu(ControlId::InstrumentGroupMenu, 17);
    sound->log.clear();
    window->OpenDocument(dir.filePath("opened.note"));
    const window::WindowState& state = window->State();
    QCOMPARE(std::pair(Get<QSlider>(ControlId::TempoSlider)->value(), state.tempoFactor), std::pair(12, TempoForSlider(12).tempoFactor));
    QCOMPARE(Label(ControlId::TempoWord)->text(), QString::fromStdString(TempoForSlider(12).term));
    ExpectTuningShown(11);
    QVERIFY(sound->log.empty());

    dialogs->answers << dir.filePath("saved.note");
    QVERIFY(window->RunMenuCommand(window::MenuCommand::SaveScore));
    QVERIFY2(dialogs->told.isEmpty(), qPrintable(dialogs->told.join(' ')));
    const ScoreFile written = ParseScoreFile(testing::FileBytes(dir.filePath("saved.note")));
    QCOMPARE(std::tuple(written.instrumentGroup, written.instrumentRow, written.tempoSlider), std::tuple(17, 0, 12));
    QCOMPARE(std::pair(Get<QSlider>(ControlId::TempoSlider)->value(), state.tempoFactor),
             std::pair(kTempoSliderStart, TempoForSlider(kTempoSliderStart).tempoFactor));
    ExpectTuningShown(0);
  }
};

QTEST_MAIN(SoundTuningTest)
#include "sound_tuning_test.moc"
