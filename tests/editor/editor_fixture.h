// What the editor's tests share: a staff, its entry state, tuning in C and logging players.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "editor/note_entry.h"
#include "score/note_tables.h"
#include "violin/fakes.h"

namespace lirenza::testing {

struct Editor : ::testing::Test {
  Staff staff;
  EntryState entry;
  Modes modes;
  TuningTables tuning;
  FakeSound rig;
  long long ticks = 0;
  Editor() { TuneToKey(tuning, 0); }
  int P(int index) const { return static_cast<int>(tuning.pitches[index]); }
  bool DoubleClick(int x, int y) {
    ticks += 100;
    EnterNoteAt(staff, entry, modes, {}, ticks, x, y);
    return EnterNoteAt(staff, entry, modes, {}, ticks += 5, x, y);
  }
};

// A note as entry makes it from its token, at the given place.
inline Note Made(const char* token, int top, int left = 304, int keyShift = 0) {
  Note n;
  FillFromToken(n, token);
  n.keyShift = keyShift;
  n.top = top;
  n.left = left;
  n.picture = (n.IsRest() ? "r" : "n") + n.durationDigit;
  RespellToken(n);
  return n;
}
inline Staff StaffOf(std::initializer_list<Note> notes) { Staff s; for (const Note& n : notes) s.AddNote(n); return s; }
// Where a note sits and what it is: "left,top pitch token picture", then "sign/accidental".
inline std::string Show(const Note& n, bool signs = false) {
  return std::to_string(n.left) + "," + std::to_string(n.top) + " " + std::to_string(n.pitch) + " " + n.token + " " +
         n.picture + (signs ? " " + std::to_string(n.accidentalSign) + "/" + std::to_string(n.accidental) : "");
}
// "left:token" of every note, in entry order or from left to right.
inline std::vector<std::string> Placed(const Staff& s, bool byLeft = false) {
  std::vector<Note> notes(s.notes.begin() + 1, s.notes.end());
  if (byLeft) std::stable_sort(notes.begin(), notes.end(), [](auto& a, auto& b) { return a.left < b.left; });
  std::vector<std::string> out;
  for (auto& n : notes) out.push_back(std::to_string(n.left) + ":" + n.token);
  return out;
}

}  // namespace lirenza::testing
