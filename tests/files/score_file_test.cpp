// The .note file: the exact text a save writes and the forgiving reader.
#include <gtest/gtest.h>

#include <random>

#include "files/score_file.h"
#include "score/staff.h"

using namespace lirenza;

namespace {
const std::string kTwoNotes =
    "120,105,0,60,60,0,0,0,9,8,C498 152,99,0,62,62,0,0,0,9,2,D492 ;演奏;作曲家/解説;1;41;7;0;0\n";
}

TEST(ScoreFile, SaveWritesEntryOrderUnscrolledAndTheTwoNoteFileReadsBackExactly) {
  Staff s;
  LoadKestraLine(s, "E4b98 C498 0008");
  s.notes[1].left = 400;  // entry order, not time order, is file order
  s.title = "題";
  s.keySignature = 9;
  s.timeSignature = 2;
  ScrollTo(s, 288);
  WindowSettings settings{3, 2, 12};
  EXPECT_EQ(SaveFileText(s, settings), "400,108,0,63,64,-1,2,0,9,8,E4b98 160,114,0,60,60,0,0,0,9,8,C498 "
                                       "192,106,0,60,60,0,0,0,0,8,0008 ;題;;3;2;12;9;2\n");
  ResetAfterSave(s, settings);
  EXPECT_EQ(SaveFileText(s, settings), ";演奏;作曲家/解説;3;2;7;0;0\n") << "a new score, the instrument kept";
  EXPECT_EQ(ScoreFileText(ParseScoreFile(kTwoNotes)), kTwoNotes);
  EXPECT_EQ(ParseScoreFile(kTwoNotes).notes[1].picture, "n2") << "a loaded note wears its stored picture";
}

namespace {
// The report in a few words, so a case names every repair it expects and no other.
std::string Summary(const ScoreReadReport& r) {
  const char* names[] = {"bom", "notes only", "missing score fields", "unreadable score numbers", "missing",
                         "extra", "unreadable", "huge", "tempo", "key", "time"};
  const long long counts[] = {r.byteOrderMarkSkipped, r.noScoreFields, r.missingScoreFields, r.unreadableScoreNumbers,
                              r.recordsMissingFields, r.recordsWithExtraFields, r.recordsWithUnreadableNumbers,
                              r.recordsWithHugeNumbers, r.tempoOutOfRange.value_or(0), r.keyOutOfRange.value_or(0),
                              r.timeOutOfRange.value_or(0)};
  std::string s = r.notAScore.empty() ? "" : "not a score";
  for (int i = 0; i < 11; ++i)
    if (counts[i]) s += (s.empty() ? "" : " ") + std::string(names[i]) + "=" + std::to_string(counts[i]);
  return s;
}
}  // namespace

TEST(ScoreFileReader, ReadsAnyTextAndCountsEveryRepairByKind) {
  struct Case {
    std::string text, summary, fields;  // title|comment|tempo key time|notes|first left,top
  } cases[] = {
      {kTwoNotes, "", "演奏|作曲家/解説|7 0 0|2|120,105"},
      {"\xEF\xBB\xBF" + kTwoNotes, "bom=1", "演奏|作曲家/解説|7 0 0|2|120,105"},
      {"120,105,0,60,60,0,0,0,9,8,C498 ;a\r\nb;c\rd;1;2;3;4;5\r\n", "", "a\nb|cd|3 4 5|1|120,105"},
      {";a;b;c;5;0;7;3;1\n", "unreadable score numbers=1", "a|b|0 7 3|0|"},  // a ';' in the title shifts all
      {"120,105,0,60 152,99 ;t;;1;41;7;0;0\n", "missing=2", "t||7 0 0|2|120,105"},
      {"120,105,0,60,60,0,0,0,9,8,C4,98 ;t;;1;41;7;0;0\n", "extra=1", "t||7 0 0|1|120,105"},
      {"1e308,-99999999999,0,7FFF,60,0,0,0,9,8,C498 999999999999,5,0,60,x,0,0,0,9,8,C498 ;;;5;0;7;0;0\n",
       "unreadable=2 huge=2", "||7 0 0|2|10000000,-10000000"},
      {";;;x;y;12abc;3.9;-2\n", "unreadable score numbers=4 time=-2", "||12 3 0|0|"},
      {";;;5;0;99;15;9\n", "tempo=99 key=15 time=9", "||15 0 0|0|"},
      {";;;5;0;-3;-1;0\n", "tempo=-3 key=-1", "||0 0 0|0|"},
      {";t;c;5", "missing score fields=4", "t|c|0 0 0|0|"},
      {"120,105,0,60,60,0,0,0,9,8,C498 ", "notes only=1", "||0 0 0|1|120,105"},
      {"", "not a score notes only=1", "||0 0 0|0|"},
      {"hello, world\n", "not a score notes only=1 missing=2 unreadable=2", "||0 0 0|2|0,0"},
      {std::string("\0;;;5;0;7;0;0", 13), "not a score missing=1 unreadable=1", "||7 0 0|1|0,0"},
      {"\xED\xA0\x80;;;5;0;7;0;0", "not a score missing=1 unreadable=1", "||7 0 0|1|0,0"},  // a surrogate
      {"\xC0\xAF;;;5;0;7;0;0", "not a score missing=1 unreadable=1", "||7 0 0|1|0,0"},      // an overlong '/'
      {"\xF0\x9F\x8E\xBB;;;5;0;7;0;0", "missing=1 unreadable=1", "||7 0 0|1|0,0"},          // 🎻 is text
  };
  for (const auto& c : cases) {
    ScoreReadReport report;
    const ScoreFile f = ParseScoreFile(c.text, &report);
    EXPECT_EQ(Summary(report), c.summary) << c.text;
    EXPECT_EQ(report.Repairs().empty(), report.notAScore.empty() && c.summary.empty()) << c.text;
    auto str = [](auto n) { return std::to_string(n); };
    const std::string first = f.notes.empty() ? "" : str(f.notes[0].left) + "," + str(f.notes[0].top);
    EXPECT_EQ(f.title + "|" + f.comment + "|" + str(f.tempoSlider) + " " + str(f.keySignature) + " " +
                  str(f.timeSignature) + "|" + str(f.notes.size()) + "|" + first, c.fields) << c.text;
  }
}

TEST(ScoreFileRoundTrip, RandomStaffsComeBackNoteForNote) {
  std::mt19937 rng(2024);
  const std::string texts[] = {"", "題名", "a,b c", "改行\nあり", "Ünïcode ♪ 🎻"};
  auto any = [&](int from, int count) { return from + static_cast<int>(rng() % count); };
  for (int round = 0; round < 300; ++round) {
    Staff s;
    for (int i = any(0, 80); i > 0; --i) {
      Note n;
      n.left = 120 + 8 * any(0, 1200);
      n.top = 57 + 3 * any(0, 36);
      n.stemDown = rng() % 2;
      n.linePitch = any(21, 88);
      n.accidental = any(-1, 3);
      n.accidentalSign = any(0, 4);
      n.keyShift = any(-1, 3);
      n.pitch = n.linePitch + n.accidental + n.keyShift;
      n.velocityDigit = std::string(1, "0123456789ABCDEF"[rng() % 16]);
      n.durationDigit = std::string(1, "0123456789ABCDEF"[rng() % 16]);
      RespellToken(n);
      s.AddNote(n);
    }
    s.title = texts[rng() % 5];
    s.comment = texts[rng() % 5];
    s.keySignature = any(0, 15);
    s.timeSignature = any(0, 9);
    WindowSettings settings{any(0, 18), any(0, 20), any(0, 16)};
    const std::string text = SaveFileText(s, settings);
    ScoreReadReport report;
    ParseScoreFile(text, &report);
    EXPECT_TRUE(report.Repairs().empty()) << "a saved file needs no repair: " << report.Repairs().front();
    Staff back;
    EXPECT_EQ(LoadScoreText(back, text), settings.tempoSlider);
    ASSERT_EQ(back.NoteCount(), s.NoteCount());
    for (int i = 1; i <= s.NoteCount(); ++i) ASSERT_TRUE(back.notes[i].StoredFields() == s.notes[i].StoredFields());
    EXPECT_EQ(std::tie(back.title, back.comment, back.keySignature, back.timeSignature),
              std::tie(s.title, s.comment, s.keySignature, s.timeSignature));
    EXPECT_EQ(SaveFileText(back, settings), text);
  }
}
