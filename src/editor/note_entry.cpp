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

int EntrySpacingFor(int digit) {
  if (digit <= 3) return 48;
  if (digit <= 6) return 32;
  if (digit <= 11) return 16;
  return 8;
}

std::string VelocityDigitFor(int loudnessButton) { return Field(kEntryVelocityDigits, loudnessButton + 1); }

namespace {

// The rest branch shared by both roads: its row, its clash search, its digits.
Note& AddRest(Staff& staff, const EntryState& entry, int left, int top, int linePitch) {
  Note n;
  n.left = SnapColumn(left, 960);
  n.top = ClashSearch(staff, -1, n.left, RestRow(top), true);
  n.durationDigit = Hex(entry.lengthButton - 16);
  n.velocityDigit.assign(1, '0');  // (assigning a literal here trips a false GCC 12 warning)
  n.pitch = 0;
  n.linePitch = linePitch;
  n.picture = NotePictureName('r', n.durationDigit);
  n.token = PitchName(0, n.accidental) + "0" + n.durationDigit;
  return staff.AddNote(n);
}

// Column snap, clamp and clash search of a new note.
void PlaceNote(const Staff& staff, Note& n, int left, int top) {
  n.left = SnapColumn(left, 968);
  n.top = ClashSearch(staff, -1, n.left, ClampNoteTop(top), false);
}

}  // namespace

bool EnterNoteAt(Staff& staff, EntryState& entry, const Modes& modes, Modifiers mods, long long ticks, int x,
                 int y) {
  if (modes.Busy() || mods.Any()) return false;
  staff.entryLeft = ClickColumn(x);
  staff.entryTop = ClickRow(y);
  UpdateChangedFlag(staff);
  staff.selectedBar = static_cast<int>(x / 144.0);
  if (ticks - entry.lastClickTicks >= kDoubleClickTicks) {
    entry.lastClickTicks = ticks;
    return false;
  }
  const int left = staff.entryLeft, top = staff.entryTop;
  if (entry.lengthButton >= 16) {
    const Note& rest = AddRest(staff, entry, left, top, 0);
    staff.entryLeft = rest.left + staff.entrySpacing;
    staff.entryTop = rest.top;
    return true;
  }
  Note n;
  PlaceNote(staff, n, left, top);
  n.durationDigit = Hex(entry.lengthButton);
  // The entry route leaves position alone, whichever family the picture is.
  n.picture = NotePictureName(EntryFamily(n.top), n.durationDigit);
  n.linePitch = StaffLinePitch(n.top);
  n.keyShift = KeySignatureShift(staff.keySignature, n.linePitch);
  n.accidental = 0;
  n.pitch = n.linePitch + n.accidental + n.keyShift;
  n.velocityDigit = VelocityDigitFor(entry.loudnessButton);
  n.token = PitchName(n.pitch, n.accidental) + n.velocityDigit + n.durationDigit;
  const Note& added = staff.AddNote(n);
  staff.entryLeft = added.left + staff.entrySpacing;
  staff.entryTop = added.top;
  return true;
}

void EnterPlayedNote(Staff& staff, const EntryState& entry, int pitch, int accidental) {
  const int left = staff.entryLeft;
  const int top = EntryTopOfPitch(pitch);
  if (entry.lengthButton >= 16) {
    const Note& rest = AddRest(staff, entry, left, top, pitch);
    staff.entryLeft = rest.left + staff.entrySpacing;
    staff.entryTop = rest.top;
    return;
  }
  Note n;
  PlaceNote(staff, n, left, top);
  n.durationDigit = Hex(entry.lengthButton);
  n.picture = NotePictureName(EntryFamily(n.top), n.durationDigit);
  // The pitch stays what was played, even where the clamp or a clash moved the note.
  n.linePitch = pitch;
  n.keyShift = KeySignatureShift(staff.keySignature, pitch);
  if (n.keyShift == 0) {
    n.accidentalSign = accidental;
    n.accidental = accidental == 1 ? 1 : accidental == 2 ? -1 : 0;
  }
  n.pitch = n.linePitch + n.accidental + n.keyShift;
  n.velocityDigit = VelocityDigitFor(entry.loudnessButton);
  RespellToken(n);
  const Note& added = staff.AddNote(n);
  staff.entryLeft = added.left + 32;
  staff.entryTop = added.top;
}

void ChooseLength(Staff& staff, EntryState& entry, const Modes& modes, int index) {
  if (modes.Busy() || index < 0 || index > 31) return;
  entry.lengthButton = index;
  staff.entrySpacing = EntrySpacingFor(index % 16);
}

void ChooseLoudness(EntryState& entry, int index) {
  if (index >= 0 && index <= 8) entry.loudnessButton = index;
}

void ChooseArticulation(EntryState& entry, int index) {
  if (index >= 0 && index <= 2) entry.gate = kArticulationGates[index];
}

}  // namespace lirenza
