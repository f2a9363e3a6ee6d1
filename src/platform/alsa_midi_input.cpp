#include "platform/alsa_midi_input.h"

#include <alsa/asoundlib.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <map>

namespace lirenza {
namespace {

constexpr char kName[] = "Lirenza";
constexpr char kNoSequencer[] =
    "MIDIシーケンサー（/dev/snd/seq）を開けないため、MIDIキーボードでは弾けません。";
constexpr char kNoPort[] = "MIDIの入力ポートを作れないので、MIDIキーボードでは弾けません。";

// libasound writes its complaints to stderr on its own; what matters reaches the user
// through Problem().
void IgnoreAlsaError(const char*, int, const char*, int, const char*, ...) {}

constexpr unsigned kReadable = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
constexpr unsigned kAllSoundOff = 120, kAllNotesOff = 123;  // controller numbers

std::vector<SequencerPort> AllPorts(snd_seq_t* sequencer) {
  std::vector<SequencerPort> ports;
  snd_seq_client_info_t* client;
  snd_seq_port_info_t* port;
  snd_seq_client_info_alloca(&client);
  snd_seq_port_info_alloca(&port);
  snd_seq_client_info_set_client(client, -1);
  while (snd_seq_query_next_client(sequencer, client) >= 0) {
    const int id = snd_seq_client_info_get_client(client);
    snd_seq_port_info_set_client(port, id);
    snd_seq_port_info_set_port(port, -1);
    while (snd_seq_query_next_port(sequencer, port) >= 0)
      ports.push_back({id, snd_seq_port_info_get_port(port), snd_seq_client_info_get_name(client),
                       snd_seq_port_info_get_capability(port), snd_seq_port_info_get_type(port)});
  }
  return ports;
}

}  // namespace

std::optional<SequencerPort> TheOneKeyboard(const std::vector<SequencerPort>& ports, int ownClient) {
  std::map<int, SequencerPort> firstPortOfClient;
  for (const SequencerPort& p : ports) {
    const bool keyboardLike = (p.capability & kReadable) == kReadable && !(p.capability & SND_SEQ_PORT_CAP_NO_EXPORT) &&
                              (p.type & (SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_HARDWARE));
    if (!keyboardLike || p.client == SND_SEQ_CLIENT_SYSTEM || p.client == ownClient || p.clientName == "Midi Through")
      continue;
    auto [at, added] = firstPortOfClient.try_emplace(p.client, p);
    if (!added && p.port < at->second.port) at->second = p;
  }
  if (firstPortOfClient.size() != 1) return std::nullopt;
  return firstPortOfClient.begin()->second;
}

std::optional<MidiNoteEvent> SequencerNoteReader::Read(const snd_seq_event& event) {
  using Kind = MidiNoteEvent::Kind;
  const auto& connect = event.data.connect;
  switch (event.type) {
    case SND_SEQ_EVENT_NOTEON:
      if (event.data.note.velocity == 0) return MidiNoteEvent{Kind::NoteOff, event.data.note.note, 0};
      return MidiNoteEvent{Kind::NoteOn, event.data.note.note, event.data.note.velocity};
    case SND_SEQ_EVENT_NOTEOFF:
      return MidiNoteEvent{Kind::NoteOff, event.data.note.note, 0};
    case SND_SEQ_EVENT_CONTROLLER:
      if (event.data.control.param == kAllSoundOff || event.data.control.param == kAllNotesOff)
        return MidiNoteEvent{Kind::AllNotesOff};
      return std::nullopt;
    case SND_SEQ_EVENT_PORT_SUBSCRIBED:
      if (std::pair<int, int>(connect.dest.client, connect.dest.port) == own_)
        senders_.insert({connect.sender.client, connect.sender.port});
      return std::nullopt;
    case SND_SEQ_EVENT_PORT_UNSUBSCRIBED:
      // Told twice, to our port and to everyone who listens to the announcements:
      // the notes end once.
      if (std::pair<int, int>(connect.dest.client, connect.dest.port) != own_ ||
          !senders_.erase({connect.sender.client, connect.sender.port}))
        return std::nullopt;
      return MidiNoteEvent{Kind::AllNotesOff};
    case SND_SEQ_EVENT_PORT_EXIT:
      if (!senders_.erase({event.data.addr.client, event.data.addr.port})) return std::nullopt;
      return MidiNoteEvent{Kind::AllNotesOff};
    case SND_SEQ_EVENT_CLIENT_EXIT:
      if (!std::erase_if(senders_, [&](const auto& s) { return s.first == event.data.addr.client; }))
        return std::nullopt;
      return MidiNoteEvent{Kind::AllNotesOff};
    default:
      return std::nullopt;
  }
}

AlsaMidiInput::~AlsaMidiInput() { StopListening(); }

std::string AlsaMidiInput::Problem() const { return problem_; }

bool AlsaMidiInput::Fail(const std::string& sentence) {
  problem_ = sentence;
  if (sequencer_) snd_seq_close(sequencer_);
  sequencer_ = nullptr;
  client_ = port_ = -1;
  return false;
}

bool AlsaMidiInput::Listen(std::function<void(const MidiNoteEvent&)> deliver) {
  if (sequencer_) return true;  // already listening
  snd_lib_error_set_handler(IgnoreAlsaError);
  if (snd_seq_open(&sequencer_, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK) < 0) {
    sequencer_ = nullptr;
    return Fail(kNoSequencer);
  }
  snd_seq_set_client_name(sequencer_, kName);
  client_ = snd_seq_client_id(sequencer_);
  port_ = snd_seq_create_simple_port(sequencer_, kName, SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE,
                                     SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
  if (client_ < 0 || port_ < 0 || pipe2(wake_, O_CLOEXEC | O_NONBLOCK) != 0) return Fail(kNoPort);
  // The sequencer's announcements tell when a port connected to ours goes away. Without
  // them a note would hang only if its keyboard is unplugged mid-note: not worth failing.
  snd_seq_connect_from(sequencer_, port_, SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE);
  ConnectTheOneKeyboard();
  problem_.clear();
  deliver_ = std::move(deliver);
  reader_ = std::thread(&AlsaMidiInput::Read, this);
  return true;
}

void AlsaMidiInput::ConnectTheOneKeyboard() {
  if (auto keyboard = TheOneKeyboard(AllPorts(sequencer_), client_))
    snd_seq_connect_from(sequencer_, port_, keyboard->client, keyboard->port);
}

void AlsaMidiInput::StopListening() {
  if (reader_.joinable()) {
    const char wake = 0;
    while (write(wake_[1], &wake, 1) < 0 && errno == EINTR) {
    }
    reader_.join();
  }
  for (int& fd : wake_)
    if (fd >= 0) close(fd), fd = -1;
  if (sequencer_) snd_seq_close(sequencer_);
  sequencer_ = nullptr;
  deliver_ = nullptr;
}

void AlsaMidiInput::Read() {
  const int count = snd_seq_poll_descriptors_count(sequencer_, POLLIN);
  std::vector<pollfd> fds(count + 1);
  snd_seq_poll_descriptors(sequencer_, fds.data(), count, POLLIN);
  fds[count] = {wake_[0], POLLIN, 0};
  SequencerNoteReader reader(client_, port_);
  for (;;) {
    snd_seq_event_t* event = nullptr;
    int got;
    // -ENOSPC: the input queue overran and events were lost; what follows is still good.
    while ((got = snd_seq_event_input(sequencer_, &event)) >= 0 || got == -ENOSPC)
      if (got >= 0 && event)
        if (auto note = reader.Read(*event)) deliver_(*note);
    bool broken = poll(fds.data(), fds.size(), -1) < 0 && errno != EINTR;
    if (fds[count].revents) return;
    for (int i = 0; i < count; ++i) broken |= (fds[i].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    if (broken) {
      // The sequencer went away under us: nothing will end the notes it started.
      deliver_(MidiNoteEvent{MidiNoteEvent::Kind::AllNotesOff});
      return;
    }
  }
}

}  // namespace lirenza
