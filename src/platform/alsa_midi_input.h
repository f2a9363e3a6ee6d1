#pragma once
// Notes from the ALSA sequencer: the program shows one input port, "Lirenza", that
// any keyboard or MIDI program can be connected to, and connects to the keyboard by
// itself when exactly one is plugged in. A thread of its own reads the port and
// delivers each note as it comes.
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ports/midi_input.h"

struct snd_seq_event;
typedef struct _snd_seq snd_seq_t;

namespace lirenza {

// A port of some sequencer client, as the sequencer describes it (capability and type
// in the sequencer's own bits).
struct SequencerPort {
  int client = 0;
  int port = 0;
  std::string clientName;
  unsigned capability = 0;
  unsigned type = 0;
};

// The port of the one keyboard among ports, if there is exactly one: a port others may
// read from that speaks MIDI, of a client other than the sequencer's own, its "Midi
// Through" and ownClient. A keyboard with several such ports counts once, by its first.
std::optional<SequencerPort> TheOneKeyboard(const std::vector<SequencerPort>& ports, int ownClient);

// Turns what arrives at our port into notes. It follows which ports are connected to
// us, so that a keyboard unplugged or a program ended while a key was down ends the
// notes: the release will never come.
class SequencerNoteReader {
 public:
  SequencerNoteReader(int ownClient, int ownPort) : own_{ownClient, ownPort} {}
  std::optional<MidiNoteEvent> Read(const snd_seq_event& event);

 private:
  std::pair<int, int> own_;
  std::set<std::pair<int, int>> senders_;
};

class AlsaMidiInput : public MidiNoteSource {
 public:
  AlsaMidiInput() = default;
  ~AlsaMidiInput() override;
  AlsaMidiInput(const AlsaMidiInput&) = delete;
  AlsaMidiInput& operator=(const AlsaMidiInput&) = delete;

  bool Listen(std::function<void(const MidiNoteEvent&)> deliver) override;
  void StopListening() override;
  std::string Problem() const override;

  // Where others connect to: the client and port numbers of "Lirenza"; -1 before Listen.
  std::pair<int, int> Address() const { return {client_, port_}; }

 private:
  bool Fail(const std::string& sentence);
  void ConnectTheOneKeyboard();
  void Read();

  snd_seq_t* sequencer_ = nullptr;
  int client_ = -1, port_ = -1;
  int wake_[2] = {-1, -1};  // a byte written to wake_[1] ends the reading thread
  std::function<void(const MidiNoteEvent&)> deliver_;
  std::thread reader_;
  std::string problem_;
};

}  // namespace lirenza
