// The MIDI writer: byte-exact frame, chord and rest timing, and a file any sequencer
// can read whatever the staff holds. The strict reader checks every byte, so a data
// byte of 0x80 or more, a wrong length or a stray status shows even where no golden
// bytes exist.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

#include "files/midi_writer.h"
#include "files/strict_midi_reader.h"
#include "score/note.h"
#include "score/note_tables.h"
#include "violin/instrument_table.h"
#include "violin/tempo_table.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {

Note NoteAt(int left, const char* token) {
  Note n;
  FillFromToken(n, token);
  n.left = left;
  return n;
}

std::vector<Note> Staff(std::initializer_list<Note> notes) {
  std::vector<Note> staff(1);
  staff.insert(staff.end(), notes);
  return staff;
}

const std::string kTempo120 = "00FF510307A120";

}  // namespace

TEST(MidiWriter, TheOneNoteExampleIsByteExact) {
  const Bytes expected = {
      0x4D, 0x54, 0x68, 0x64, 0x00, 0x00, 0x00, 0x06, 0x00, 0x00, 0x00, 0x01, 0x01, 0xE0,
      0x4D, 0x54, 0x72, 0x6B, 0x00, 0x00, 0x00, 0x39,
      0x00, 0xF0, 0x05, 0x7E, 0x7F, 0x09, 0x01, 0xF7,
      0x81, 0x70, 0xFF, 0x01, 0x14, 0x63, 0x72, 0x65, 0x61, 0x74, 0x65, 0x64, 0x20, 0x62, 0x79,
      0x20, 0x42, 0x65, 0x6C, 0x72, 0x6F, 0x73, 0x69, 0x74, 0x65,
      0x00, 0xFF, 0x51, 0x03, 0x07, 0xA1, 0x20,
      0x00, 0xC0, 0x28,
      0x83, 0x60, 0x90, 0x3C, 0x4B,
      0x83, 0x48, 0x90, 0x3C, 0x00,
      0x00, 0xFF, 0x2F, 0x00};
  int leftOut = -1;
  const Bytes file = MidiFileBytes(Staff({NoteAt(136, "C494")}), 0.95, TempoForSlider(7).tempo, 41, &leftOut);
  EXPECT_EQ(file, expected);
  EXPECT_EQ(leftOut, 0);
  EXPECT_TRUE(Decode(file).ok) << Decode(file).error;
}

TEST(MidiWriter, AnEmptyStaffIsTheFrameAlone) {
  const Bytes file = MidiFileBytes(Staff({}), 0.95, kTempo120, 41);
  EXPECT_EQ(file.size(), 69u);
  Decoded d = Decode(file);
  EXPECT_TRUE(d.ok) << d.error;
  EXPECT_TRUE(d.notes.empty());
  EXPECT_EQ(d.tempo, 500000);
  EXPECT_EQ(d.program, 40);
}

TEST(VariableLengthQuantity, RoundTripsInTheFewestBytes) {
  std::mt19937 rng(3);
  std::vector<long long> values = {0, 127, 128, 240, 16383, 16384, 2097151, 2097152, 0x0FFFFFFF};
  for (int k = 0; k < 2000; ++k) values.push_back(rng() % (1u << (1 + rng() % 28)));
  for (long long v : values) {
    const Bytes bytes = VariableLengthQuantity(v);
    const std::size_t fewest = v < (1 << 7) ? 1 : v < (1 << 14) ? 2 : v < (1 << 21) ? 3 : 4;
    ASSERT_EQ(bytes.size(), fewest) << v;
    long long back = 0;
    for (std::size_t k = 0; k < bytes.size(); ++k) {
      // Every byte but the last says another follows.
      ASSERT_EQ((bytes[k] & 0x80) != 0, k + 1 < bytes.size()) << v;
      back = (back << 7) | (bytes[k] & 0x7F);
    }
    ASSERT_EQ(back, v);
  }
  EXPECT_EQ(VariableLengthQuantity(1920), (Bytes{0x8F, 0x00}));
}

TEST(MidiEvents, TimingComesFromDigitsNotFromDistance) {
  using Event = std::tuple<long long, int, int>;  // tick, key, velocity, in file order
  struct Case {
    const char* name;
    std::vector<Note> staff;
    double gate;
    std::vector<Event> events;
  } cases[] = {
      {"first note one quarter after the origin", Staff({NoteAt(136, "C494")}), 0.95, {{480, 60, 75}, {936, 60, 0}}},
      {"first note at the origin starts at 0", Staff({NoteAt(120, "C494")}), 0.85, {{0, 60, 75}, {408, 60, 0}}},
      {"far apart", Staff({NoteAt(136, "C494"), NoteAt(700, "D494")}), 0.95,
       {{480, 60, 75}, {936, 60, 0}, {960, 62, 75}, {1416, 62, 0}}},
      {"side by side", Staff({NoteAt(136, "C494"), NoteAt(144, "D494")}), 0.95,
       {{480, 60, 75}, {936, 60, 0}, {960, 62, 75}, {1416, 62, 0}}},
      // A chord: both start together; the clock moves by the note sorted last (the
      // shorter), and the longer one rings on past the next column.
      {"chord", Staff({NoteAt(136, "C492"), NoteAt(136, "E498"), NoteAt(200, "G494")}), 0.75,
       {{480, 60, 75}, {480, 64, 75}, {660, 64, 0}, {720, 67, 75}, {1080, 67, 0}, {1200, 60, 0}}},
      {"chord entered short first", Staff({NoteAt(136, "E498"), NoteAt(136, "C492"), NoteAt(200, "G494")}), 0.75,
       {{480, 60, 75}, {480, 64, 75}, {660, 64, 0}, {720, 67, 75}, {1080, 67, 0}, {1200, 60, 0}}},
      {"chord of equal values keeps entry order", Staff({NoteAt(136, "E494"), NoteAt(136, "C494")}), 0.95,
       {{480, 64, 75}, {480, 60, 75}, {936, 64, 0}, {936, 60, 0}}},
      {"a rest keeps its place in time silently", Staff({NoteAt(136, "0004"), NoteAt(168, "C494")}), 0.95,
       {{480, 60, 0}, {936, 60, 0}, {960, 60, 75}, {1416, 60, 0}}},
      {"a whole, a sixteenth triplet and a dotted sixteenth",
       Staff({NoteAt(136, "C490"), NoteAt(168, "D49C"), NoteAt(200, "E499")}), 1.0,
       {{480, 60, 75}, {2400, 60, 0}, {2400, 62, 75}, {2480, 62, 0}, {2480, 64, 75}, {2660, 64, 0}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto events = MidiEvents(c.staff, c.gate);
    std::vector<Event> got;
    for (std::size_t i = 1; i < events.size(); ++i)
      got.emplace_back(events[i].time, events[i].pitch, events[i].velocity);
    EXPECT_EQ(got, c.events);
  }
}

TEST(MidiEvents, ANoteWithoutAMidiKeyIsLeftOutButKeepsItsTime) {
  auto Rest = [](int left, const char* token, int pitch) {
    Note n = NoteAt(left, token);
    n.pitch = pitch;
    return n;
  };
  for (int damaged : {200, 128, -1, INT_MIN, INT_MAX}) {
    SCOPED_TRACE(damaged);
    Note bad = Rest(168, "D492", damaged);
    int leftOut = -1;
    const auto events = MidiEvents(
        Staff({NoteAt(136, "C494"), bad, NoteAt(200, "E494"), Rest(232, "0004", damaged), NoteAt(264, "F494")}), 0.95,
        &leftOut);
    EXPECT_EQ(leftOut, 1) << "a silent rest needs no warning";
    // The same score with rests of the same lengths in their place, on key 0, which no
    // other note uses: leaving those events out must give exactly the same file.
    const auto asRests = MidiEvents(
        Staff({NoteAt(136, "C494"), Rest(168, "0002", 0), NoteAt(200, "E494"), Rest(232, "0004", 0), NoteAt(264, "F494")}),
        0.95);
    std::vector<std::tuple<long long, int, int>> got, want;
    for (std::size_t i = 1; i < events.size(); ++i)
      got.emplace_back(events[i].time, events[i].pitch, events[i].velocity);
    for (std::size_t i = 1; i < asRests.size(); ++i)
      if (asRests[i].pitch != 0) want.emplace_back(asRests[i].time, asRests[i].pitch, asRests[i].velocity);
    EXPECT_EQ(got, want);
    EXPECT_EQ(got.size(), 6u);
  }
}

TEST(MidiWriter, EveryInstrumentWritesItsProgramAsADataByte) {
  std::vector<int> instruments = {0, -1, 129, 200, 256, 257, 16385, INT_MIN, INT_MAX};
  for (const auto& entry : AllInstruments()) instruments.push_back(entry.number);
  ASSERT_GE(instruments.size(), 235u);
  for (int inst : instruments) {
    Decoded d = Decode(MidiFileBytes(Staff({NoteAt(136, "C494")}), 0.95, kTempo120, inst));
    ASSERT_TRUE(d.ok) << inst << ": " << d.error;
    // The byte a synthesizer selects for the number, and the byte the file always had
    // wherever that was a valid data byte.
    if (inst >= 1 && inst <= 1 << 20) EXPECT_EQ(d.program, BankProgramOf(inst).program) << inst;
    const int oldByte = static_cast<int>((static_cast<unsigned>(inst) - 1) & 0xFF);
    if (oldByte < 0x80) EXPECT_EQ(d.program, oldByte) << inst;
  }
}

TEST(MidiWriter, DamagedScoresAlwaysGiveAValidFile) {
  std::mt19937 rng(99);
  const char* hex = "0123456789ABCDEF";
  const std::vector<std::string> oddDigits = {"", "G", "10", "FF", "7FFFFFFFFFFFFFFF", "-1", " ", "\xFF"};
  const std::vector<int> oddInts = {INT_MIN, INT_MAX, -1, 128, 200, 255, 256, 1 << 20};
  const double gates[] = {0.75, 0.85, 0.95, 0, -1, 1e308, -1e308, std::numeric_limits<double>::quiet_NaN(),
                          std::numeric_limits<double>::infinity()};
  auto anyInt = [&](int usual) { return rng() % 6 ? usual : oddInts[rng() % oddInts.size()]; };
  auto anyDigit = [&] { return rng() % 6 ? std::string(1, hex[rng() % 16]) : oddDigits[rng() % oddDigits.size()]; };
  long long outOfRangeSeen = 0;
  for (int round = 0; round < 10000; ++round) {
    std::vector<Note> staff(1);
    staff[0].left = anyInt(120);
    staff[0].durationDigit = anyDigit();
    const int count = static_cast<int>(rng() % 40);
    int outOfRange = 0;
    for (int i = 0; i < count; ++i) {
      Note n;
      n.left = anyInt(120 + 8 * static_cast<int>(rng() % 200));
      n.pitch = anyInt(static_cast<int>(rng() % 128));
      n.velocityDigit = anyDigit();
      n.durationDigit = anyDigit();
      outOfRange += (n.pitch < 0 || n.pitch > 127) && !n.IsRest();
      staff.push_back(n);
    }
    const double gate = gates[rng() % (rng() % 4 ? 3 : std::size(gates))];
    const int inst = anyInt(1 + static_cast<int>(rng() % 235));
    int leftOut = -1;
    const Bytes file = MidiFileBytes(staff, gate, TempoForSlider(static_cast<int>(rng() % 16)).tempo, inst, &leftOut);
    Decoded d = Decode(file);
    ASSERT_TRUE(d.ok) << "round " << round << ": " << d.error;
    ASSERT_EQ(leftOut, outOfRange) << round;
    outOfRangeSeen += outOfRange;
    // Every note with a key gives one note-on and one ending event, at the writer's times.
    auto events = MidiEvents(staff, gate);
    ASSERT_EQ(d.notes.size(), events.size() - 1) << round;
    for (std::size_t i = 0; i < d.notes.size(); ++i) {
      ASSERT_EQ(d.notes[i].tick, events[i + 1].time) << round;
      ASSERT_EQ(d.notes[i].key, events[i + 1].pitch) << round;
    }
    int sounding = 0, ons = 0;
    for (int i = 1; i <= count; ++i)
      sounding += staff[i].pitch >= 0 && staff[i].pitch <= 127 && VelocityOfDigit(staff[i].velocityDigit) > 0;
    for (const auto& n : d.notes) ons += n.velocity > 0;
    ASSERT_EQ(ons, sounding) << round;
  }
  EXPECT_GT(outOfRangeSeen, 1000) << "the damaged cases were really tried";
}
