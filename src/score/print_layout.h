#pragma once
// Where a score goes on paper. The page is a sheet of 855 by 1210 with a line of
// treble and bass staves every 108 pixels; a line holds five bars of 144 pixels, so a
// note's place on paper follows from its place in the whole score. A score longer
// than a sheet goes on to as many sheets as it needs.
#include <string>
#include <vector>

#include "score/staff.h"

namespace lirenza {

inline constexpr int kPrintSheetWidth = 855;
inline constexpr int kPrintSheetHeight = 1210;
inline constexpr int kPrintLineStep = 108;
inline constexpr int kPrintBarsPerLine = 5;
inline constexpr int kPrintLineWidth = kPrintBarsPerLine * kBarWidth;  // 720
inline constexpr int kPrintLineLeft = 75;                             // where a line's first bar begins
inline constexpr int kPrintLinesPerSheet = 10;                        // whole staves, treble and bass
inline constexpr int kPrintNoteRise = 10;  // a note on paper stands this much higher than on screen
// A note placed further on (a damaged file can put one millions of bars away) is left
// out rather than printed after thousands of empty sheets.
inline constexpr int kMaxPrintSheets = 200;

struct PaperPlace {
  int sheet;  // from 0
  int x;
  int y;
  bool operator==(const PaperPlace&) const = default;
};

// left: the note's column in the whole score (as when the staff is scrolled to its
// start); top: its row on the staff.
PaperPlace PlaceOnPaper(int left, int top);

struct NoteOnPaper {
  PaperPlace place;
  std::string picture;      // the note's picture, as on screen
  std::string signPicture;  // the sign drawn over it ("Sh", "Fl", "Nt"), or empty
};

// The notes of the staff, wherever it is scrolled, on paper in entry order; *leftOut,
// when given, counts the notes past the last sheet.
std::vector<NoteOnPaper> NotesOnPaper(const Staff& staff, int* leftOut = nullptr);
// How many sheets the score takes: one at least, for an empty score too.
int SheetCount(const std::vector<NoteOnPaper>& notes);
// The sign picture of a note's accidental sign (1 sharp, 2 flat, 3 natural); empty for none.
std::string SignPictureName(int accidentalSign);

}  // namespace lirenza
