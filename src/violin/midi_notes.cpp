#include "violin/midi_notes.h"

#include <algorithm>

namespace lirenza {

void MidiKeyboardNotes::Apply(const MidiNoteEvent& event, const TuningTables& tuning, int handPosition,
                              const SoundPorts& ports) {
  if (event.kind == MidiNoteEvent::Kind::AllNotesOff) return EndAll(ports);
  if (event.key < 0 || event.key >= kKeys) return;
  // Many keyboards send a note-on of velocity 0 for a release.
  if (event.kind == MidiNoteEvent::Kind::NoteOff || event.velocity <= 0) return End(event.key, ports);
  Start(event.key, event.velocity, tuning, handPosition, ports);
}

void MidiKeyboardNotes::Start(int key, int velocity, const TuningTables& tuning, int handPosition,
                              const SoundPorts& ports) {
  // A key struck again before its release (two sources, or a lost note-off) ends the
  // first note: otherwise its pitch, if the tuning moved, would sound on for ever.
  End(key, ports);
  Started& note = started_[key];
  note.place = PositionOf(key, handPosition);
  // The finger is on the string as the note starts.
  if (note.place.string != 0 && ports.view) ports.view->ShowFinger(note.place.string, note.place.cell);
  note.pitch = static_cast<int>(tuning.pitches[key]);
  PlayIndex(ports, kLivePlayer, tuning, key, std::min(velocity, 127));
  note.sounding = true;
}

void MidiKeyboardNotes::End(int key, const SoundPorts& ports) {
  Started& note = started_[key];
  if (!note.sounding) return;
  note.sounding = false;
  if (note.place.string != 0 && ports.view) ports.view->HideFinger(note.place.string, note.place.cell);
  if (NotePlayer* live = ports.players[kLivePlayer]) live->PlayNote(note.pitch, 0);
}

void MidiKeyboardNotes::EndAll(const SoundPorts& ports) {
  for (int key = 0; key < kKeys; ++key) End(key, ports);
}

}  // namespace lirenza
