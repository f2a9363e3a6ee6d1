// Any bytes at all must give a staff, never a crash: mutated score files take the whole
// path a file takes (reader, staff, paint, MIDI bytes, playback list, tuning, pictures,
// scrolling); the MIDI stays a valid file and reading and writing again settles. Built a
// second time with the sanitizers, where any overflow or stray access stops the run.
#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <random>

#include "files/midi_writer.h"
#include "files/score_file.h"
#include "files/strict_midi_reader.h"
#include "score/note_tables.h"
#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/event_list.h"
#include "violin/instrument_table.h"
#include "violin/tempo_table.h"

using namespace lirenza;
using lirenza::testing::Decode;

namespace {

const char* kSeeds[] = {
    "120,105,0,60,60,0,0,0,9,8,C498 152,99,0,62,62,0,0,0,9,2,D492 ;演奏;作曲家/解説;1;41;7;0;0\n",
    "128,114,0,60,60,0,0,0,9,8,C498 160,111,1,63,64,-1,2,0,9,8,E4b98 192,106,0,60,60,0,0,0,0,8,0008 ;題;;5;0;7;9;2\n",
    ";;;5;0;7;0;0\n",
    "",
    // Huge and negative numbers in every field a sum or a table index is taken of.
    "1e308,-1e308,1,1e308,-1e308,1e308,7,-1e308,7FFFFFFFFFFFFFFF,7FFFFFFFFFFFFFFF,C498 "
    "-1,99,0,-1,99,-1,99,-1,-1,99,C8#FF ;;;99;-1;1e308;1e308;-1e308\n",
    "2147483647,-2147483648,0,2147483647,2147483647,2147483647,0,2147483647,F,F,B8F0 ;;;-1;99;-1;2147483647;99\n",
};

const int kExtremeInts[] = {INT_MIN, INT_MIN + 1, -1, 0, 99, 128, 200, INT_MAX - 1, INT_MAX};
const double kGates[] = {0.75, 0.85, 0.95, 0, -1, 1e308, -1e308, std::nan(""), HUGE_VAL};
const char* kExtremeDigits[] = {"7FFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFFFFFF", "-1", "", "10", "G", "99"};

std::string Mutate(std::string s, std::mt19937& rng) {
  static const char pieces[] = ";, \r\n\t0123456789-#bABCDEFGx\xE3\x81\x82\x80\xFF";
  static const char* numbers[] = {"99999999999999999999", "1e308", "-1e308", "7FFFFFFFFFFFFFFF", "99", "-1"};
  const int edits = 1 + static_cast<int>(rng() % 8);
  for (int e = 0; e < edits; ++e) {
    const std::size_t at = s.empty() ? 0 : rng() % (s.size() + 1);
    switch (rng() % 5) {
      case 0:  // insert a character that matters to the grammar, or a stray byte
        s.insert(s.begin() + at, rng() % 4 ? pieces[rng() % (sizeof pieces - 1)] : static_cast<char>(rng()));
        break;
      case 1:
        if (at < s.size()) s.erase(at, 1 + rng() % 4);
        break;
      case 2:
        if (at < s.size()) s[at] = static_cast<char>(rng());
        break;
      case 3:  // splice in a piece of itself
        if (!s.empty()) s.insert(at, s.substr(rng() % s.size()).substr(0, 1 + rng() % 30));
        break;
      default:  // a huge number
        s.insert(at, numbers[rng() % std::size(numbers)]);
    }
  }
  return s;
}

// A staff may hold values no file gives it (the reader holds numbers to a range; the
// editor may not): every function after the reader must still be safe for them.
void DamageDirectly(Staff& staff, std::mt19937& rng) {
  auto anyInt = [&] { return kExtremeInts[rng() % std::size(kExtremeInts)]; };
  static int Note::*const numbers[] = {&Note::left, &Note::top, &Note::linePitch, &Note::accidental,
                                       &Note::keyShift, &Note::pitch};
  for (Note& n : staff.notes) {
    if (rng() % 3) continue;
    const auto field = rng() % 8;
    if (field < 6) n.*numbers[field] = anyInt();
    else (field == 6 ? n.velocityDigit : n.durationDigit) = kExtremeDigits[rng() % std::size(kExtremeDigits)];
  }
  for (int* setting : {&staff.keySignature, &staff.timeSignature, &staff.entryLeft, &staff.copiedBar})
    if (rng() % 4 == 0) *setting = anyInt();
}

// Every table and sum a note is looked up in, on the way to the screen and the speaker.
void UseEveryTable(const Staff& staff) {
  for (const Note& n : staff.notes) {
    Note copy = n;
    RespellToken(copy);
    FillFromToken(copy, copy.token);
    StoredPicture(n);
    VelocityOfDigit(n.velocityDigit);
    MicrosecondsOfDigit(n.durationDigit, 1e308);
    StaffLinePitch(n.top);
    EntryTopOfPitch(n.pitch);
    KestraTopOfPitch(n.pitch);
    KeySignatureShift(staff.keySignature, n.linePitch);
    EntryFamily(n.top);
    InView(n);
    ClashSearch(staff, 0, n.left, n.top, n.IsRest());
    InBar(n.left, n.top);
    ClickColumn(n.left);
    ClickRow(n.top);
  }
}

}  // namespace

TEST(ReaderFuzz, MutatedFilesNeverCrashAndSettle) {
  // LIRENZA_FUZZ_SECONDS lengthens the run for a deeper search; CI keeps it short.
  const char* env = std::getenv("LIRENZA_FUZZ_SECONDS");
  const double seconds = env ? std::atof(env) : 1.5;
  std::mt19937 rng(12345);
  const auto instruments = AllInstruments();
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  long runs = 0;
  while (std::chrono::steady_clock::now() < deadline) {
    const std::string text = Mutate(kSeeds[rng() % std::size(kSeeds)], rng);
    const ScoreFile first = ParseScoreFile(text);
    Staff staff;
    const int slider = ApplyScoreFile(staff, first);
    ASSERT_TRUE(slider >= 0 && slider <= 15) << slider;
    if (rng() % 2) DamageDirectly(staff, rng);
    RespellNotesInView(staff);
    // The MIDI file stays valid, and every note with a key in it gives one note-on and one
    // ending event at the writer's times; the program is the synthesizer's for the number.
    const double gate = kGates[rng() % std::size(kGates)];
    const int inst = rng() % 2 ? kExtremeInts[rng() % std::size(kExtremeInts)]
                               : instruments[rng() % instruments.size()].number;
    int leftOut = -1;
    const auto file = Decode(MidiFileBytes(staff.notes, gate, TempoForSlider(slider).tempo, inst, &leftOut));
    ASSERT_TRUE(file.ok) << file.error << "\ninput: " << text;
    if (inst >= 1 && inst <= 1 << 20) { ASSERT_EQ(file.program, BankProgramOf(inst).program) << inst; }
    const int oldByte = static_cast<int>((static_cast<unsigned>(inst) - 1) & 0xFF);  // what files always held
    if (oldByte < 0x80) { ASSERT_EQ(file.program, oldByte) << inst; }
    const auto events = MidiEvents(staff.notes, gate);
    ASSERT_EQ(file.notes.size() + 1, events.size()) << text;
    int outOfRange = 0, sounding = 0;
    for (std::size_t i = 1; i < staff.notes.size(); ++i) {
      const Note& n = staff.notes[i];
      outOfRange += (n.pitch < 0 || n.pitch > 127) && !n.IsRest();
      sounding += n.pitch >= 0 && n.pitch <= 127 && VelocityOfDigit(n.velocityDigit) > 0;
    }
    for (std::size_t i = 0; i < file.notes.size(); ++i) {
      ASSERT_EQ(file.notes[i].tick, events[i + 1].time) << text;
      ASSERT_EQ(file.notes[i].key, events[i + 1].pitch) << text;
      sounding -= file.notes[i].velocity > 0;
    }
    ASSERT_EQ(sounding, 0) << text;
    ASSERT_EQ(leftOut, outOfRange) << text;
    BuildEventList(staff.notes, 1.0, 0.95);
    TuningTables tuning;
    TuneToKey(tuning, staff.keySignature);
    KeySignaturePicture(staff.keySignature);
    TimeSignaturePicture(staff.timeSignature);
    UseEveryTable(staff);
    ScrollTo(staff, 720);
    ScrollTo(staff, 0);

    // A read-and-write may tidy a file once (a line end inside the last token is cut on
    // the next read, as trailing blanks are); after that it must not drift.
    const std::string once = ScoreFileText(first);
    const std::string twice = ScoreFileText(ParseScoreFile(once));
    const std::string thrice = ScoreFileText(ParseScoreFile(twice));
    ASSERT_EQ(twice, thrice) << "input: " << text;
    ASSERT_EQ(ParseScoreFile(once).notes.size(), first.notes.size()) << "input: " << text;
    ++runs;
  }
  EXPECT_GT(runs, 100);
  std::printf("fuzzed %ld mutated files\n", runs);
}
