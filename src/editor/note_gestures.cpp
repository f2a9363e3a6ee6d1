#include "editor/note_gestures.h"

#include <cmath>

#include "editor/note_entry.h"
#include "score/note_tables.h"
#include "violin/key_push.h"

namespace lirenza {

void SetNoteFamily(Note& note, NoteFamily family) {
  note.picture = NotePictureName(family, note.durationDigit);
  note.stemDown = family == NoteFamily::StemDown;
}

int SfOfSign(int sib, int ks, int currentSf) {
  switch (sib) {
    case 1: return 1;
    case 2: return -1;
    case 3: return ks == 1 ? -1 : ks == -1 ? 1 : 0;
    default: return currentSf;
  }
}

PressResult NoteMouseDown(Staff& staff, int index, long long ticks, bool contextual, int x, int y) {
  if (index < 1 || index > staff.NoteCount()) return PressResult::Contextual;
  Note& n = staff.notes[index];
  if (ticks - n.lastPressTicks < kDoubleClickTicks) {
    staff.entryLeft = n.left;
    staff.RemoveNote(index);
    return PressResult::Deleted;
  }
  if (contextual) return PressResult::Contextual;
  n.lastPressTicks = ticks;
  n.pressX = x;
  n.pressY = y;
  staff.entryLeft = n.left;
  staff.entryTop = n.top;
  return PressResult::Claimed;
}

void NoteMouseDrag(Staff& staff, int index, long long ticks, int x, int y, const SoundPorts& ports,
                   const TuningTables& tuning) {
  if (index < 1 || index > staff.NoteCount()) return;
  Note& n = staff.notes[index];
  n.left += x - n.pressX;
  n.top += y - n.pressY;
  if (ticks - n.lastPressTicks > kDoubleClickTicks && n.left == staff.entryLeft && n.top == staff.entryTop)
    PlayIndex(ports, kScorePlayer, tuning, n.pitch, 0);
}

void NoteMouseUp(Staff& staff, int index, const SoundPorts& ports, const TuningTables& tuning) {
  if (index < 1 || index > staff.NoteCount()) return;
  Note& n = staff.notes[index];
  n.left = static_cast<int>(std::round(n.left / 8.0)) * 8;
  n.top = static_cast<int>(std::round(n.top / 3.0)) * 3;
  n.left = SnapColumn(n.left, 960);
  n.top = ClampNoteTop(n.top);
  if (n.IsRest()) {
    n.top = RestRow(n.top);
    return;
  }
  n.top = ClashSearch(staff, index, n.left, n.top, false);
  SetNoteFamily(n, EntryFamily(n.top));
  PlayIndex(ports, kScorePlayer, tuning, n.pitch, 0);
  n.linePitch = StaffLinePitch(n.top);
  n.keyShift = KeySignatureShift(staff.keySignature, n.linePitch);
  n.accidental = SfOfSign(n.accidentalSign, n.keyShift, n.accidental);
  RespellToken(n);
  staff.entryLeft = n.left + 32;
  staff.entryTop = n.top;
}

bool NoteKeyDown(Staff& staff, int index, int characterCode) {
  if (characterCode != 8 || index < 1 || index > staff.NoteCount()) return false;
  staff.RemoveNote(index);
  return true;
}

void NoteMouseEnter(Staff& staff, int index, const SoundPorts& ports, const TuningTables& tuning, int handPosition) {
  if (index < 1 || index > staff.NoteCount()) return;
  Note& n = staff.notes[index];
  if (n.IsRest()) return;
  PlayAndShow(ports, tuning, handPosition, n.pitch, VelocityOfDigit(n.velocityDigit));
  n.hoverPitch = n.pitch;
}

void NoteMouseExit(const Staff& staff, int index, const SoundPorts& ports, const TuningTables& tuning, int handPosition) {
  if (index < 1 || index > staff.NoteCount()) return;
  PlayAndShow(ports, tuning, handPosition, staff.notes[index].hoverPitch, 0);
}

}  // namespace lirenza
