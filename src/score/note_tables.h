#pragma once
// The tables that turn a note token into pitch, loudness, length, staff place and
// picture. Each is one literal, read by field number, so the program and its files
// agree on every irregular corner the tables have.
#include <string>
#include <string_view>

namespace lirenza {

// The 52 natural pitches from the top line of the staff (Top 36) down to Top 189.
extern const std::string_view kStaffLineTable;
// Digit (field digit + 1) to MIDI velocity, ticks of length, and the velocity as
// two hexadecimal digits the way the MIDI writer spells it.
extern const std::string_view kVelocityTable;
extern const std::string_view kDurationTable;
extern const std::string_view kVelocityHexTable;
// Note entry's nine loudness buttons, as velocity digits.
extern const std::string_view kEntryVelocityDigits;

// Natural pitch of a pitch name such as "C4" (case ignored); "00" reads as 60, any
// text outside the sharp table from A0 to C8 as 0.
int NaturalPitchOfName(std::string_view name);
// Semitone of the name's own accidental: "#" at the end 1, "b" -1, else 0.
int AccidentalOfName(std::string_view name);
// The accidental sign drawn for the name: "#" 1, "b" 2, else 0.
int SignOfName(std::string_view name);
// MIDI velocity of a digit; an unreadable digit reads as 0.
int VelocityOfDigit(std::string_view digit);
// Ticks of a duration digit; an unreadable digit reads as 0, so 1920 ticks.
int TicksOfDigit(std::string_view digit);
// Length of a digit in microseconds at tempo factor d, truncated.
long long MicrosecondsOfDigit(std::string_view digit, double d);
// Pitch name of a MIDI number: the flat table when sf is -1, the sharp table
// otherwise; the empty string outside 0 to 108.
std::string PitchName(int pitch, int sf);
// Top of a note entered by hand (black keys read as the flat above).
int EntryTopOfPitch(int pitch);
// Top of a note loaded from a kestra line: two diatonic steps above EntryTopOfPitch.
int KestraTopOfPitch(int pitch);
// Natural pitch under a Top, by the staff line table: field (Top - 33) / 3.
int StaffLinePitch(int top);
// Semitone effect of key signature (0 to 14) on the natural line linePitch.
int KeySignatureShift(int keySignature, int linePitch);

// Which picture family a sounding note wears. The thresholds differ by route
// because each route was tuned to its own placement of the head.
enum class NoteFamily { StemUp, StemDown };
NoteFamily EntryFamily(int top);      // note entry, drop of a dragged note
NoteFamily KestraFamily(int top);     // a staff filled from a kestra line
NoteFamily MenuFamily(int top);       // note menu's conversion of a rest to a note
NoteFamily TransposeFamily(int top);  // key change and octave moves

// Picture names ("n8", "uF", "r0"); empty when the digit is not one hexadecimal
// character, in which case the note shows no picture.
std::string NotePictureName(char family, std::string_view digit);
std::string NotePictureName(NoteFamily family, std::string_view digit);

// The key signature and time signature pictures beside the staff; empty outside the
// tables, where the picture is left as it was.
std::string KeySignaturePicture(int keySignature);
std::string TimeSignaturePicture(int timeSignature);

}  // namespace lirenza
