#include "files/midi_writer.h"

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

int VelocityByte(const std::string& ve) {
  // A digit past the table would leave the byte out and shift the whole file; it
  // writes as silence instead.
  return static_cast<int>(HexVal(Field(kVelocityHexTable, HexVal(ve) + 1)));
}

}  // namespace

std::vector<MidiEvent> MidiEvents(const std::vector<NoteCV>& icv, double tGT) {
  std::vector<MidiEvent> events(1);
  if (icv.empty()) return events;
  const std::vector<int> order = PlayingOrder(icv);
  events.reserve(order.size() * 2);
  auto timeOf = [](const MidiEvent& e) { return e.time; };
  long long clock = 0;
  for (std::size_t i = 1; i < order.size(); ++i) {
    const NoteCV& a = icv[order[i]];
    const NoteCV& b = icv[order[i - 1]];
    if (a.left != b.left) clock += NoteTicks(b.dr);
    const int pitch = static_cast<int>(HexVal(RightDigits("0" + Hex(a.noteNo), 2)));
    InsertByTime(events, MidiEvent{clock, pitch, VelocityByte(a.ve)}, timeOf);
    const auto off = static_cast<long long>(static_cast<double>(clock) + NoteTicks(a.dr) * tGT);
    InsertByTime(events, MidiEvent{off, pitch, 0}, timeOf);
  }
  return events;
}

std::vector<std::uint8_t> MadeGT(long long delta) {
  const auto v = static_cast<std::uint32_t>(delta) & 0x0FFFFFFFu;
  const std::uint8_t g0 = v & 0x7F, g1 = (v >> 7) & 0x7F, g2 = (v >> 14) & 0x7F, g3 = (v >> 21) & 0x7F;
  if (!g3 && !g2 && !g1) return {g0};
  if (!g3 && !g2) return {static_cast<std::uint8_t>(0x80 | g1), g0};
  if (g3)
    return {static_cast<std::uint8_t>(0x80 | g3), static_cast<std::uint8_t>(0x80 | g2),
            static_cast<std::uint8_t>(0x80 | g1), g0};
  return {static_cast<std::uint8_t>(0x80 | g2), static_cast<std::uint8_t>(0x80 | g1), g0};
}

std::vector<std::uint8_t> MadeMidi(const std::vector<NoteCV>& icv, double tGT) {
  const auto events = MidiEvents(icv, tGT);
  std::vector<std::uint8_t> out;
  out.reserve(events.size() * 5);
  for (std::size_t i = 1; i < events.size(); ++i) {
    for (auto b : MadeGT(events[i].time - events[i - 1].time)) out.push_back(b);
    out.push_back(0x90);
    out.push_back(static_cast<std::uint8_t>(events[i].pitch));
    out.push_back(static_cast<std::uint8_t>(events[i].velocity));
  }
  return out;
}

std::vector<std::uint8_t> SaveMidiBytes(const std::vector<NoteCV>& icv, double tGT,
                                        const std::string& tempo, int inst) {
  std::vector<std::uint8_t> track;
  AppendHex(track, kTrackStart);
  AppendHex(track, tempo);
  AppendHex(track, "00C0" + RightDigits("0" + Hex(inst - 1), 2));
  const auto notes = MadeMidi(icv, tGT);
  track.insert(track.end(), notes.begin(), notes.end());
  AppendHex(track, kEndOfTrack);

  std::vector<std::uint8_t> file;
  file.reserve(track.size() + 22);
  AppendHex(file, kFileHeader);
  AppendHex(file, RightDigits("00000000" + Hex(static_cast<long long>(track.size())), 8));
  file.insert(file.end(), track.begin(), track.end());
  return file;
}

}  // namespace lirenza
