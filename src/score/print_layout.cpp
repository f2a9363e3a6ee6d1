#include "score/print_layout.h"

#include <algorithm>

namespace lirenza {

PaperPlace PlaceOnPaper(int left, int top) {
  // Columns before the first bar (the first note column is 136) belong to the first line.
  const int column = std::max(0, left - kTemplateLeft);
  const int line = column / kPrintLineWidth;
  return {line / kPrintLinesPerSheet, column % kPrintLineWidth + kPrintLineLeft,
          top + (line % kPrintLinesPerSheet) * kPrintLineStep - kPrintNoteRise};
}

std::string SignPictureName(int accidentalSign) {
  switch (accidentalSign) {
    case 1: return "Sh";
    case 2: return "Fl";
    case 3: return "Nt";
    default: return {};
  }
}

std::vector<NoteOnPaper> NotesOnPaper(const Staff& staff, int* leftOut) {
  std::vector<NoteOnPaper> out;
  int beyond = 0;
  for (int i = 1; i <= staff.NoteCount(); ++i) {
    const Note& note = staff.notes[i];
    const long long left = static_cast<long long>(note.left) + staff.appliedScroll;
    if (left >= kTemplateLeft + static_cast<long long>(kMaxPrintSheets) * kPrintLinesPerSheet * kPrintLineWidth) {
      ++beyond;
      continue;
    }
    out.push_back({PlaceOnPaper(static_cast<int>(left), note.top), note.picture, SignPictureName(note.accidentalSign)});
  }
  if (leftOut) *leftOut = beyond;
  return out;
}

int SheetCount(const std::vector<NoteOnPaper>& notes) {
  int last = 0;
  for (const NoteOnPaper& note : notes) last = std::max(last, note.place.sheet);
  return last + 1;
}

}  // namespace lirenza
