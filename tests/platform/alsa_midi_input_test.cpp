// MIDI keyboards through the ALSA sequencer: which port is taken for the keyboard, what
// each sequencer event becomes, and a note really sent to the "Lirenza" port.
#include <alsa/asoundlib.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "platform/alsa_midi_input.h"

using namespace lirenza;
using Kind = MidiNoteEvent::Kind;

namespace {
constexpr unsigned kOut = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ, kIn = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;
constexpr unsigned kMidi = SND_SEQ_PORT_TYPE_MIDI_GENERIC;
constexpr int kOwn = 130;

snd_seq_event_t Event(snd_seq_event_type_t type, int a = 0, int b = 0, int c = 0) {
  snd_seq_event_t e{};
  e.type = type;
  auto byte = [](int v) { return static_cast<unsigned char>(v); };
  if (type == SND_SEQ_EVENT_NOTEON || type == SND_SEQ_EVENT_NOTEOFF) snd_seq_ev_set_noteon(&e, 9, a, b), e.type = type;
  if (type == SND_SEQ_EVENT_CONTROLLER) snd_seq_ev_set_controller(&e, 0, a, 0);
  if (type == SND_SEQ_EVENT_PORT_SUBSCRIBED || type == SND_SEQ_EVENT_PORT_UNSUBSCRIBED)
    e.data.connect = {{byte(a), 0}, {byte(b), byte(c)}};  // a sender, to port c of client b
  if (type == SND_SEQ_EVENT_PORT_EXIT || type == SND_SEQ_EVENT_CLIENT_EXIT) e.data.addr = {byte(a), byte(b)};
  return e;
}
}  // namespace

TEST(TheOneKeyboard, IsTakenOnlyWhenThereIsExactlyOne) {
  // What a machine shows besides keyboards: the sequencer's own ports, its through port, ourselves.
  const std::vector<SequencerPort> usual = {{0, 1, "System", kOut, 0}, {14, 0, "Midi Through", kOut | kIn, kMidi},
                                            {kOwn, 0, "Lirenza", kIn | kOut, kMidi}};
  const struct {
    const char* name;
    std::vector<SequencerPort> extra;
    int client, port;  // -1: none taken
  } rows[] = {
      {"nothing plugged in", {}, -1, -1},
      {"a USB keyboard", {{24, 0, "Keystation", kOut | kIn, kMidi | SND_SEQ_PORT_TYPE_HARDWARE}}, 24, 0},
      {"one keyboard of two ports, by its first", {{24, 1, "KB", kOut, kMidi}, {24, 0, "KB", kOut, SND_SEQ_PORT_TYPE_HARDWARE}}, 24, 0},
      {"two keyboards: the user chooses", {{24, 0, "A", kOut, kMidi}, {28, 0, "B", kOut, kMidi}}, -1, -1},
      {"a synthesizer only takes notes", {{128, 0, "FLUID Synth", kIn, kMidi}}, -1, -1},
      {"a port that forbids connections", {{24, 0, "KB", kOut | SND_SEQ_PORT_CAP_NO_EXPORT, kMidi}}, -1, -1},
      {"a port that speaks no MIDI", {{24, 0, "Timer", kOut, SND_SEQ_PORT_TYPE_APPLICATION}}, -1, -1},
  };
  for (const auto& r : rows) {
    std::vector<SequencerPort> ports = usual;
    ports.insert(ports.end(), r.extra.begin(), r.extra.end());
    const auto taken = TheOneKeyboard(ports, kOwn);
    EXPECT_EQ(taken ? std::pair(taken->client, taken->port) : std::pair(-1, -1), std::pair(r.client, r.port)) << r.name;
  }
}

// Notes on any channel, the two silencing controllers, and a sender leaving: a keyboard
// unplugged mid-note never sends the release. The sequencer tells a disconnection twice.
TEST(SequencerNoteReader, NotesSilencersAndDepartingSenders) {
  const std::optional<MidiNoteEvent> none, allOff = MidiNoteEvent{Kind::AllNotesOff};
  const std::pair<snd_seq_event_t, std::optional<MidiNoteEvent>> steps[] = {
      {Event(SND_SEQ_EVENT_NOTEON, 60, 90), MidiNoteEvent{Kind::NoteOn, 60, 90}},
      {Event(SND_SEQ_EVENT_NOTEON, 60, 0), MidiNoteEvent{Kind::NoteOff, 60, 0}},
      {Event(SND_SEQ_EVENT_NOTEOFF, 127, 64), MidiNoteEvent{Kind::NoteOff, 127, 0}},
      {Event(SND_SEQ_EVENT_CONTROLLER, 7), none},
      {Event(SND_SEQ_EVENT_CONTROLLER, 120), allOff},
      {Event(SND_SEQ_EVENT_CONTROLLER, 123), allOff},
      {Event(SND_SEQ_EVENT_PORT_SUBSCRIBED, 20, kOwn, 0), none},
      {Event(SND_SEQ_EVENT_PORT_UNSUBSCRIBED, 20, 60, 0), none},  // not from our port
      {Event(SND_SEQ_EVENT_PORT_UNSUBSCRIBED, 20, kOwn, 0), allOff},
      {Event(SND_SEQ_EVENT_PORT_UNSUBSCRIBED, 20, kOwn, 0), none},
      {Event(SND_SEQ_EVENT_PORT_SUBSCRIBED, 24, kOwn, 0), none},
      {Event(SND_SEQ_EVENT_PORT_SUBSCRIBED, 28, kOwn, 0), none},
      {Event(SND_SEQ_EVENT_CLIENT_EXIT, 60), none},  // never connected to us
      {Event(SND_SEQ_EVENT_PORT_EXIT, 24, 1), none},
      {Event(SND_SEQ_EVENT_PORT_EXIT, 24, 0), allOff},
      {Event(SND_SEQ_EVENT_PORT_EXIT, 24, 0), none},
      {Event(SND_SEQ_EVENT_CLIENT_EXIT, 28), allOff},
  };
  SequencerNoteReader reader(kOwn, 0);
  int n = 0;
  for (const auto& [event, expected] : steps) EXPECT_EQ(reader.Read(event), expected) << "step " << n++;
}

// A second sequencer client, as a keyboard program would, connects to "Lirenza" and plays.
TEST(AlsaMidiInput, ANoteSentToTheLirenzaPortArrives) {
  snd_seq_t* keyboard = nullptr;
  if (snd_seq_open(&keyboard, "default", SND_SEQ_OPEN_DUPLEX, 0) < 0)
    GTEST_SKIP() << "no ALSA sequencer on this machine (/dev/snd/seq cannot be opened)";
  std::mutex mutex;
  std::condition_variable arrived;
  std::vector<MidiNoteEvent> got;
  {
    AlsaMidiInput input;
    ASSERT_TRUE(input.Listen([&](const MidiNoteEvent& e) {
      std::lock_guard lock(mutex);
      got.push_back(e);
      arrived.notify_all();
    })) << input.Problem();
    const auto [client, port] = input.Address();
    snd_seq_client_info_t* clientInfo;
    snd_seq_port_info_t* portInfo;
    snd_seq_client_info_alloca(&clientInfo);
    snd_seq_port_info_alloca(&portInfo);
    ASSERT_EQ(snd_seq_get_any_client_info(keyboard, client, clientInfo), 0);
    ASSERT_EQ(snd_seq_get_any_port_info(keyboard, client, port, portInfo), 0);
    EXPECT_STREQ(snd_seq_client_info_get_name(clientInfo), "Lirenza");
    EXPECT_STREQ(snd_seq_port_info_get_name(portInfo), "Lirenza");

    const int out = snd_seq_create_simple_port(keyboard, "keys", kOut, SND_SEQ_PORT_TYPE_APPLICATION);
    ASSERT_GE(out, 0);
    ASSERT_EQ(snd_seq_connect_to(keyboard, out, client, port), 0);
    for (snd_seq_event_t e : {Event(SND_SEQ_EVENT_NOTEON, 64, 90), Event(SND_SEQ_EVENT_NOTEON, 64, 0),
                              Event(SND_SEQ_EVENT_CONTROLLER, 123)}) {
      snd_seq_ev_set_source(&e, out);
      snd_seq_ev_set_subs(&e);
      snd_seq_ev_set_direct(&e);
      ASSERT_GE(snd_seq_event_output_direct(keyboard, &e), 0);
    }
    snd_seq_disconnect_to(keyboard, out, client, port);
    std::unique_lock lock(mutex);
    arrived.wait_for(lock, std::chrono::seconds(5), [&] { return got.size() >= 4; });
  }  // the reading thread must end here, or the test hangs
  snd_seq_close(keyboard);
  const std::vector<MidiNoteEvent> expected = {
      {Kind::NoteOn, 64, 90}, {Kind::NoteOff, 64, 0}, {Kind::AllNotesOff}, {Kind::AllNotesOff}};
  EXPECT_EQ(got, expected) << "the last one: the keyboard disconnected";
}

TEST(AlsaMidiInput, WithoutASequencerSaysSoInOneSentence) {
  snd_seq_t* probe = nullptr;
  if (snd_seq_open(&probe, "default", SND_SEQ_OPEN_DUPLEX, 0) >= 0) {
    snd_seq_close(probe);
    GTEST_SKIP() << "this machine has an ALSA sequencer";
  }
  AlsaMidiInput input;
  EXPECT_FALSE(input.Listen([](const MidiNoteEvent&) {}));
  const std::string problem = input.Problem(), stop = "。";
  EXPECT_TRUE(problem.find("MIDI") != std::string::npos && problem.find(stop) == problem.size() - stop.size()) << problem;
}
