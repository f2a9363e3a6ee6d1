#pragma once
// A strict reader of the MIDI files the writer makes, written from the file format alone:
// it accepts only what every sequencer reads the same way.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace lirenza::testing {

using Bytes = std::vector<std::uint8_t>;

struct Decoded {
  bool ok = false;
  std::string error;
  int program = -1;
  struct On { long long tick; int key, velocity; };
  std::vector<On> notes;  // every 0x90 event with its absolute tick (from the program change)
};

// Reads a format-0 file strictly: header, track length, a status byte for every event
// (no running status is written, so none is accepted), data bytes below 0x80, deltas of
// at most four bytes, SysEx and meta lengths that fit, End of Track exactly at the end.
inline Decoded Decode(const Bytes& b) {
  Decoded d;
  auto fail = [&](const std::string& e) { return d.error = e, d; };
  // One track of format 0 at 480 ticks a quarter.
  const Bytes frame = {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 0, 0, 1, 0x01, 0xE0, 'M', 'T', 'r', 'k'};
  if (b.size() < 22 || !std::equal(frame.begin(), frame.end(), b.begin())) return fail("header");
  const std::size_t len = (std::size_t(b[18]) << 24) | (b[19] << 16) | (b[20] << 8) | b[21];
  if (22 + len != b.size()) return fail("track length " + std::to_string(len) + " vs " + std::to_string(b.size() - 22));
  std::size_t i = 22;
  auto data = [&](std::size_t count) {  // the next count bytes exist and are data bytes
    return i + count <= b.size() && std::all_of(b.begin() + i, b.begin() + i + count, [](auto c) { return c < 0x80; });
  };
  auto vlq = [&](long long& value) {
    value = 0;
    for (int n = 1; n <= 4; ++n) {
      if (i >= b.size()) return false;
      const std::uint8_t c = b[i++];
      value = (value << 7) | (c & 0x7F);
      if (!(c & 0x80)) return true;
    }
    return false;
  };
  long long tick = 0;
  bool clockStarted = false;
  while (i < b.size()) {
    long long delta = 0;
    if (!vlq(delta)) return fail("bad delta at " + std::to_string(i));
    if (clockStarted) tick += delta;
    if (i >= b.size()) return fail("truncated event");
    const std::uint8_t status = b[i++];
    if (status == 0xF0) {
      long long l = 0;
      if (!vlq(l) || l < 1 || i + l > b.size() || b[i + l - 1] != 0xF7 || !data(l - 1)) return fail("bad SysEx");
      i += l;
    } else if (status == 0xFF) {
      if (!data(1)) return fail("bad meta type");
      const std::uint8_t type = b[i++];
      long long l = 0;
      if (!vlq(l) || i + l > b.size()) return fail("bad meta length");
      if (type == 0x51 && l != 3) return fail("tempo length");
      if (type == 0x2F && (l != 0 || i != b.size())) return fail("end of track not at the end");
      if (type == 0x2F) return d.ok = true, d;
      i += l;
    } else if (status == 0xC0) {
      if (!data(1)) return fail("program byte at " + std::to_string(i));
      d.program = b[i++];
      clockStarted = true;
    } else if (status == 0x90) {
      if (!data(2)) return fail("note data byte at " + std::to_string(i));
      d.notes.push_back({tick, b[i], b[i + 1]});
      i += 2;
    } else {
      return fail("unexpected status " + std::to_string(status) + " at " + std::to_string(i - 1));
    }
  }
  return fail("no end of track");
}

}  // namespace lirenza::testing
