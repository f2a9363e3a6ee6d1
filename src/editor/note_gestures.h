#pragma once
// What a note on the staff does with the mouse and keys: a press (a double click on the
// same note deletes it), a free drag, a drop that snaps it to the grid and reads its
// pitch from its new place, Backspace, and the sound while the mouse is over it.
#include "score/note_tables.h"
#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "ports/ports.h"

namespace lirenza {

// The note's own picture choice: the family it wears also sets position.
void SetNoteFamily(Note& note, NoteFamily family);

enum class PressResult { Deleted, Contextual, Claimed };
// A press at x, y inside note `index`. A press within 30 ticks of the last plain press
// on this note deletes it; a contextual click leaves the note to its menu.
PressResult NoteMouseDown(Staff& staff, int index, long long ticks, bool contextual, int x, int y);

// The drag follows the mouse freely. A long press that has not moved stops the sound
// the hover started.
void NoteMouseDrag(Staff& staff, int index, long long ticks, int x, int y, const SoundPorts& ports,
                   const TuningTables& tuning);

// The drop: snap, clamp, rows for rests, clash search, picture, sound off, and the
// pitch of the new line with the note's own sign and the key of the line.
void NoteMouseUp(Staff& staff, int index, const SoundPorts& ports, const TuningTables& tuning);

// Backspace deletes the note; true when the key was taken.
bool NoteKeyDown(Staff& staff, int index, int characterCode);

// Hover: a note sounds while the mouse is over it (a rest does not).
void NoteMouseEnter(Staff& staff, int index, const SoundPorts& ports, const TuningTables& tuning, int handPosition);
void NoteMouseExit(const Staff& staff, int index, const SoundPorts& ports, const TuningTables& tuning, int handPosition);

// The semitone a sign gives on a line the signature moves by ks: a natural cancels it.
int SfOfSign(int sib, int ks, int currentSf);

}  // namespace lirenza
