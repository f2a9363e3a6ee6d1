// The MIDI writer: byte-exact frame, chord and rest timing, and a file the strict reader
// accepts whatever the staff holds.
#include <gtest/gtest.h>

#include <optional>
#include <tuple>
#include <vector>

#include "files/midi_writer.h"
#include "files/strict_midi_reader.h"
#include "score/note.h"
#include "violin/tempo_table.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {
Note NoteAt(int left, const char* token, std::optional<int> pitch = {}) {
  Note n;
  FillFromToken(n, token);
  n.left = left;
  n.pitch = pitch.value_or(n.pitch);
  return n;
}
std::vector<Note> Staff(std::initializer_list<Note> notes) {
  std::vector<Note> staff(1);
  staff.insert(staff.end(), notes);
  return staff;
}
using Event = std::tuple<long long, int, int>;  // tick, key, velocity, in file order
std::vector<Event> EventsOf(const std::vector<Note>& staff, double gate) {
  const auto events = MidiEvents(staff, gate);
  std::vector<Event> got;
  for (std::size_t i = 1; i < events.size(); ++i) got.emplace_back(events[i].time, events[i].pitch, events[i].velocity);
  return got;
}
const std::string kTempo120 = "00FF510307A120";
}  // namespace

TEST(MidiWriter, TheOneNoteFileAndTheEmptyFileAreByteExact) {
  const Bytes expected = {
      0x4D, 0x54, 0x68, 0x64, 0x00, 0x00, 0x00, 0x06, 0x00, 0x00, 0x00, 0x01, 0x01, 0xE0, 0x4D, 0x54, 0x72, 0x6B,
      0x00, 0x00, 0x00, 0x39, 0x00, 0xF0, 0x05, 0x7E, 0x7F, 0x09, 0x01, 0xF7, 0x81, 0x70, 0xFF, 0x01, 0x14, 0x63,
      0x72, 0x65, 0x61, 0x74, 0x65, 0x64, 0x20, 0x62, 0x79, 0x20, 0x42, 0x65, 0x6C, 0x72, 0x6F, 0x73, 0x69, 0x74,
      0x65, 0x00, 0xFF, 0x51, 0x03, 0x07, 0xA1, 0x20, 0x00, 0xC0, 0x28, 0x83, 0x60, 0x90, 0x3C, 0x4B, 0x83, 0x48,
      0x90, 0x3C, 0x00, 0x00, 0xFF, 0x2F, 0x00};
  int leftOut = -1;
  EXPECT_EQ(MidiFileBytes(Staff({NoteAt(136, "C494")}), 0.95, TempoForSlider(7).tempo, 41, &leftOut), expected);
  EXPECT_EQ(leftOut, 0);
  // An empty staff is the same frame without the two note events.
  Bytes empty(expected.begin(), expected.begin() + 65);
  empty[21] = 0x2F;
  empty.insert(empty.end(), {0x00, 0xFF, 0x2F, 0x00});
  EXPECT_EQ(MidiFileBytes(Staff({}), 0.95, kTempo120, 41), empty);
  EXPECT_EQ(empty.size(), 69u);
}

TEST(MidiEvents, TimingComesFromDigitsNotFromDistance) {
  const std::vector<Event> twoQuarters = {{480, 60, 75}, {936, 60, 0}, {960, 62, 75}, {1416, 62, 0}};
  struct Case {
    const char* name;
    std::vector<Note> staff;
    double gate;
    std::vector<Event> events;
  } cases[] = {
      {"first note at the origin", Staff({NoteAt(120, "C494")}), 0.85, {{0, 60, 75}, {408, 60, 0}}},
      {"far apart", Staff({NoteAt(136, "C494"), NoteAt(700, "D494")}), 0.95, twoQuarters},
      {"side by side", Staff({NoteAt(136, "C494"), NoteAt(144, "D494")}), 0.95, twoQuarters},
      // A chord starts together; the clock moves by its shorter note, the longer rings on.
      {"chord", Staff({NoteAt(136, "C492"), NoteAt(136, "E498"), NoteAt(200, "G494")}), 0.75,
       {{480, 60, 75}, {480, 64, 75}, {660, 64, 0}, {720, 67, 75}, {1080, 67, 0}, {1200, 60, 0}}},
      {"chord entered short first", Staff({NoteAt(136, "E498"), NoteAt(136, "C492"), NoteAt(200, "G494")}), 0.75,
       {{480, 60, 75}, {480, 64, 75}, {660, 64, 0}, {720, 67, 75}, {1080, 67, 0}, {1200, 60, 0}}},
      {"equal values keep entry order", Staff({NoteAt(136, "E494"), NoteAt(136, "C494")}), 0.95,
       {{480, 64, 75}, {480, 60, 75}, {936, 64, 0}, {936, 60, 0}}},
      {"a note without a MIDI key is left out but keeps its time",
       Staff({NoteAt(136, "C494"), NoteAt(168, "D492", 200), NoteAt(200, "E494")}), 0.95,
       {{480, 60, 75}, {936, 60, 0}, {1920, 64, 75}, {2376, 64, 0}}},
      {"a rest keeps its time silently", Staff({NoteAt(136, "0004"), NoteAt(168, "C494")}), 0.95,
       {{480, 60, 0}, {936, 60, 0}, {960, 60, 75}, {1416, 60, 0}}},
      {"whole, sixteenth triplet, dotted sixteenth",
       Staff({NoteAt(136, "C490"), NoteAt(168, "D49C"), NoteAt(200, "E499")}), 1.0,
       {{480, 60, 75}, {2400, 60, 0}, {2400, 62, 75}, {2480, 62, 0}, {2480, 64, 75}, {2660, 64, 0}}},
  };
  for (const auto& c : cases) EXPECT_EQ(EventsOf(c.staff, c.gate), c.events) << c.name;
}
