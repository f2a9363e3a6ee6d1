// Playing the staff through the real window with faked players and clock: what sounds
// when, which note lights up, the staff turning its pages, and Stop leaving nothing on.
#include <QScrollBar>
#include <QSlider>

#include "score/note_tables.h"
#include "violin/tempo_table.h"
#include "window/picture_canvas.h"
#include "window/transport_panel.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;
using lirenza::testing::Log;

class PlaybackTest : public testing::WindowTest {
  Q_OBJECT

  window::TransportPanel* panel = nullptr;
  double started = 0;

  void Press(int button) { Click(ControlId::TransportButton, button); }
  void Choose(ControlId radio, int index) { Get<QAbstractButton>(radio, index)->click(); }
  void Play() { started = clock->now, Press(0); }
  // The clock this many milliseconds after Play, and the ticks then due.
  void At(double ms) { clock->now = started + ms * 1000, panel->TickNow(); }
  // Quarter notes 32 columns apart; a velocity digit "0" makes a rest.
  void Write(const std::vector<std::pair<int, const char*>>& tones) {
    for (auto [pitch, velocity] : tones) {
      Note n;
      n.left = kFirstColumn + 32 * TheStaff().NoteCount();
      n.pitch = n.linePitch = pitch;  // naturals only: a paint spells the pitch from its line
      n.velocityDigit = velocity;
      n.picture = n.IsRest() ? "r4" : "n4";
      TheStaff().AddNote(n);
    }
  }
  // What the score's player was asked to sound (its instrument is the sound panel's).
  Log Played() { return sound->Lines([](const std::string& l) { return l.starts_with("player1 p("); }); }
  QImage NoteImage(int i) { return View().grab(window::StaffView::NoteRect(TheStaff().notes[i])).toImage(); }
  // The picture a transport button shows after the pointer came over it and left.
  QImage AfterHover(int button) {
    QWidget* canvas = Get(ControlId::TransportButton, button);
    for (QEvent::Type type : {QEvent::Enter, QEvent::Leave}) {
      QEvent event(type);
      QApplication::sendEvent(canvas, &event);
    }
    return static_cast<PictureCanvas*>(canvas)->ShownPicture();
  }
  int Lit() { return int(std::count_if(TheStaff().notes.begin(), TheStaff().notes.end(), [](auto& n) { return n.sounding; })); }

 private slots:
  void init() {
    MakeWindow();
    window->State().tuning = testing::MarkedTuning();
    panel = window->findChild<window::TransportPanel*>();
  }

  void playSoundsEachNoteInTimeShownAsTheModesSay_data() {
    QTest::addColumn<int>("mode");  // the mode radio: 0 edit, 1 play, 2 play live
    QTest::addColumn<double>("tempoFactor");
    QTest::addColumn<double>("quarterMs");  // the factor counts twice: in the lengths and in the clock
    QTest::newRow("edit mode follows the staff") << 0 << 1.0 << 480.0;
    QTest::newRow("play mode shows the fingers") << 1 << 1.0 << 480.0;
    QTest::newRow("live only sounds") << 2 << 1.0 << 480.0;
    QTest::newRow("edit mode, faster") << 0 << 0.5 << 120.0;
  }
  void playSoundsEachNoteInTimeShownAsTheModesSay() {
    QFETCH(int, mode);
    QFETCH(double, quarterMs);
    Choose(ControlId::ModeButton, std::min(mode, 1));
    Choose(ControlId::PlaybackModeButton, mode == 2);
    QFETCH(double, tempoFactor);
    window->State().tempoFactor = tempoFactor;
    const std::vector<std::pair<int, const char*>> melody{{67, "9"}, {71, "5"}, {69, "0"}, {74, "d"}};
    Write(melody);
    const QImage unlit = NoteImage(1);
    Play();
    for (int k = 0; k < 4; ++k) {
      const double on = quarterMs * (k + 1);  // the first note waits one quarter after the start
      const std::string pitch = "player1 p(" + std::to_string(melody[k].first) + ") ";
      At(on - 1);
      QCOMPARE(Played().size(), std::size_t(2 * k));
      At(on);
      QCOMPARE(Played().back(), pitch + std::to_string(VelocityOfDigit(melody[k].second)));
      QCOMPARE(Lit(), mode == 0 && k != 2 ? 1 : 0);  // a rest is never lit
      QCOMPARE(TheStaff().notes[k + 1].sounding, Lit() == 1);
      if (k == 0) QCOMPARE(NoteImage(1) != unlit, mode == 0);
      At(on + quarterMs * window->State().entry.gate);
      QCOMPARE(Played().back(), pitch + "0");
      QCOMPARE(Lit(), 0);
    }
    QCOMPARE(NoteImage(1), unlit);
    for (int id : {0, 2, 3, 4, 5, 6}) QVERIFY(sound->players[id].notes.empty());
    // First position: G on the D string, B and D on the A string; the rest only lifts.
    const Log fingers{"G 3/5", "GF 3/5", "G 2/2", "GF 2/2", "GF 2/0", "GF 2/0", "G 2/5", "GF 2/5"};
    QCOMPARE(sound->Fingerboard(), mode == 2 ? Log{} : fingers);
  }

  // The page turns as the music passes the view's right end, the scroll bar showing it,
  // and the loop starts again on page one.
  void longScorePagesTheStaffAndLoops() {
    Choose(ControlId::ModeButton, 0);
    Write(std::vector<std::pair<int, const char*>>(36, {69, "9"}));
    const int beyond = (984 - kFirstColumn) / 32 + 2;  // the first note at or past column 984
    const auto* bar = Get<QScrollBar>(ControlId::StaffScrollBar);
    Play();
    At(480.0 * (beyond - 1));
    QCOMPARE(TheStaff().scrollValue, 0);
    At(480.0 * beyond);
    QVERIFY(TheStaff().scrollValue > 0);
    QCOMPARE(bar->value(), TheStaff().scrollValue);
    QVERIFY(View().rect().contains(window::StaffView::NoteRect(TheStaff().notes[beyond])));
    QVERIFY(TheStaff().notes[beyond].sounding);
    At(480.0 * 36 + 456);  // the last note ends
    QCOMPARE(bar->value(), 0);
    At(480.0 * 37 + 456);
    QCOMPARE(Played().size(), std::size_t(2 * 36 + 1));
    QVERIFY(TheStaff().notes[1].sounding);
  }

  // Nothing wakes while nothing plays; presses that must not start refuse; Stop ends
  // every sounding note and gives back the list and the hand position.
  void guardsStopAndTheSleepingTimer() {
    QWidget* label = Get(ControlId::ScorePlayingLabel);
    Choose(ControlId::ModeButton, 0);
    Press(0);  // an empty staff
    Press(2);  // an empty score list
    Write({{64, "9"}, {67, "9"}});
    window->State().modes.loading = true;
    Press(0);  // a score is loading
    QVERIFY(!panel->TimerActive());
    window->State().modes.loading = false;
    Play();
    QVERIFY(panel->TimerActive() && label->isVisible() && !Get(ControlId::ScoreList)->isEnabled());
    QCOMPARE(AfterHover(0), window->Pictures().Picture("PlayButtonB"));  // held down while it plays
    At(300);
    Press(0);  // already playing: it does not start over
    At(480);
    QCOMPARE(Lit(), 1);
    QCOMPARE(sound->players[1].StillSounding(), std::vector<int>{64 * 256 + 3});
    Choose(ControlId::PositionButton, 1);
    QCOMPARE(window->State().handPosition, 0);
    QVERIFY(Checked(ControlId::PositionButton, 0));
    Press(1);
    QVERIFY(sound->players[1].StillSounding().empty());
    QCOMPARE(Lit(), 0);
    QVERIFY(!panel->TimerActive() && !label->isVisible() && Get(ControlId::ScoreList)->isEnabled());
    QCOMPARE(AfterHover(0), window->Pictures().Picture("PlayButton"));
    const Log calls = sound->log;
    At(5000);
    QCOMPARE(sound->log, calls);
    Choose(ControlId::PositionButton, 1);
    QCOMPARE(window->State().handPosition, 1);
  }

  // The real timer wakes by itself, sooner when the tempo quickens mid-piece, and runs
  // out the events that became overdue.
  void timerWakesAsTheTempoSays() {
    auto* tempo = Get<QSlider>(ControlId::TempoSlider);
    tempo->setValue(0);  // slowest: the first note is due 1.08 s after the start
    Write({{60, "9"}, {62, "9"}});
    Play();
    clock->now = started + 1000 * 1000;
    tempo->setValue(kTempoSliderMax);  // fastest: two ons and an off are due by now
    QTRY_COMPARE_WITH_TIMEOUT(Played().size(), std::size_t(3), 700);
  }
};

QTEST_MAIN(PlaybackTest)
#include "playback_test.moc"
