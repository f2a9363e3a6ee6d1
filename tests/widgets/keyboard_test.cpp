// The computer keyboard as the violin, driven by key events that carry the physical
// key (as X11 and Wayland deliver them) into the real window: what the live player
// hears, where the fingerboard draws, and that no note outlives its key, whatever
// takes the keyboard away meanwhile.
#include <linux/input-event-codes.h>

#include <QDialog>
#include <QLineEdit>
#include <QSlider>
#include <map>

#include "violin/fingerboard.h"
#include "violin/key_push.h"
#include "window/keyboard_panel.h"
#include "window/violin_view.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;

namespace {

struct Key {
  int evdev;
  int pitchIndex;
  Qt::Key qtKey = Qt::Key_unknown;
};
const Key kX{KEY_X, 55}, kSlash{KEY_SLASH, 69}, kLeftShift{KEY_LEFTSHIFT, 72, Qt::Key_Shift}, kY{KEY_Y, 72},
    kI{KEY_I, 76}, kReturn{KEY_ENTER, 84, Qt::Key_Return}, kRightBracket{KEY_RIGHTBRACE, 83};

}  // namespace

class KeyboardTest : public testing::WindowTest {
  Q_OBJECT

  window::KeyboardPanel* Panel() { return window->findChild<window::KeyboardPanel*>(); }
  int Pitch(int index) { return static_cast<int>(window->State().tuning.pitches[index]); }
  std::vector<std::pair<int, int>>& Live() { return sound->players[kLivePlayer].notes; }

  quint64 time = 1000;  // the window system's time stamp of the next event, in ms

  void Send(QEvent::Type type, const Key& key, bool repeat = false, QWidget* to = nullptr) {
    QKeyEvent event(type, key.qtKey, Qt::NoModifier, key.evdev + window::KeyboardPanel::kScanCodeOffset, 0, 0,
                    QString(), repeat);
    event.setTimestamp(time += 30);
    if (!to) to = QApplication::focusWidget() ? QApplication::focusWidget() : window.get();
    QApplication::sendEvent(to, &event);
  }
  void Press(const Key& key) { Send(QEvent::KeyPress, key); }
  // A release counts once no repeat's press followed it in time.
  void Release(const Key& key) {
    Send(QEvent::KeyRelease, key);
    QVERIFY(QTest::qWaitFor([this] { return !Panel()->ReleaseWaiting(); }, 1000));
  }
  // What the window system sends while a key is held: a release and a press with one
  // time stamp, marked as repeats by the toolkit or, now and then, not.
  void Repeat(const Key& key, bool marked = true) {
    Send(QEvent::KeyRelease, key, marked);
    time -= 30;
    Send(QEvent::KeyPress, key, marked);
  }
  // Lets queued passes run.
  void Settle() {
    QTest::qWait(5);
    QVERIFY(!Panel()->PassesPending());
  }
  void ChoosePosition(int position) {
    Click(ControlId::PositionButton, position);
    QCOMPARE(window->State().handPosition, position);
  }
  // Places on the fingerboard whose last drawing was a finger put down.
  std::set<std::string> FingersLeft() {
    std::map<std::string, bool> down;
    for (const std::string& line : sound->Fingerboard()) {
      if (line == "clean") down.clear();
      else if (line.rfind("G ", 0) == 0) down[line.substr(2)] = true;
      else down[line.substr(3)] = false;
    }
    std::set<std::string> left;
    for (auto& [place, isDown] : down)
      if (isDown) left.insert(place);
    return left;
  }
  // No note of the live player sounds on and no finger stays drawn.
  void ExpectNothingHangs(const char* when) {
    Settle();
    QVERIFY2(sound->players[kLivePlayer].StillSounding().empty(), when);
    QVERIFY2(FingersLeft().empty(), when);
    QVERIFY2(!Panel()->Hand().AnyPressed(), when);
  }

 private slots:
  void init() { MakeWindow(); }

  // In each position a key sounds its own pitch at 100 and shows the finger at the
  // position's place; held, the repeats the window system sends start nothing.
  void aKeySoundsOnceWhileHeldAndEndsOnRelease_data() {
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("which");
    const Key* keys[] = {&kX, &kSlash, &kI, &kRightBracket};
    for (int position = 0; position < 3; ++position)
      for (int k = 0; k < 4; ++k)
        QTest::addRow("position %d, pitch %d", position, keys[k]->pitchIndex) << position << k;
  }
  void aKeySoundsOnceWhileHeldAndEndsOnRelease() {
    QFETCH(int, position);
    QFETCH(int, which);
    const Key key = std::array{kX, kSlash, kI, kRightBracket}[which];
    ChoosePosition(position);
    sound->log.clear();
    Press(key);
    for (bool marked : {true, false, true, false}) Repeat(key, marked);
    Settle();
    const StringCell place = PositionOf(key.pitchIndex, position);
    const std::string at = testing::FakeFingerboard::Place(place.string, place.cell);
    QCOMPARE(Live(), (std::vector<std::pair<int, int>>{{Pitch(key.pitchIndex), 100}}));
    QCOMPARE(sound->Fingerboard(), (testing::Log{"G " + at}));
    Release(key);
    QCOMPARE(Live().back(), std::make_pair(Pitch(key.pitchIndex), 0));
    QCOMPARE(sound->Fingerboard().back(), "GF " + at);
    ExpectNothingHangs("after the release");
  }

  // The same key seen twice (the toolkit's window and then the widget) is one press;
  // two keys at once sound together; Shift and Y share C5, and either's release ends it.
  void keysTogetherAndTheSharedNote() {
    Press(kX), Press(kX), Press(kRightBracket);
    Settle();
    QCOMPARE(Live(), (std::vector<std::pair<int, int>>{{Pitch(55), 100}, {Pitch(83), 100}}));
    Release(kX), Release(kRightBracket);
    Live().clear();
    Press(kLeftShift), Press(kY);
    QCOMPARE(Live(), (std::vector<std::pair<int, int>>{{Pitch(72), 100}, {Pitch(72), 100}}));
    Release(kLeftShift);
    QCOMPARE(Live().back(), std::make_pair(Pitch(72), 0));
    QVERIFY(sound->players[kLivePlayer].StillSounding().empty());
    Release(kY);
    ExpectNothingHangs("after Shift and Y");
  }

  // Return silences all seven players and wipes the violin, then plays C6 as long as it
  // is held; its repeats neither sweep again nor restart the note.
  void returnIsThePanicKeyAndC6() {
    Press(kX);
    sound->log.clear();
    Press(kReturn);
    const testing::Log log = sound->log;
    QCOMPARE(int(log.size()), 127 * 7 + 1 + 2);
    QCOMPARE(log[127 * 7], "clean");
    QCOMPARE(log.back(), "player0 " + std::to_string(Pitch(84)) + " 100");
    Repeat(kReturn), Repeat(kReturn, false);
    QCOMPARE(sound->log.size(), log.size());
    Release(kReturn), Release(kX);
    ExpectNothingHangs("after Return");
    // X, swept by the panic, still gets its own end.
    QCOMPARE(Live().back(), std::make_pair(Pitch(55), 0));
  }

  // A key held across a change of position ends the pitch it started and wipes the
  // finger where it was drawn.
  void changingPositionWhileAKeyIsHeld() {
    Press(kSlash);
    ChoosePosition(2);
    Release(kSlash);
    QCOMPARE(sound->Fingerboard(), (testing::Log{"G 2/0", "GF 2/0"}));
    ExpectNothingHangs("after a change of position");
  }

  // Whatever takes the keyboard away while keys are held ends their notes at once; the
  // key's later release changes nothing, and a fresh press plays again.
  void keysHeldWhenTheKeyboardIsTakenAway_data() {
    QTest::addColumn<int>("cause");
    QTest::newRow("a dialog opens") << 0;
    QTest::newRow("another window is activated") << 1;
    QTest::newRow("the note menu opens") << 2;
    QTest::newRow("edit mode is chosen") << 3;
    QTest::newRow("the program goes to the background") << 4;
  }
  void keysHeldWhenTheKeyboardIsTakenAway() {
    QFETCH(int, cause);
    Press(kX), Press(kI);
    QDialog dialog(window.get());
    QWidget other;
    switch (cause) {
      case 0: dialog.open(); break;
      case 1:
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        break;
      case 2:
        DoubleClickStaff(QPoint(300, 70));
        QVERIFY(ChooseOnStaff(QPoint(300, 70), [](const QAction*) { return false; }) == false);
        break;
      case 3: Click(ControlId::ModeButton, 0); break;
      case 4: {
        QApplicationStateChangeEvent away(Qt::ApplicationInactive);
        QApplication::sendEvent(qApp, &away);
        break;
      }
    }
    ExpectNothingHangs("when the keyboard was taken");
    const std::size_t ended = Live().size();
    Release(kX), Release(kI);
    QCOMPARE(Live().size(), ended);
    dialog.close();
    if (cause == 3) Click(ControlId::ModeButton, 1);
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    Press(kX);
    QCOMPARE(Live().back(), std::make_pair(Pitch(55), 100));
    Release(kX);
    ExpectNothingHangs("after a fresh press");
  }

  // Stop sweeps the score's player, not the keyboard's notes: they end with their keys.
  void stopWhileAKeyIsHeld() {
    DoubleClickStaff(QPoint(300, 70));
    Click(ControlId::TransportButton, 0);
    Press(kX);
    Click(ControlId::TransportButton, 1);
    Release(kX);
    ExpectNothingHangs("after Stop");
  }

  // In edit mode the first position's keys are silent; in 3rd position they stay live.
  void editModeSilencesOnlyTheFirstPosition() {
    Click(ControlId::ModeButton, 0);
    Press(kX), Release(kX);
    QVERIFY(Live().empty());
    ChoosePosition(1);
    Press(kX), Release(kX);
    QCOMPARE(Live().size(), std::size_t(2));
  }

  // A key pressed for a dialog is the dialog's.
  void keysPressedInADialogDoNotPlay() {
    QDialog dialog(window.get());
    dialog.show();
    Send(QEvent::KeyPress, kX, false, &dialog);
    Send(QEvent::KeyRelease, kX, false, &dialog);
    QVERIFY(Live().empty());
  }

  // The arrows step the volume (up, down) and tempo (right, left) sliders, except in a
  // text field, where they move the caret.
  void arrowsStepTheSliders() {
    auto* volume = Get<QSlider>(ControlId::VolumeSlider);
    auto* tempo = Get<QSlider>(ControlId::TempoSlider);
    const int v = volume->value(), t = tempo->value();
    QTest::keyClick(window.get(), Qt::Key_Up);
    QTest::keyClick(window.get(), Qt::Key_Right);
    QTest::keyClick(window.get(), Qt::Key_Right);
    QCOMPARE(volume->value(), v + 1);
    QCOMPARE(tempo->value(), t + 2);
    QTest::keyClick(window.get(), Qt::Key_Down);
    QTest::keyClick(window.get(), Qt::Key_Left);
    QCOMPARE(volume->value(), v);
    QCOMPARE(tempo->value(), t + 1);
    Click(ControlId::ModeButton, 0);  // the title field takes input only in edit mode
    auto* title = Get<QLineEdit>(ControlId::TitleField);
    title->setFocus();
    QTest::keyClick(title, Qt::Key_Up);
    QCOMPARE(volume->value(), v);
  }

  // On the real violin picture: the held key's finger and vibrating string are drawn
  // and the bow shows; the release puts the clean violin back.
  void theFingerIsDrawnAndWipedOnTheViolin() {
    MakeWindow(/*drawsOwnViolin=*/true);
    auto* violin = dynamic_cast<window::ViolinView*>(window->Services().ports.view);
    QVERIFY(violin);
    const QImage clean = violin->Picture().copy();
    const HandGeometry at = HandGeometryAt(2, 0);  // '/' in first position: open A
    const QRect line(at.string.x, at.string.y, at.string.width, at.string.height);
    Press(kSlash);
    QVERIFY(violin->Picture().copy(line) != clean.copy(line));
    QVERIFY(Get(ControlId::BowCanvas)->isVisible());
    Release(kSlash);
    QCOMPARE(violin->Picture(), clean);
    QVERIFY(!Get(ControlId::BowCanvas)->isVisible());
  }
};

QTEST_MAIN(KeyboardTest)
#include "keyboard_test.moc"
