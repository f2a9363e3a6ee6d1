// A MIDI keyboard plays the real window's violin: notes come in on the source's own
// thread and must sound and show on the window's, with no note left sounding when the
// window closes; a machine without MIDI says so once.
#include <mutex>
#include <thread>

#include "window_fixture.h"

using namespace lirenza;
using Kind = MidiNoteEvent::Kind;

namespace {

// Delivers from a thread of its own, as a sequencer's reader does.
struct FakeMidiSource : MidiNoteSource {
  explicit FakeMidiSource(bool works) : works(works) {}
  bool Listen(std::function<void(const MidiNoteEvent&)> to) override {
    std::lock_guard lock(mutex);
    return deliver = works ? std::move(to) : nullptr, works;
  }
  void StopListening() override {
    std::lock_guard lock(mutex);
    deliver = nullptr;
  }
  std::string Problem() const override { return works ? "" : "この機械ではMIDIを聞けません。"; }
  void Send(const std::vector<MidiNoteEvent>& events) {
    std::thread([&] {
      std::lock_guard lock(mutex);
      for (const MidiNoteEvent& e : events) deliver ? deliver(e) : void();
    }).join();
  }
  const bool works;
  std::mutex mutex;
  std::function<void(const MidiNoteEvent&)> deliver;
};

// Warnings that tell the fake source's problem, each message passed on as before.
int problemsTold = 0;
QtMessageHandler passOn = nullptr;
void CountProblems(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  problemsTold += type == QtWarningMsg && message == QString::fromStdString(FakeMidiSource(false).Problem());
  passOn(type, context, message);
}

}  // namespace

class MidiKeyboardTest : public testing::WindowTest {
  Q_OBJECT

  std::shared_ptr<FakeMidiSource> source;

  void MakeWindowWith(std::shared_ptr<FakeMidiSource> midi) {
    window.reset();
    source = std::move(midi);
    sound = std::make_unique<testing::FakeSound>();
    window::WindowServices services;
    services.ports = sound->ports, services.clock = clock = std::make_shared<testing::FakeClock>();
    services.dialogs = dialogs = std::make_shared<testing::FakeDialogs>();
    services.closeQuestion = closeQuestion = std::make_shared<testing::FakeCloseQuestion>();
    services.midiNotes = source;
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

 private slots:
  void init() { MakeWindowWith(std::make_shared<FakeMidiSource>(true)); }
  void cleanup() { window.reset(); }

  // What a note does with the tuning, the hand and the fingerboard is the notes' own
  // business; here, that the window gives them its tuning and hand position, and that
  // nothing is left sounding, nor listened to, once the window closes.
  void aNoteSoundsItsKeysPitchAndShowsItsFingerUntilTheWindowCloses() {
    window->State().handPosition = 2;  // fifth position: A5 on the A string, not the E string
    Play({{Kind::NoteOn, 81, 37}, {Kind::NoteOn, 81, 0}});
    const std::string sounded = "player0 " + testing::PitchText(window->State().tuning.pitches[81]);
    QCOMPARE(sound->log, (testing::Log{"G 2/12", sounded + " 37", "GF 2/12", sounded + " 0"}));

    Play({{Kind::NoteOn, 72, 80}, {Kind::NoteOn, 76, 80}});
    window.reset();
    QVERIFY(sound->players[0].StillSounding().empty());
    QVERIFY2(!source->deliver, "the window still listens after it closed");
  }

  void aMachineWithoutMidiSaysSoOnceAndRunsOn_data() {
    QTest::addColumn<int>("sourceKind");  // 0 none, 1 working, 2 failing
    QTest::newRow("no source") << 0;
    QTest::newRow("a working source") << 1;
    QTest::newRow("a failing source") << 2;
  }
  void aMachineWithoutMidiSaysSoOnceAndRunsOn() {
    QFETCH(int, sourceKind);
    problemsTold = 0, passOn = qInstallMessageHandler(CountProblems);
    MakeWindowWith(sourceKind == 0 ? nullptr : std::make_shared<FakeMidiSource>(sourceKind == 1));
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    qInstallMessageHandler(passOn);
    QCOMPARE(problemsTold, sourceKind == 2 ? 1 : 0);
    QVERIFY2(dialogs->told.isEmpty(), "a dialog at every start");
    if (source) Play({{Kind::NoteOn, 62, 70}});
    QCOMPARE(sound->players[0].notes.size(), std::size_t(sourceKind == 1));
  }
};

QTEST_MAIN(MidiKeyboardTest)
#include "midi_keyboard_test.moc"
