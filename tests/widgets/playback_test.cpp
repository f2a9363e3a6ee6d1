// Playing the staff through the real window with the players faked: what sounds, when,
// which note lights up on screen, the staff turning its pages, and Stop leaving nothing
// behind. The clock is faked too, so time moves only when a test says so.
#include <QAbstractButton>
#include <QScrollBar>
#include <QtTest>

#include "score/note_tables.h"
#include "violin/fakes.h"
#include "window/main_window.h"
#include "window/picture_canvas.h"
#include "window/staff_view.h"
#include "window/transport_panel.h"

using namespace lirenza;
using layout::ControlId;
using lirenza::testing::FakeClock;
using lirenza::testing::FakeSound;
using lirenza::testing::Log;

namespace {

constexpr int kPlay = 0, kStop = 1, kList = 2;
constexpr double kMs = 1000;  // microseconds

struct Tone {
  int pitch;
  const char* velocityDigit;  // "0" is a rest
};

}  // namespace

class PlaybackTest : public QObject {
  Q_OBJECT

  std::unique_ptr<FakeSound> fake;
  std::shared_ptr<FakeClock> clock;
  std::unique_ptr<MainWindow> window;
  window::TransportPanel* panel = nullptr;
  double started = 0;

  Staff& staff() { return window->State().staff; }
  void Press(int button) { QTest::mouseClick(window->Control(ControlId::TransportButton, button), Qt::LeftButton); }
  void Choose(ControlId radio, int index) { static_cast<QAbstractButton*>(window->Control(radio, index))->click(); }
  void Play() {
    started = clock->now;
    Press(kPlay);
  }
  // Moves the clock to this many milliseconds after Play and lets the due ticks run.
  void At(double ms) {
    clock->now = started + ms * kMs;
    panel->TickNow();
  }
  // Quarter notes 32 columns apart from the first column on.
  void Write(const std::vector<Tone>& tones, int spacing = 32) {
    for (std::size_t k = 0; k < tones.size(); ++k) {
      Note n;
      n.left = kFirstColumn + int(k) * spacing;
      n.pitch = n.linePitch = tones[k].pitch;  // naturals only: every paint spells the pitch from its line
      n.velocityDigit = tones[k].velocityDigit;
      n.durationDigit = "4";
      n.picture = n.IsRest() ? "r4" : "n4";
      staff().AddNote(n);
    }
  }
  QImage NoteImage(int index) {
    return window->Staff().grab(window::StaffView::NoteRect(staff().notes[index])).toImage();
  }
  QImage ButtonImage(int button) {
    return static_cast<PictureCanvas*>(window->Control(ControlId::TransportButton, button))->ShownPicture();
  }
  // What the score's player was asked to sound; its instrument is the sound panel's.
  Log Played() {
    return fake->Lines([](const std::string& l) { return l.rfind("player1 ", 0) == 0 && l.find(" inst ") == l.npos; });
  }
  // The pointer comes over a button and leaves it again.
  void Hover(int button) {
    for (QEvent::Type type : {QEvent::Enter, QEvent::Leave}) {
      QEvent event(type);
      QApplication::sendEvent(window->Control(ControlId::TransportButton, button), &event);
    }
  }
  QImage Picture(const char* name) { return window->Pictures().Picture(name); }
  int SoundingNotes() {
    return int(std::count_if(staff().notes.begin(), staff().notes.end(), [](const Note& n) { return n.sounding; }));
  }

 private slots:
  void init() {
    fake = std::make_unique<FakeSound>();
    clock = std::make_shared<FakeClock>();
    window = std::make_unique<MainWindow>(window::WindowServices{.ports = fake->ports, .clock = clock, .confirm = {}, .dialogs = {}, .closeQuestion = {}});
    window->State().tuning = lirenza::testing::MarkedTuning();
    panel = window->findChild<window::TransportPanel*>();
    QVERIFY(panel);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
  }
  void cleanup() {
    window.reset();
    fake.reset();
  }

  // Each note sounds on the score's player at its pitch from the tuning table and its
  // loudness, in time with the clock; how it is shown depends on the two mode groups.
  void playSoundsEachNoteInTimeAndShowsItAsTheModesSay_data() {
    QTest::addColumn<bool>("editMode");
    QTest::addColumn<bool>("live");
    QTest::addColumn<double>("tempoFactor");
    QTest::addColumn<double>("quarterMs");  // the factor counts twice: in the lengths and in the clock
    QTest::addColumn<bool>("highlights");
    QTest::addColumn<bool>("fingers");
    QTest::newRow("edit mode follows the staff") << true << false << 1.0 << 480.0 << true << true;
    QTest::newRow("play mode shows the fingers only") << false << false << 1.0 << 480.0 << false << true;
    QTest::newRow("live sounds only") << false << true << 1.0 << 480.0 << false << false;
    QTest::newRow("edit mode at a faster tempo") << true << false << 0.5 << 120.0 << true << true;
  }
  void playSoundsEachNoteInTimeAndShowsItAsTheModesSay() {
    QFETCH(bool, editMode);
    QFETCH(bool, live);
    QFETCH(double, tempoFactor);
    QFETCH(double, quarterMs);
    QFETCH(bool, highlights);
    QFETCH(bool, fingers);
    if (editMode) Choose(ControlId::ModeButton, 0);
    if (live) Choose(ControlId::PlaybackModeButton, 1);
    window->State().tempoFactor = tempoFactor;
    const std::vector<Tone> melody{{67, "9"}, {71, "5"}, {69, "0"}, {74, "d"}};
    Write(melody);
    const QImage atRest = NoteImage(1);
    Play();
    const double sounds = quarterMs * window->State().entry.gate;
    for (int k = 0; k < int(melody.size()); ++k) {
      const int note = k + 1;
      const double on = quarterMs * (k + 1);  // the first note waits one quarter after the start
      const std::string pitch = "player1 p(" + std::to_string(melody[k].pitch) + ") ";
      const bool rest = std::string(melody[k].velocityDigit) == "0";
      At(on - 1);
      QCOMPARE(Played().size(), std::size_t(2 * k));  // nothing before its time
      At(on);
      QCOMPARE(QString::fromStdString(Played().back()), QString::fromStdString(pitch + std::to_string(VelocityOfDigit(melody[k].velocityDigit))));
      QCOMPARE(staff().notes[note].sounding, highlights && !rest);
      QCOMPARE(SoundingNotes(), int(staff().notes[note].sounding));
      if (note == 1) QCOMPARE(NoteImage(1) != atRest, highlights);
      At(on + sounds);
      QCOMPARE(Played().back(), pitch + "0");
      QCOMPARE(SoundingNotes(), 0);
      if (note == 1) QCOMPARE(NoteImage(1), atRest);
    }
    QCOMPARE(Played().size(), 2 * melody.size());
    for (int id : {0, 2, 3, 4, 5, 6}) QVERIFY(fake->players[id].notes.empty());
    // In first position G on the D string, B and D on the A string; the rest only lifts.
    const Log shown{"G 3/5", "GF 3/5", "G 2/2", "GF 2/2", "GF 2/0", "GF 2/0", "G 2/5", "GF 2/5"};
    QCOMPARE(fake->Fingerboard(), fingers ? shown : Log{});
    QVERIFY(panel->TimerActive());  // it loops until Stop
  }

  // A score longer than the view turns the staff's page as the music passes its right
  // end; the scroll bar shows where the staff stands, and the loop starts on page one.
  void longScorePagesTheStaffAndTheBarFollows() {
    Choose(ControlId::ModeButton, 0);
    std::vector<Tone> tones(36, Tone{69, "9"});
    Write(tones);
    auto* bar = static_cast<QScrollBar*>(window->Control(ControlId::StaffScrollBar));
    const int beyond = int(std::find_if(staff().notes.begin() + 1, staff().notes.end(),
                                        [](const Note& n) { return n.left >= 984; }) -
                           staff().notes.begin());
    Play();
    At(480.0 * (beyond - 1));
    QCOMPARE(staff().scrollValue, 0);
    At(480.0 * beyond);
    QVERIFY(staff().scrollValue > 0);
    QCOMPARE(bar->value(), staff().scrollValue);
    const QRect shownAt = window::StaffView::NoteRect(staff().notes[beyond]);
    QVERIFY2(window->Staff().rect().contains(shownAt), "the sounding note is off the page");
    QVERIFY(staff().notes[beyond].sounding);
    // The last note ends, and the loop starts again from the first page.
    At(480.0 * 36 + 456);
    QCOMPARE(staff().scrollValue, 0);
    QCOMPARE(bar->value(), 0);
    const std::size_t played = Played().size();
    At(480.0 * 36 + 456 + 480);
    QCOMPARE(Played().size(), played + 1);
    QVERIFY(staff().notes[1].sounding);
  }

  // Nothing wakes while nothing plays; Stop silences every sounding note, clears the
  // highlight and puts the buttons, the label and the list back as they were.
  void stopEndsEverythingAndTheTimerSleeps() {
    Choose(ControlId::ModeButton, 0);
    Write({{64, "9"}, {67, "9"}});
    QWidget* label = window->Control(ControlId::ScorePlayingLabel);
    QWidget* list = window->Control(ControlId::ScoreList);
    QVERIFY(!panel->TimerActive());
    Play();
    QVERIFY(panel->TimerActive());
    QVERIFY(label->isVisible());
    QVERIFY(!list->isEnabled());
    // The pointer leaving Play keeps it pressed while the score plays, and only then.
    Hover(kPlay);
    QCOMPARE(ButtonImage(kPlay), Picture("PlayButtonB"));
    At(480);
    QVERIFY(staff().notes[1].sounding);
    QCOMPARE(fake->players[1].StillSounding(), std::vector<int>{64 * 256 + 3});
    Press(kStop);
    QVERIFY(fake->players[1].StillSounding().empty());
    QCOMPARE(SoundingNotes(), 0);
    QVERIFY(!panel->TimerActive());
    QVERIFY(!label->isVisible());
    QVERIFY(list->isEnabled());
    Hover(kPlay);
    QCOMPARE(ButtonImage(kPlay), Picture("PlayButton"));
    const Log calls = fake->log;
    At(5000);
    QCOMPARE(fake->log, calls);
  }

  // Presses that must not start anything, and the hand position held while playing.
  void guardsRefuseToStart() {
    QVERIFY(window->Control(ControlId::ScoreList));
    Press(kPlay);  // an empty staff
    Press(kList);  // an empty score list
    Write({{62, "9"}});
    window->State().modes.loading = true;
    Press(kPlay);  // a score is loading
    QVERIFY(!panel->TimerActive());
    QVERIFY(Played().empty());
    window->State().modes.loading = false;
    Play();
    At(300);
    Press(kPlay);  // already playing: the piece does not start over
    At(480);
    QCOMPARE(Played(), Log{"player1 p(62) " + std::to_string(VelocityOfDigit("9"))});
    Choose(ControlId::PositionButton, 1);
    QCOMPARE(window->State().handPosition, 0);
    QVERIFY(static_cast<QAbstractButton*>(window->Control(ControlId::PositionButton, 0))->isChecked());
    Press(kStop);
    Choose(ControlId::PositionButton, 1);
    QCOMPARE(window->State().handPosition, 1);
  }
};

QTEST_MAIN(PlaybackTest)
#include "playback_test.moc"
