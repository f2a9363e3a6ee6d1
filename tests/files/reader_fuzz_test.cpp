// Any bytes at all must give a staff, never a crash: mutated score files go through
// the reader, the staff, the MIDI writer and the playback list. Reading and writing
// again must settle and keep every note.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <random>

#include "files/midi_writer.h"
#include "files/score_file.h"
#include "score/staff.h"
#include "violin/event_list.h"

using namespace lirenza;

namespace {

const char* kSeeds[] = {
    "120,105,0,60,60,0,0,0,9,8,C498 152,99,0,62,62,0,0,0,9,2,D492 ;演奏;作曲家/解説;1;41;7;0;0\n",
    "128,114,0,60,60,0,0,0,9,8,C498 160,111,1,63,64,-1,2,0,9,8,E4b98 192,106,0,60,60,0,0,0,0,8,0008 ;題;;5;0;7;9;2\n",
    ";;;5;0;7;0;0\n",
    "",
};

std::string Mutate(std::string s, std::mt19937& rng) {
  static const char pieces[] = ";, \r\n\t0123456789-#bABCDEFGx\xE3\x81\x82\x80\xFF";
  const int edits = 1 + static_cast<int>(rng() % 8);
  for (int e = 0; e < edits; ++e) {
    const std::size_t at = s.empty() ? 0 : rng() % (s.size() + 1);
    switch (rng() % 5) {
      case 0:  // insert a character that matters to the grammar, or a stray byte
        s.insert(s.begin() + at, rng() % 4 ? pieces[rng() % (sizeof pieces - 1)] : static_cast<char>(rng()));
        break;
      case 1:
        if (!s.empty() && at < s.size()) s.erase(at, 1 + rng() % 4);
        break;
      case 2:
        if (at < s.size()) s[at] = static_cast<char>(rng());
        break;
      case 3: {  // splice in a piece of itself
        if (s.empty()) break;
        const std::size_t from = rng() % s.size();
        s.insert(at, s.substr(from, 1 + rng() % 30));
        break;
      }
      default:  // a huge number
        s.insert(at, "99999999999999999999");
    }
  }
  return s;
}

}  // namespace

TEST(ReaderFuzz, MutatedFilesNeverCrashAndSettle) {
  // LIRENZA_FUZZ_SECONDS lengthens the run for a deeper search; CI keeps it short.
  const char* env = std::getenv("LIRENZA_FUZZ_SECONDS");
  const double seconds = env ? std::atof(env) : 1.5;
  std::mt19937 rng(12345);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  long runs = 0;
  while (std::chrono::steady_clock::now() < deadline) {
    const std::string text = Mutate(kSeeds[rng() % std::size(kSeeds)], rng);
    Staff staff;
    const int slider = LoadScoreText(staff, text);
    ASSERT_GE(slider, 0);
    ASSERT_LE(slider, 15);
    RepaintInView(staff);
    MidiEvents(staff.icv, 0.95);
    BuildEventList(staff.icv, 1.0, 0.95);
    SetMSBValue(staff, 720);
    SetMSBValue(staff, 0);

    // A read-and-write may tidy a file once (a line end inside the last token is cut on
    // the next read, as trailing blanks are); after that it must not drift.
    const ScoreFile first = ParseScoreFile(text);
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
