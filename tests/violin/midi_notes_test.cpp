#include <gtest/gtest.h>

#include "violin/midi_notes.h"
#include "fakes.h"

using namespace lirenza;
using namespace lirenza::testing;

namespace {
using Kind = MidiNoteEvent::Kind;

// One event as it reaches the notes, with the hand position and the tuning of that moment.
struct Step {
  MidiNoteEvent event;
  int handPosition = 0;
  bool retuned = false;  // the score's key changed: every pitch sits 7/256 higher
};

TuningTables Retuned() {
  TuningTables t = MarkedTuning();
  for (long long& pitch : t.pitches) pitch += 7;
  return t;
}

struct Scenario {
  const char* name;
  std::vector<Step> steps;
  Log calls;
};
}  // namespace

// Each note sounds its key's pitch on the live player with its velocity, the finger shown
// first; its end silences what was started and wipes what was drawn, whatever changed since.
TEST(MidiKeyboardNotes, EachEndUndoesExactlyWhatItsStartDid) {
  const TuningTables marked = MarkedTuning(), retuned = Retuned();
  const std::string retunedA4 = std::to_string(69 * 256 + 3 + 7);
  const Scenario scenarios[] = {
      {"first position", {{{Kind::NoteOn, 60, 90}}, {{Kind::NoteOff, 60}}},
       {"G 4/5", "player0 p(60) 90", "GF 4/5", "player0 p(60) 0"}},
      {"fifth position, velocity as struck", {{{Kind::NoteOn, 81, 30}, 2}, {{Kind::NoteOn, 81, 0}, 2}},
       {"G 2/12", "player0 p(81) 30", "GF 2/12", "player0 p(81) 0"}},
      {"off the fingerboard: sound only", {{{Kind::NoteOn, 40, 64}}, {{Kind::NoteOff, 40}}, {{Kind::NoteOn, 92, 64}}},
       {"player0 p(40) 64", "player0 p(40) 0", "player0 p(92) 64"}},
      {"hand moved and key changed while held",
       {{{Kind::NoteOn, 69, 100}}, {{Kind::NoteOff, 69}, 1, true}, {{Kind::NoteOn, 69, 100}, 1, true}},
       {"G 2/0", "player0 p(69) 100", "GF 2/0", "player0 p(69) 0", "G 3/7", "player0 " + retunedA4 + " 100"}},
      {"struck twice before the release",
       {{{Kind::NoteOn, 76, 50}}, {{Kind::NoteOn, 76, 70}, 0, true}, {{Kind::NoteOff, 76}}, {{Kind::NoteOff, 76}}},
       {"G 1/0", "player0 p(76) 50", "GF 1/0", "player0 p(76) 0", "G 1/0", "player0 " + std::to_string(76 * 256 + 10) + " 70",
        "GF 1/0", "player0 " + std::to_string(76 * 256 + 10) + " 0"}},
      {"all notes off ends each once",
       {{{Kind::NoteOn, 55, 80}}, {{Kind::NoteOn, 100, 80}}, {{Kind::NoteOff, 55}}, {{Kind::NoteOn, 62, 80}},
        {{Kind::AllNotesOff}}, {{Kind::AllNotesOff}}},
       {"G 4/0", "player0 p(55) 80", "player0 p(100) 80", "GF 4/0", "player0 p(55) 0", "G 3/0", "player0 p(62) 80",
        "GF 3/0", "player0 p(62) 0", "player0 p(100) 0"}},
      {"keys outside MIDI and ends of unstarted notes do nothing",
       {{{Kind::NoteOn, -1, 80}}, {{Kind::NoteOn, 128, 80}}, {{Kind::NoteOff, 60}}, {{Kind::NoteOff, 200}}}, {}},
  };
  for (const Scenario& s : scenarios) {
    FakeSound sound;
    MidiKeyboardNotes notes;
    for (const Step& step : s.steps) notes.Apply(step.event, step.retuned ? retuned : marked, step.handPosition, sound.ports);
    EXPECT_EQ(sound.log, s.calls) << s.name;
    EXPECT_TRUE(sound.Of(1).empty()) << s.name << ": only the live player plays";
  }
}

// The window ends everything when it stops listening; a later end finds nothing to do.
TEST(MidiKeyboardNotes, EndAllLeavesNothingSoundingAndNoFingerDrawn) {
  FakeSound sound;
  MidiKeyboardNotes notes;
  for (int key : {57, 64, 71, 77, 84, 120}) notes.Apply({Kind::NoteOn, key, 100}, MarkedTuning(), 1, sound.ports);
  notes.EndAll(sound.ports);
  EXPECT_TRUE(sound.players[0].StillSounding().empty());
  Log drawn = sound.Fingerboard();
  EXPECT_EQ(std::count_if(drawn.begin(), drawn.end(), [](auto& l) { return l.rfind("GF ", 0) == 0; }), 5);
  sound.log.clear();
  notes.EndAll(sound.ports);
  EXPECT_TRUE(sound.log.empty());
}
