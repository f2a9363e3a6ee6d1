#pragma once
// One note on the staff. A note is a value: its place on the staff is part of its data
// (Left gives time order, Top the drawn pitch), and its token is derived from its
// fields at every repaint.
#include <string>
#include <string_view>
#include <tuple>

namespace lirenza {

struct Note {
  // What a score file stores of a note, in the order of its record.
  int left = 120;                   // column on the staff canvas; time follows it
  int top = 117;                    // row on the staff canvas; the drawn pitch
  bool stemDown = false;            // which of the two picture families it wears
  int pitch = 60;                   // sounding note number: linePitch + accidental + keyShift
  int linePitch = 0;                // natural pitch of its staff line or space
  int accidental = 0;               // semitones of its own sharp or flat: -1, 0 or 1
  int accidentalSign = 0;           // the sign drawn: 0 none, 1 sharp, 2 flat, 3 natural
  int keyShift = 0;                 // what the key signature does to its line: -1, 0 or 1
  std::string velocityDigit = "9";  // one hexadecimal digit; "0" makes a rest
  std::string durationDigit = "4";  // one hexadecimal digit; 0 is the longest
  std::string token = "C494";       // pitch name, velocity digit, duration digit

  // What lives only on screen.
  int pressX = 0, pressY = 0;       // where the mouse took hold of the note
  long long lastPressTicks = 0;     // for telling a double click on the note
  int hoverPitch = 0;               // what the hover started, so its exit ends that
  bool sounding = false;            // playback highlights the note while it sounds
  // Name of the picture the note wears ("n4", "u8", "r8"); empty shows none.
  std::string picture;

  bool IsRest() const { return velocityDigit == "0"; }
  bool operator==(const Note&) const = default;

  // The stored fields as one tuple: copying or comparing what a note is goes through
  // this single list, so a new stored field cannot be forgotten in one of them.
  template <typename Self>
  static auto TieStored(Self& n) {
    return std::tie(n.left, n.top, n.stemDown, n.pitch, n.linePitch, n.accidental, n.accidentalSign, n.keyShift,
                    n.velocityDigit, n.durationDigit, n.token);
  }
  auto StoredFields() const { return TieStored(*this); }
  auto StoredFields() { return TieStored(*this); }
};

// Fills pitch, accidental and digits of a note from a token read from its end:
// "E4b98" is E flat 4, velocity digit 9, duration digit 8. keyShift is left alone.
void FillFromToken(Note& note, std::string_view token);

// The picture of a note rebuilt from its stored fields (a loaded or copied note): the
// stored stem direction chooses the family, and a rest always shows a rest.
std::string StoredPicture(const Note& note);

// What every paint does: pitch = linePitch + accidental + keyShift, and the token spelled again from
// it with the note's own accidental choosing the sharp or flat name.
void RespellToken(Note& note);

}  // namespace lirenza
