#include "files/midi_writer.h"

#include <cmath>

#include "score/note_tables.h"
#include "score/playing_order.h"
#include "score/text_fields.h"

namespace lirenza {

namespace {

void AppendHex(std::vector<std::uint8_t>& out, std::string_view hex) {
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    out.push_back(static_cast<std::uint8_t>(HexVal(hex.substr(i, 2))));
}

// GM System On, then a text event 240 ticks in that names the program that wrote it.
constexpr std::string_view kTrackStart =
    "00F0057E7F0901F78170FF0114637265617465642062792042656C726F73697465";
constexpr std::string_view kFileHeader = "4D546864000000060000000101E04D54726B";
constexpr std::string_view kEndOfTrack = "00FF2F00";

int VelocityByte(std::string_view digit) {
  // A digit past the table would leave the byte out and shift the whole file; it
  // writes as silence instead.
  const long long index = HexVal(digit);
  if (index < 0 || index > 15) return 0;
  return static_cast<int>(HexVal(Field(kVelocityHexTable, static_cast<int>(index) + 1)));
}

// The note-off tick. The gate comes from settings a file can damage; a tick that no
// file could hold is kept at the clock rather than cast out of range.
long long OffTick(long long clock, int ticks, double gate) {
  const double off = static_cast<double>(clock) + ticks * gate;
  if (!(off >= static_cast<double>(clock))) return clock;
  if (off > static_cast<double>(clock) + 0x0FFFFFFF) return clock + 0x0FFFFFFF;
  return static_cast<long long>(off);
}

}  // namespace

std::vector<MidiEvent> MidiEvents(const std::vector<Note>& notes, double gate, int* notesLeftOut) {
  std::vector<MidiEvent> events(1);
  int leftOut = 0;
  if (!notes.empty()) {
    const std::vector<int> order = PlayingOrder(notes);
    events.reserve(order.size() * 2 - 1);
    long long clock = 0;
    for (std::size_t i = 1; i < order.size(); ++i) {
      const Note& a = notes[order[i]];
      const Note& b = notes[order[i - 1]];
      if (a.left != b.left) clock += TicksOfDigit(b.durationDigit);
      if (a.pitch < 0 || a.pitch > 127) {
        // A rest out of range is silent either way: no one needs to hear of it.
        if (!a.IsRest()) ++leftOut;
        continue;
      }
      events.push_back(MidiEvent{clock, a.pitch, VelocityByte(a.velocityDigit)});
      events.push_back(MidiEvent{OffTick(clock, TicksOfDigit(a.durationDigit), gate), a.pitch, 0});
    }
    SortEventsByTime(events, [](const MidiEvent& e) { return e.time; });
  }
  if (notesLeftOut) *notesLeftOut = leftOut;
  return events;
}

std::vector<std::uint8_t> VariableLengthQuantity(long long delta) {
  const auto v = static_cast<std::uint32_t>(static_cast<std::uint64_t>(delta)) & 0x0FFFFFFFu;
  const std::uint8_t g0 = v & 0x7F, g1 = (v >> 7) & 0x7F, g2 = (v >> 14) & 0x7F, g3 = (v >> 21) & 0x7F;
  if (!g3 && !g2 && !g1) return {g0};
  if (!g3 && !g2) return {static_cast<std::uint8_t>(0x80 | g1), g0};
  if (g3)
    return {static_cast<std::uint8_t>(0x80 | g3), static_cast<std::uint8_t>(0x80 | g2),
            static_cast<std::uint8_t>(0x80 | g1), g0};
  return {static_cast<std::uint8_t>(0x80 | g2), static_cast<std::uint8_t>(0x80 | g1), g0};
}

std::vector<std::uint8_t> NoteEventBytes(const std::vector<Note>& notes, double gate, int* notesLeftOut) {
  const auto events = MidiEvents(notes, gate, notesLeftOut);
  std::vector<std::uint8_t> out;
  out.reserve(events.size() * 5);
  for (std::size_t i = 1; i < events.size(); ++i) {
    for (auto b : VariableLengthQuantity(events[i].time - events[i - 1].time)) out.push_back(b);
    out.push_back(0x90);
    out.push_back(static_cast<std::uint8_t>(events[i].pitch));
    out.push_back(static_cast<std::uint8_t>(events[i].velocity));
  }
  return out;
}

int ProgramByte(int inst) {
  const long long program = (static_cast<long long>(inst) - 1) % 128;
  return static_cast<int>(program < 0 ? program + 128 : program);
}

std::vector<std::uint8_t> MidiFileBytes(const std::vector<Note>& notes, double gate, const std::string& tempo,
                                        int inst, int* notesLeftOut) {
  std::vector<std::uint8_t> track;
  AppendHex(track, kTrackStart);
  AppendHex(track, tempo);
  track.push_back(0x00);
  track.push_back(0xC0);
  track.push_back(static_cast<std::uint8_t>(ProgramByte(inst)));
  const auto noteBytes = NoteEventBytes(notes, gate, notesLeftOut);
  track.insert(track.end(), noteBytes.begin(), noteBytes.end());
  AppendHex(track, kEndOfTrack);

  std::vector<std::uint8_t> file;
  file.reserve(track.size() + 22);
  AppendHex(file, kFileHeader);
  const auto length = static_cast<std::uint32_t>(track.size());
  for (int shift = 24; shift >= 0; shift -= 8) file.push_back(static_cast<std::uint8_t>(length >> shift));
  file.insert(file.end(), track.begin(), track.end());
  return file;
}

}  // namespace lirenza
