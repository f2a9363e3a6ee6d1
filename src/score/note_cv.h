#pragma once
// One note on the staff. A note is a value: its place on the staff is part of its data
// (Left gives time order, Top the drawn pitch), and its token is derived from its
// fields at every repaint.
#include <string>
#include <string_view>

namespace lirenza {

struct NoteCV {
  int left = 120;
  int top = 117;
  int mX = 0;
  int mY = 0;
  std::string dr = "4";
  std::string ve = "9";
  long long doubleCT = 0;
  int sib = 0;
  std::string note = "C494";
  int noteNo = 60;
  int sf = 0;
  bool position = false;
  int nline = 0;
  int ks = 0;
  int oldNoteNo = 0;
  bool nOnFlag = false;
  // Name of the picture the note wears ("n4", "u8", "r8"); empty shows none.
  std::string backdrop;

  bool IsRest() const { return ve == "0"; }
  bool operator==(const NoteCV&) const = default;
};

// Fills pitch, accidental and digits of a note from a token read from its end:
// "E4b98" is E flat 4, velocity digit 9, duration digit 8. ks is left alone.
void FillFromToken(NoteCV& note, std::string_view token);

// The picture of a note rebuilt from its stored fields (a loaded or copied note): the
// stored position chooses the family, and a rest always shows a rest.
std::string StoredBackdrop(const NoteCV& note);

// What every paint does: noteNo = nline + sf + ks, and the token spelled again from
// it with the note's own accidental choosing the sharp or flat name.
void RepaintToken(NoteCV& note);

}  // namespace lirenza
