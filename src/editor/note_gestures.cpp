#include "editor/note_gestures.h"

#include <cmath>

#include "editor/note_entry.h"
#include "score/note_tables.h"
#include "violin/key_push.h"

namespace lirenza {

void SetNoteFamily(NoteCV& note, NoteFamily family) {
  note.backdrop = NotePictureName(family, note.dr);
  note.position = family == NoteFamily::U;
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
  NoteCV& n = staff.icv[index];
  if (ticks - n.doubleCT < kDoubleClickTicks) {
    staff.preNote[0] = n.left;
    staff.RemoveNote(index);
    return PressResult::Deleted;
  }
  if (contextual) return PressResult::Contextual;
  n.doubleCT = ticks;
  n.mX = x;
  n.mY = y;
  staff.preNote[0] = n.left;
  staff.preNote[1] = n.top;
  return PressResult::Claimed;
}

void NoteMouseDrag(Staff& staff, int index, long long ticks, int x, int y, const SoundPorts& ports,
                   const TuningTables& tuning) {
  if (index < 1 || index > staff.NoteCount()) return;
  NoteCV& n = staff.icv[index];
  n.left += x - n.mX;
  n.top += y - n.mY;
  if (ticks - n.doubleCT > kDoubleClickTicks && n.left == staff.preNote[0] && n.top == staff.preNote[1] &&
      ports.players[1] && n.noteNo >= 0 && n.noteNo < kPitchTableSize)
    ports.players[1]->PlayNote(static_cast<int>(tuning.p[n.noteNo]), 0);
}

void NoteMouseUp(Staff& staff, int index, const SoundPorts& ports, const TuningTables& tuning) {
  if (index < 1 || index > staff.NoteCount()) return;
  NoteCV& n = staff.icv[index];
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
  if (ports.players[1] && n.noteNo >= 0 && n.noteNo < kPitchTableSize)
    ports.players[1]->PlayNote(static_cast<int>(tuning.p[n.noteNo]), 0);
  n.nline = StaffLinePitch(n.top);
  n.ks = KeySignatureShift(staff.keyN, n.nline);
  n.sf = SfOfSign(n.sib, n.ks, n.sf);
  RepaintToken(n);
  staff.preNote[0] = n.left + 32;
  staff.preNote[1] = n.top;
}

bool NoteKeyDown(Staff& staff, int index, int characterCode) {
  if (characterCode != 8 || index < 1 || index > staff.NoteCount()) return false;
  staff.RemoveNote(index);
  return true;
}

void NoteMouseEnter(Staff& staff, int index, const SoundPorts& ports, const TuningTables& tuning, int handPosition) {
  if (index < 1 || index > staff.NoteCount()) return;
  NoteCV& n = staff.icv[index];
  if (n.IsRest()) return;
  PlayAndShow(ports, tuning, handPosition, n.noteNo, NoteVel(n.ve));
  n.oldNoteNo = n.noteNo;
}

void NoteMouseExit(const Staff& staff, int index, const SoundPorts& ports, const TuningTables& tuning, int handPosition) {
  if (index < 1 || index > staff.NoteCount()) return;
  PlayAndShow(ports, tuning, handPosition, staff.icv[index].oldNoteNo, 0);
}

}  // namespace lirenza
