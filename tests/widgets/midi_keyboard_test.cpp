// A MIDI keyboard plays the real window's violin: notes come in on the source's own
// thread and must sound and show on the window's, with no note left sounding by a key
// change, an all-notes-off or the window closing; a machine without MIDI says so once.
#include <mutex>
#include <thread>

#include "window/midi_keyboard_panel.h"
#include "window_fixture.h"

using namespace lirenza;
using Kind = MidiNoteEvent::Kind;

namespace {

// Delivers from a thread of its own, as a sequencer's reader does.
struct FakeMidiSource : MidiNoteSource {
  explicit FakeMidiSource(bool works) : works(works) {}
  bool Listen(std::function<void(const MidiNoteEvent&)> to) override {
    std::lock_guard lock(mutex);
    if (works) deliver = std::move(to);
    return works;
  }
  void StopListening() override {
    std::lock_guard lock(mutex);
    deliver = nullptr;
  }
  std::string Problem() const override { return works ? "" : "この機械ではMIDIを聞けません。"; }
  void Send(const std::vector<MidiNoteEvent>& events) {
    std::thread([&] {
      std::lock_guard lock(mutex);
      for (const MidiNoteEvent& e : events)
        if (deliver) deliver(e);
    }).join();
  }
  const bool works;
  std::mutex mutex;
  std::function<void(const MidiNoteEvent&)> deliver;
};

// Counts the warnings that carry a text, passing every message on as before.
struct WarningCounter {
  static inline QString text;
  static inline int count = 0;
  static inline QtMessageHandler previous = nullptr;
  static void Handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    count += type == QtWarningMsg && message.contains(text);
    previous(type, context, message);
  }
  explicit WarningCounter(const QString& counted) { text = counted, count = 0, previous = qInstallMessageHandler(Handle); }
  ~WarningCounter() { qInstallMessageHandler(previous); }
};

}  // namespace

class MidiKeyboardTest : public testing::WindowTest {
  Q_OBJECT

  std::shared_ptr<FakeMidiSource> source;

  void MakeWindowWith(std::shared_ptr<FakeMidiSource> midi) {
    window.reset();
    source = std::move(midi);
    sound = std::make_unique<testing::FakeSound>(), clock = std::make_shared<testing::FakeClock>();
    confirm = std::make_shared<testing::FakeConfirm>(), dialogs = std::make_shared<testing::FakeDialogs>();
    closeQuestion = std::make_shared<testing::FakeCloseQuestion>();
    window::WindowServices services;
    services.ports = sound->ports, services.clock = clock, services.confirm = confirm, services.dialogs = dialogs;
    services.closeQuestion = closeQuestion, services.midiNotes = source;
    window = std::make_unique<MainWindow>(services);
    sound->log.clear();  // the window's start chose instruments: not what is tested here
  }
  // Sends from the source's thread; nothing may play there, all of it on the window's.
  void Play(const std::vector<MidiNoteEvent>& events) {
    const std::size_t before = sound->log.size();
    source->Send(events);
    QVERIFY2(sound->log.size() == before, "played on the source's thread");
    QCoreApplication::processEvents();
  }
  std::string Pitch(int key) { return testing::PitchText(window->State().tuning.pitches[key]); }

 private slots:
  void init() { MakeWindowWith(std::make_shared<FakeMidiSource>(true)); }
  void cleanup() { window.reset(); }

  void aNoteSoundsItsKeysPitchAndShowsTheFingerOfTheHandPosition_data() {
    QTest::addColumn<int>("handPosition");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("velocity");
    QTest::addColumn<QString>("place");  // string/cell; empty: off the fingerboard
    QTest::newRow("first position, C4 on the G string") << 0 << 60 << 90 << "4/5";
    QTest::newRow("third position, A5 on the E string") << 1 << 81 << 64 << "1/5";
    QTest::newRow("fifth position, A5 on the A string") << 2 << 81 << 127 << "2/12";
    QTest::newRow("below the violin: sound only") << 0 << 40 << 50 << "";
  }
  void aNoteSoundsItsKeysPitchAndShowsTheFingerOfTheHandPosition() {
    QFETCH(int, handPosition);
    QFETCH(int, key);
    QFETCH(int, velocity);
    QFETCH(QString, place);
    window->State().handPosition = handPosition;
    Play({{Kind::NoteOn, key, velocity}, {Kind::NoteOn, key, 0}});
    testing::Log expected;
    const std::string sounded = "player0 " + Pitch(key) + " ", at = place.toStdString();
    for (auto [shown, velocityNow] : {std::pair{"G ", velocity}, {"GF ", 0}}) {
      if (!at.empty()) expected.push_back(shown + at);
      expected.push_back(sounded + std::to_string(velocityNow));
    }
    QCOMPARE(sound->log, expected);
  }

  // The tuning follows the score's key; a key held across the change ends what it started.
  void aReleaseAfterTheScoresKeyChangedEndsThePitchStarted() {
    Play({{Kind::NoteOn, 74, 100}});
    const long long started = window->State().tuning.pitches[74];
    window->State().staff.keySignature = 3;
    window->NotifyScoreChanged(window::ScoreChange::Edited);
    QVERIFY2(window->State().tuning.pitches[74] != started, "the key change did not retune D5");
    Play({{Kind::NoteOff, 74}});
    QCOMPARE(sound->players[0].notes, (std::vector<std::pair<int, int>>{{started, 100}, {started, 0}}));
    QCOMPARE(sound->Fingerboard(), (testing::Log{"G 2/5", "GF 2/5"}));
  }

  void allNotesOffAndClosingTheWindowLeaveNothingSounding() {
    Play({{Kind::NoteOn, 60, 80}, {Kind::NoteOn, 64, 80}, {Kind::NoteOn, 67, 80}, {Kind::AllNotesOff}});
    QVERIFY(sound->players[0].StillSounding().empty());
    QCOMPARE(sound->Fingerboard(), (testing::Log{"G 4/5", "G 3/2", "G 3/5", "GF 4/5", "GF 3/2", "GF 3/5"}));
    Play({{Kind::NoteOn, 72, 80}, {Kind::NoteOn, 76, 80}});
    window.reset();
    QVERIFY(sound->players[0].StillSounding().empty());
    QVERIFY2(!source->deliver, "the window still listens after it closed");
  }

  void aMachineWithoutMidiSaysSoOnceAndRunsOn_data() {
    QTest::addColumn<int>("sourceKind");  // 0 none, 1 working, 2 failing
    QTest::addColumn<int>("told");
    QTest::newRow("no source") << 0 << 0;
    QTest::newRow("a working source") << 1 << 0;
    QTest::newRow("a failing source") << 2 << 1;
  }
  void aMachineWithoutMidiSaysSoOnceAndRunsOn() {
    QFETCH(int, sourceKind);
    QFETCH(int, told);
    WarningCounter warnings(QStringLiteral("この機械ではMIDIを聞けません。"));
    MakeWindowWith(sourceKind == 0 ? nullptr : std::make_shared<FakeMidiSource>(sourceKind == 1));
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QCoreApplication::processEvents();
    QCOMPARE(warnings.count, told);
    QVERIFY2(dialogs->told.isEmpty(), "a dialog at every start");
    if (source) {
      Play({{Kind::NoteOn, 62, 70}});
      QCOMPARE(sound->players[0].notes.size(), std::size_t(source->works ? 1 : 0));
    }
  }
};

QTEST_MAIN(MidiKeyboardTest)
#include "midi_keyboard_test.moc"
