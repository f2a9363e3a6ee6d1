#include <gtest/gtest.h>

#include "violin/midi_notes.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;
using Kind = MidiNoteEvent::Kind;

// What a note's end must undo is what its start did, whatever changed in between: the
// hand position, the tuning (a key change: every pitch 7/256 higher), a second strike.
TEST(MidiKeyboardNotes, EachEndUndoesExactlyWhatItsStartDid) {
  struct Step {
    MidiNoteEvent event;
    int handPosition = 0;
    bool retuned = false;
  };
  TuningTables marked = MarkedTuning(), retuned = marked;
  for (long long& pitch : retuned.pitches) pitch += 7;
  const auto raw = [](int key, int velocity) { return "player0 " + std::to_string(key * 256 + 10) + " " + std::to_string(velocity); };
  const struct {
    const char* name;
    std::vector<Step> steps;
    Log calls;
  } scenarios[] = {
      {"hand moved and key changed while held",
       {{{Kind::NoteOn, 69, 100}}, {{Kind::NoteOff, 69}, 1, true}, {{Kind::NoteOn, 69, 100}, 1, true}},
       {"G 2/0", "player0 p(69) 100", "GF 2/0", "player0 p(69) 0", "G 3/7", raw(69, 100)}},
      {"struck twice before the release",
       {{{Kind::NoteOn, 76, 50}}, {{Kind::NoteOn, 76, 70}, 0, true}, {{Kind::NoteOn, 76, 0}}, {{Kind::NoteOff, 76}}},
       {"G 1/0", "player0 p(76) 50", "GF 1/0", "player0 p(76) 0", "G 1/0", raw(76, 70), "GF 1/0", raw(76, 0)}},
      {"all notes off ends each once, off the fingerboard too",
       {{{Kind::NoteOn, 100, 80}}, {{Kind::NoteOn, 62, 80}}, {{Kind::AllNotesOff}}, {{Kind::AllNotesOff}}},
       {"player0 p(100) 80", "G 3/0", "player0 p(62) 80", "GF 3/0", "player0 p(62) 0", "player0 p(100) 0"}},
      {"keys outside MIDI and ends of unstarted notes do nothing",
       {{{Kind::NoteOn, -1, 80}}, {{Kind::NoteOn, 128, 80}}, {{Kind::NoteOff, 60}}, {{Kind::NoteOff, 200}}}, {}},
  };
  for (const auto& s : scenarios) {
    FakeSound sound;
    MidiKeyboardNotes notes;
    for (const Step& step : s.steps) notes.Apply(step.event, step.retuned ? retuned : marked, step.handPosition, sound.ports);
    EXPECT_EQ(sound.log, s.calls) << s.name;
  }
}
