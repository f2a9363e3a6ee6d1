#include "editor/note_entry.h"

#include <cmath>

#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

const std::array<std::string_view, 16> kLengthNames = {
    "全音符", "点2音符", "2音符", "点4音符", "4音符", "点点8音符", "点8音符", "3連2音符",
    "8音符", "点16音符", "3連4音符", "16音符", "3連8音符", "32音符", "3連16音符", "64音符"};
const std::array<std::string_view, 9> kLoudnessCaptions = {"ppp", "pp", "p", "mp", "m", "mf", "f", "ff", "fff"};
const std::array<std::string_view, 3> kArticulationCaptions = {"Sta", "Nor", "Leg"};
const std::array<double, 3> kArticulationGates = {0.75, 0.85, 0.95};

int NoteSpaceFor(int digit) {
  if (digit <= 3) return 48;
  if (digit <= 6) return 32;
  if (digit <= 11) return 16;
  return 8;
}

std::string VelocityDigitFor(int loudnessButton) { return Field(kEntryVelocityDigits, loudnessButton + 1); }

namespace {

// The rest branch shared by both roads: its row, its clash search, its digits.
NoteCV& AddRest(Staff& staff, const EntryState& entry, int left, int top, int nline) {
  NoteCV n;
  n.left = SnapColumn(left, 960);
  n.top = ClashSearch(staff, -1, n.left, RestRow(top), true);
  n.dr = Hex(entry.lengthButton - 16);
  n.ve.assign(1, '0');  // (assigning a literal here trips a false GCC 12 warning)
  n.noteNo = 0;
  n.nline = nline;
  n.backdrop = NotePictureName('r', n.dr);
  n.note = NoteStr(0, n.sf) + "0" + n.dr;
  return staff.AddNote(n);
}

// Column snap, clamp and clash search of a new note.
void PlaceNote(const Staff& staff, NoteCV& n, int left, int top) {
  n.left = SnapColumn(left, 968);
  n.top = ClashSearch(staff, -1, n.left, ClampNoteTop(top), false);
}

}  // namespace

bool EnterNoteAt(Staff& staff, EntryState& entry, const Modes& modes, Modifiers mods, long long ticks, int x,
                 int y) {
  if (modes.Busy() || mods.Any()) return false;
  staff.preNote[0] = ClickColumn(x);
  staff.preNote[1] = ClickRow(y);
  noteChangedCheck(staff);
  staff.preCord[0] = static_cast<int>(x / 144.0);
  if (ticks - entry.lastClickTicks >= kDoubleClickTicks) {
    entry.lastClickTicks = ticks;
    return false;
  }
  const int left = staff.preNote[0], top = staff.preNote[1];
  if (entry.lengthButton >= 16) {
    const NoteCV& rest = AddRest(staff, entry, left, top, 0);
    staff.preNote[0] = rest.left + staff.noteSpace;
    staff.preNote[1] = rest.top;
    return true;
  }
  NoteCV n;
  PlaceNote(staff, n, left, top);
  n.dr = Hex(entry.lengthButton);
  // The entry route leaves position alone, whichever family the picture is.
  n.backdrop = NotePictureName(EntryFamily(n.top), n.dr);
  n.nline = StaffLinePitch(n.top);
  n.ks = KeySignatureShift(staff.keyN, n.nline);
  n.sf = 0;
  n.noteNo = n.nline + n.sf + n.ks;
  n.ve = VelocityDigitFor(entry.loudnessButton);
  n.note = NoteStr(n.noteNo, n.sf) + n.ve + n.dr;
  const NoteCV& added = staff.AddNote(n);
  staff.preNote[0] = added.left + staff.noteSpace;
  staff.preNote[1] = added.top;
  return true;
}

void EnterPlayedNote(Staff& staff, const EntryState& entry, int pitch, int accidental) {
  const int left = staff.preNote[0];
  const int top = NotePosition(pitch);
  if (entry.lengthButton >= 16) {
    const NoteCV& rest = AddRest(staff, entry, left, top, pitch);
    staff.preNote[0] = rest.left + staff.noteSpace;
    staff.preNote[1] = rest.top;
    return;
  }
  NoteCV n;
  PlaceNote(staff, n, left, top);
  n.dr = Hex(entry.lengthButton);
  n.backdrop = NotePictureName(EntryFamily(n.top), n.dr);
  // The pitch stays what was played, even where the clamp or a clash moved the note.
  n.nline = pitch;
  n.ks = KeySignatureShift(staff.keyN, pitch);
  if (n.ks == 0) {
    n.sib = accidental;
    n.sf = accidental == 1 ? 1 : accidental == 2 ? -1 : 0;
  }
  n.noteNo = n.nline + n.sf + n.ks;
  n.ve = VelocityDigitFor(entry.loudnessButton);
  RepaintToken(n);
  const NoteCV& added = staff.AddNote(n);
  staff.preNote[0] = added.left + 32;
  staff.preNote[1] = added.top;
}

void ChooseLength(Staff& staff, EntryState& entry, const Modes& modes, int index) {
  if (modes.Busy() || index < 0 || index > 31) return;
  entry.lengthButton = index;
  staff.noteSpace = NoteSpaceFor(index % 16);
}

void ChooseLoudness(EntryState& entry, int index) {
  if (index >= 0 && index <= 8) entry.loudnessButton = index;
}

void ChooseArticulation(EntryState& entry, int index) {
  if (index >= 0 && index <= 2) entry.soundingShare = kArticulationGates[index];
}

}  // namespace lirenza
