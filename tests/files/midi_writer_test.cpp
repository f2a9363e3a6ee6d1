// The MIDI writer: byte-exact frame, delta encoding, chord and rest timing. A small
// reader written here from the file format decodes what the writer made, so framing
// errors show even where no golden bytes exist.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "files/midi_writer.h"
#include "score/note_cv.h"
#include "score/note_tables.h"
#include "violin/tempo_table.h"

using namespace lirenza;
using Bytes = std::vector<std::uint8_t>;

namespace {

NoteCV Note(int left, const char* token) {
  NoteCV n;
  FillFromToken(n, token);
  n.left = left;
  return n;
}

std::vector<NoteCV> Staff(std::initializer_list<NoteCV> notes) {
  std::vector<NoteCV> icv(1);
  icv.insert(icv.end(), notes);
  return icv;
}

struct Decoded {
  bool ok = false;
  std::string error;
  long long tempo = -1;
  int program = -1;
  struct On {
    long long tick;
    int key, velocity;
  };
  std::vector<On> notes;  // every 0x90 event with its absolute tick (from the program change)
};

// Reads a format-0 file the way any sequencer would: header, track length, events
// with variable-length deltas, and an end-of-track at exactly the end.
Decoded Decode(const Bytes& b) {
  Decoded d;
  auto fail = [&](const std::string& e) {
    d.error = e;
    return d;
  };
  if (b.size() < 22 || std::string(b.begin(), b.begin() + 4) != "MThd") return fail("no header");
  if (b[8] != 0 || b[9] != 0 || b[10] != 0 || b[11] != 1 || b[12] != 0x01 || b[13] != 0xE0)
    return fail("header fields");
  if (std::string(b.begin() + 14, b.begin() + 18) != "MTrk") return fail("no track");
  const std::size_t len = (std::size_t(b[18]) << 24) | (b[19] << 16) | (b[20] << 8) | b[21];
  if (22 + len != b.size()) return fail("track length " + std::to_string(len) + " vs " + std::to_string(b.size() - 22));
  std::size_t i = 22;
  long long tick = 0;
  bool clockStarted = false;
  while (i < b.size()) {
    long long delta = 0;
    int n = 0;
    while (true) {
      if (i >= b.size() || ++n > 4) return fail("bad delta");
      std::uint8_t c = b[i++];
      delta = (delta << 7) | (c & 0x7F);
      if (!(c & 0x80)) break;
    }
    if (clockStarted) tick += delta;
    if (i >= b.size()) return fail("truncated event");
    std::uint8_t status = b[i++];
    if (status == 0xF0) {
      std::uint8_t l = b[i++];
      i += l;
    } else if (status == 0xFF) {
      std::uint8_t type = b[i++];
      std::uint8_t l = b[i++];
      if (type == 0x51) d.tempo = (b[i] << 16) | (b[i + 1] << 8) | b[i + 2];
      if (type == 0x2F) {
        if (i + l != b.size()) return fail("data after end of track");
        d.ok = true;
        return d;
      }
      i += l;
    } else if (status == 0xC0) {
      d.program = b[i++];
      clockStarted = true;
    } else if (status == 0x90) {
      if (i + 1 >= b.size()) return fail("truncated note");
      d.notes.push_back({tick, b[i], b[i + 1]});
      i += 2;
    } else {
      return fail("unexpected status");
    }
  }
  return fail("no end of track");
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
  const Bytes file = SaveMidiBytes(Staff({Note(136, "C494")}), 0.95, TempoForSlider(7).tempo, 41);
  EXPECT_EQ(file.size(), 79u);
  EXPECT_EQ(file, expected);
}

TEST(MidiWriter, AnEmptyStaffIsTheFrameAlone) {
  const Bytes file = SaveMidiBytes(Staff({}), 0.95, kTempo120, 41);
  EXPECT_EQ(file.size(), 69u);
  EXPECT_EQ(file[21], 47) << "track of 47 bytes";
  Decoded d = Decode(file);
  EXPECT_TRUE(d.ok) << d.error;
  EXPECT_TRUE(d.notes.empty());
  EXPECT_EQ(d.tempo, 500000);
  EXPECT_EQ(d.program, 40);
}

TEST(MadeGT, VariableLengthQuantities) {
  struct Case {
    long long delta;
    Bytes bytes;
  } cases[] = {
      {0, {0x00}},
      {127, {0x7F}},
      {128, {0x81, 0x00}},
      {240, {0x81, 0x70}},
      {480, {0x83, 0x60}},
      {1920, {0x8F, 0x00}},
      {16383, {0xFF, 0x7F}},
      {16384, {0x81, 0x80, 0x00}},
      {2097151, {0xFF, 0xFF, 0x7F}},
      {2097152, {0x81, 0x80, 0x80, 0x00}},
      {0x0FFFFFFF, {0xFF, 0xFF, 0xFF, 0x7F}},
      {0x10000005, {0x05}},  // only 28 bits fit; the rest is dropped
  };
  for (const auto& c : cases) EXPECT_EQ(MadeGT(c.delta), c.bytes) << c.delta;
}

TEST(MidiEvents, TimingComesFromDigitsNotFromDistance) {
  struct Case {
    const char* name;
    std::vector<NoteCV> icv;
    double gate;
    std::vector<std::pair<long long, int>> timesAndVelocities;
  } cases[] = {
      {"first note one quarter after the origin", Staff({Note(136, "C494")}), 0.95, {{480, 75}, {936, 0}}},
      {"first note at the origin starts at 0", Staff({Note(120, "C494")}), 0.95, {{0, 75}, {456, 0}}},
      {"far apart", Staff({Note(136, "C494"), Note(700, "D494")}), 0.95,
       {{480, 75}, {936, 0}, {960, 75}, {1416, 0}}},
      {"side by side", Staff({Note(136, "C494"), Note(144, "D494")}), 0.95,
       {{480, 75}, {936, 0}, {960, 75}, {1416, 0}}},
      // A chord: both start together; the clock moves by the note sorted last (the
      // shorter), and the longer one rings on past the next column.
      {"chord", Staff({Note(136, "C492"), Note(136, "E498"), Note(200, "G494")}), 0.75,
       {{480, 75}, {480, 75}, {660, 0}, {720, 75}, {1200, 0}, {1080, 0}}},
      {"gate 0.75", Staff({Note(120, "C494")}), 0.75, {{0, 75}, {360, 0}}},
      {"gate 0.85", Staff({Note(120, "C494")}), 0.85, {{0, 75}, {408, 0}}},
      {"a rest keeps its place in time silently", Staff({Note(136, "0004"), Note(168, "C494")}), 0.95,
       {{480, 0}, {936, 0}, {960, 75}, {1416, 0}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto events = MidiEvents(c.icv, c.gate);
    ASSERT_EQ(events.size(), c.timesAndVelocities.size() + 1);
    // Events are in time order; compare as multisets of (time, velocity) per time.
    std::vector<std::pair<long long, int>> got;
    for (std::size_t i = 1; i < events.size(); ++i) {
      got.push_back({events[i].time, events[i].velocity});
      if (i > 1) {
        EXPECT_LE(events[i - 1].time, events[i].time);
      }
    }
    auto want = c.timesAndVelocities;
    std::stable_sort(want.begin(), want.end(), [](auto a, auto b) { return a.first < b.first; });
    EXPECT_EQ(got, want);
  }
}

TEST(MidiEvents, RestsAndOddPitchesWriteTheirLowByte) {
  NoteCV rest = Note(136, "0008");
  rest.noteNo = 0;
  NoteCV high = Note(168, "C494");
  high.noteNo = 300;  // a hand-edited file: only the low byte is written
  auto events = MidiEvents(Staff({rest, high}), 0.95);
  EXPECT_EQ(events[1].pitch, 0);
  EXPECT_EQ(events[1].velocity, 0);
  EXPECT_EQ(events[3].pitch, 300 & 0xFF);
  NoteCV oddVelocity = Note(136, "C494");
  oddVelocity.ve = "10";  // past the velocity table: silent, and the file stays whole
  EXPECT_TRUE(Decode(SaveMidiBytes(Staff({oddVelocity}), 0.95, kTempo120, 41)).ok);
}

TEST(MidiWriter, ProgramAndTempoBytes) {
  struct Case {
    int inst, program;
  } cases[] = {{1, 0}, {41, 40}, {128, 127}, {1025, 0}, {16385, 0}, {186, 185}, {0, 255}};
  for (const auto& c : cases) {
    Decoded d = Decode(SaveMidiBytes(Staff({}), 0.95, kTempo120, c.inst));
    ASSERT_TRUE(d.ok) << d.error;
    EXPECT_EQ(d.program, c.program) << c.inst;
  }
  const long long usPerQuarter[16] = {1200000, 1000000, 857142, 750000, 666666, 600000, 545454, 500000,
                                      461538,  428571,  375000, 333333, 300000, 250000, 214285, 285714};
  for (int v = 0; v <= 15; ++v) {
    Decoded d = Decode(SaveMidiBytes(Staff({}), 0.95, TempoForSlider(v).tempo, 41));
    EXPECT_EQ(d.tempo, usPerQuarter[v]) << v;
  }
}

TEST(MidiWriter, RandomStaffsDecodeWithEveryNoteOnAndOff) {
  std::mt19937 rng(99);
  const char* hex = "0123456789ABCDEF";
  for (int round = 0; round < 200; ++round) {
    std::vector<NoteCV> icv(1);
    const int count = static_cast<int>(rng() % 120);
    for (int i = 0; i < count; ++i) {
      NoteCV n;
      n.left = 120 + 8 * static_cast<int>(rng() % 2000);
      n.noteNo = 21 + static_cast<int>(rng() % 88);
      n.ve = std::string(1, hex[rng() % 16]);
      n.dr = std::string(1, hex[rng() % 16]);
      icv.push_back(n);
    }
    const double gates[] = {0.75, 0.85, 0.95};
    const double gate = gates[rng() % 3];
    Decoded d = Decode(SaveMidiBytes(icv, gate, kTempo120, 41));
    ASSERT_TRUE(d.ok) << d.error;
    ASSERT_EQ(d.notes.size(), 2u * count);
    // The decoded ticks are exactly the writer's event times, in order.
    auto events = MidiEvents(icv, gate);
    for (std::size_t i = 0; i < d.notes.size(); ++i) {
      ASSERT_EQ(d.notes[i].tick, events[i + 1].time) << i;
      ASSERT_EQ(d.notes[i].key, events[i + 1].pitch) << i;
    }
    int ons = 0;
    for (const auto& n : d.notes) ons += n.velocity > 0;
    int sounding = 0;
    for (int i = 1; i <= count; ++i) sounding += NoteVel(icv[i].ve) > 0;
    EXPECT_EQ(ons, sounding);
  }
}
