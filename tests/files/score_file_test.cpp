// The .note file: the exact text a save writes and the forgiving reader.
#include <gtest/gtest.h>

#include <random>

#include "files/score_file.h"
#include "score/staff.h"

using namespace lirenza;

namespace {
const char* kTwoNotes =
    "120,105,0,60,60,0,0,0,9,8,C498 152,99,0,62,62,0,0,0,9,2,D492 ;演奏;作曲家/解説;1;41;7;0;0";
}

TEST(ScoreFileText, TheTwoNoteExampleReadsAndWritesBackExactly) {
  ScoreFile f = ParseScoreFile(std::string(kTwoNotes) + "\n");
  ASSERT_EQ(f.notes.size(), 2u);
  EXPECT_EQ(f.notes[0].left, 120);
  EXPECT_EQ(f.notes[0].top, 105);
  EXPECT_EQ(f.notes[0].token, "C498");
  EXPECT_EQ(f.notes[0].picture, "n8");
  EXPECT_EQ(f.notes[1].left, 152);
  EXPECT_EQ(f.notes[1].durationDigit, "2");
  EXPECT_EQ(f.title, "演奏");
  EXPECT_EQ(f.comment, "作曲家/解説");
  EXPECT_EQ(f.instrumentGroup, 1);
  EXPECT_EQ(f.instrumentRow, 41);
  EXPECT_EQ(f.tempoSlider, 7);
  EXPECT_EQ(ScoreFileText(f), std::string(kTwoNotes) + "\n");
}

TEST(ScoreFileText, SaveWritesEntryOrderUnscrolledAndThenResets) {
  Staff s;
  LoadKestraLine(s, "E4b98 C498 0008");
  s.notes[1].left = 400;  // entry order, not time order, is file order
  s.title = "題";
  s.comment = "";
  s.keySignature = 9;
  s.timeSignature = 2;
  ScrollTo(s, 288);
  WindowSettings settings{3, 2, 12};
  const std::string text = SaveFileText(s, settings);
  EXPECT_EQ(text,
            "400,108,0,63,64,-1,2,0,9,8,E4b98 160,114,0,60,60,0,0,0,9,8,C498 "
            "192,106,0,60,60,0,0,0,0,8,0008 ;題;;3;2;12;9;2\n");
  EXPECT_EQ(s.scrollValue, 0);
  ResetAfterSave(s, settings);
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.title, "演奏");
  EXPECT_EQ(s.comment, "作曲家/解説");
  EXPECT_EQ(s.keySignature, 0);
  EXPECT_EQ(s.timeSignature, 0);
  EXPECT_EQ(s.keySignaturePicture, "S0");
  EXPECT_EQ(s.timeSignaturePicture, "T4");
  EXPECT_EQ(settings.tempoSlider, 7);
  EXPECT_EQ(settings.instrumentGroup, 3) << "saving leaves the instrument alone";
}

TEST(ScoreFileText, AnEmptyStaffBeginsWithTheSeparator) {
  Staff s;
  WindowSettings settings;
  EXPECT_EQ(SaveFileText(s, settings), ";;;5;0;7;0;0\n");
  EXPECT_TRUE(ParseScoreFile(";;;5;0;7;0;0\n").notes.empty());
  EXPECT_TRUE(ParseScoreFile("").notes.empty());
  EXPECT_TRUE(ParseScoreFile("   ;x").notes.empty());
}

TEST(ScoreFileReader, IsLenientWhereverAFileIsOdd) {
  struct Case {
    const char* name;
    std::string text;
    std::size_t notes;
    std::string title, comment;
    int tempo, keySignature, timeSignature;
  } cases[] = {
      {"carriage returns are removed, not turned into line ends",
       "120,105,0,60,60,0,0,0,9,8,C498 ;a\r\nb;c\rd;1;2;3;4;5\r\n", 1, "a\nb", "cd", 3, 4, 5},
      {"line feeds in the comment survive", ";t;line1\nline2;0;0;9;0;0\n", 0, "t", "line1\nline2", 9, 0, 0},
      {"a semicolon in the title shifts the fields", ";a;b;c;5;0;7;3;1\n", 0, "a", "b", 0, 7, 3},
      {"fewer than eight fields", "120,105,0,60,60,0,0,0,9,8,C498 ;only", 1, "only", "", 0, 0, 0},
      {"numbers with rubbish behind them; the tempo held, a time of -2 read as 0", ";;;x;y;12abc;3.9;-2\n", 0,
       "", "", 12, 3, 0},
      {"no fields at all: every word is a record", "garbage without separators", 3, "", "", 0, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ScoreFile f = ParseScoreFile(c.text);
    EXPECT_EQ(f.notes.size(), c.notes);
    EXPECT_EQ(f.title, c.title);
    EXPECT_EQ(f.comment, c.comment);
    EXPECT_EQ(f.tempoSlider, c.tempo);
    EXPECT_EQ(f.keySignature, c.keySignature);
    EXPECT_EQ(f.timeSignature, c.timeSignature);
  }
}

namespace {
// The report in a few words, so a case names every repair it expects and no other.
std::string Summary(const ScoreReadReport& r) {
  std::string s;
  auto add = [&](const char* what, long long n) {
    if (n) s += std::string(s.empty() ? "" : " ") + what + "=" + std::to_string(n);
  };
  if (!r.notAScore.empty()) s = "not a score";
  add("bom", r.byteOrderMarkSkipped);
  add("notes only", r.noScoreFields);
  add("missing score fields", r.missingScoreFields);
  add("unreadable score numbers", r.unreadableScoreNumbers);
  add("missing", r.recordsMissingFields);
  add("extra", r.recordsWithExtraFields);
  add("unreadable", r.recordsWithUnreadableNumbers);
  add("huge", r.recordsWithHugeNumbers);
  if (r.tempoOutOfRange) add("tempo", *r.tempoOutOfRange);
  if (r.keyOutOfRange) add("key", *r.keyOutOfRange);
  if (r.timeOutOfRange) add("time", *r.timeOutOfRange);
  return s;
}
}  // namespace

TEST(ScoreFileReader, CountsEveryRepairByKindAndTellsTextThatIsNoScore) {
  struct Case {
    std::string text, summary;
  } cases[] = {
      {std::string(kTwoNotes) + "\n", ""},
      {"\xEF\xBB\xBF" + std::string(kTwoNotes), "bom=1"},
      {"120,105,0,60 152,99 ;t;;1;41;7;0;0\n", "missing=2"},
      {"120,105,0,60,60,0,0,0,9,8,C4,98 ;t;;1;41;7;0;0\n", "extra=1"},
      {"1e308,-1e308,0,7FFF,60,0,0,0,9,8,C498 999999999999,5,0,60,x,0,0,0,9,8,C498 ;;;5;0;7;0;0\n",
       "unreadable=2 huge=2"},
      {";;;5;0;99;15;9\n", "tempo=99 key=15 time=9"},
      {";;;5;0;-3;-1;0\n", "tempo=-3 key=-1"},
      {";;;x;0;;1;0\n", "unreadable score numbers=2"},
      {";t;c;5", "missing score fields=4"},
      {"120,105,0,60,60,0,0,0,9,8,C498 ", "notes only=1"},
      {"", "not a score notes only=1"},
      {"hello, world\n", "not a score notes only=1 missing=2 unreadable=2"},
      {std::string("\0;;;5;0;7;0;0", 13), "not a score missing=1 unreadable=1"},
      {"\xC3\x28;;;5;0;7;0;0", "not a score missing=1 unreadable=1"},
      {"\xED\xA0\x80;;;5;0;7;0;0", "not a score missing=1 unreadable=1"},  // a UTF-16 surrogate
      {"\xC0\xAF;;;5;0;7;0;0", "not a score missing=1 unreadable=1"},      // an overlong '/'
      {"\xF0\x9F\x8E\xBB;;;5;0;7;0;0", "missing=1 unreadable=1"},          // 🎻 is text
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    ScoreReadReport report;
    const ScoreFile f = ParseScoreFile(c.text, &report);
    EXPECT_EQ(Summary(report), c.summary);
    EXPECT_EQ(report.Repairs().empty(), report.notAScore.empty() && c.summary.empty());
    for (const auto& n : f.notes) {
      for (int v : {n.left, n.top, n.pitch, n.linePitch, n.accidental, n.accidentalSign, n.keyShift}) {
        EXPECT_LE(v, kMaxNoteNumberMagnitude);
        EXPECT_GE(v, -kMaxNoteNumberMagnitude);
      }
    }
    EXPECT_GE(f.tempoSlider, 0);
    EXPECT_LE(f.tempoSlider, kMaxTempoSlider);
    EXPECT_LE(f.keySignature, kMaxKeyNumber);
    EXPECT_LE(f.timeSignature, kMaxTimeNumber);
  }
  // The mark is skipped, not read into the first number; huge places are held, not wrapped.
  EXPECT_EQ(ParseScoreFile("\xEF\xBB\xBF" + std::string(kTwoNotes)).notes[0].left, 120);
  const ScoreFile huge = ParseScoreFile("1e308,-99999999999,0,60,60,0,0,0,9,8,C498 ;");
  EXPECT_EQ(huge.notes[0].left, kMaxNoteNumberMagnitude);
  EXPECT_EQ(huge.notes[0].top, -kMaxNoteNumberMagnitude);
}

TEST(ScoreFileReader, RecordsTakeWhatTheyHoldAndRestsAlwaysShowARest) {
  ScoreFile f = ParseScoreFile(
      "200,111,1,60,60,0,0,0,0,4,C404 300,99,1,62,62,0,0,0,9,A,D49A 310,99 320,99,0,70,71,-1,2,0,9,x,B4b9x ;");
  ASSERT_EQ(f.notes.size(), 4u);
  EXPECT_EQ(f.notes[0].picture, "r4");
  EXPECT_TRUE(f.notes[0].stemDown) << "position still follows the stored flag";
  EXPECT_EQ(f.notes[1].picture, "uA");
  // A short record: missing fields are empty or 0, and a missing flag is not "0".
  EXPECT_EQ(f.notes[2].left, 310);
  EXPECT_EQ(f.notes[2].pitch, 0);
  EXPECT_EQ(f.notes[2].velocityDigit, "");
  EXPECT_TRUE(f.notes[2].stemDown);
  EXPECT_EQ(f.notes[2].picture, "");
  EXPECT_EQ(f.notes[3].accidental, -1);
  EXPECT_EQ(f.notes[3].picture, "") << "no picture for a digit that is not hexadecimal";
}

TEST(LoadScoreText, ReplacesTheStaffKeepsTheCursorAndMapsTheSignaturePictures) {
  Staff s;
  LoadKestraLine(s, "C498 D498 E498");
  s.entryLeft = 700;
  s.hasChanges = true;
  int slider = LoadScoreText(s, "152,99,0,62,62,0,0,0,9,2,D492 ;曲;;1;41;15;10;6\n");
  EXPECT_EQ(s.NoteCount(), 1);
  EXPECT_EQ(s.notes[1].token, "D492");
  EXPECT_EQ(s.entryLeft, 136) << "no reader sets the cursor";
  EXPECT_EQ(slider, 15);
  EXPECT_EQ(s.keySignature, 10);
  EXPECT_EQ(s.keySignaturePicture, "F3");
  EXPECT_EQ(s.timeSignature, 6);
  EXPECT_EQ(s.timeSignaturePicture, "T5");
  EXPECT_TRUE(s.hasChanges) << "the title changed";
  // Signature numbers outside the tables read as a new score's, which would otherwise
  // sound every note at 0 Hz; the slider is held to its range.
  slider = LoadScoreText(s, ";曲;;0;0;99;20;30\n");
  EXPECT_EQ(s.keySignature, 0);
  EXPECT_EQ(s.keySignaturePicture, "S0");
  EXPECT_EQ(s.timeSignature, 0);
  EXPECT_EQ(s.timeSignaturePicture, "T4");
  EXPECT_EQ(slider, 15);
  EXPECT_EQ(LoadScoreText(s, ";;;;;-4;;"), 0);
  EXPECT_TRUE(s.hasChanges) << "the title changed to empty";
  LoadScoreText(s, ";;;;;-4;;");
  EXPECT_FALSE(s.hasChanges) << "same texts: a load alone is no change";
}

namespace {
Note RandomNote(std::mt19937& rng) {
  const char* hex = "0123456789ABCDEF";
  Note n;
  n.left = 120 + 8 * static_cast<int>(rng() % 1200);
  n.top = 57 + 3 * static_cast<int>(rng() % 36);
  n.stemDown = rng() % 2;
  n.linePitch = 21 + static_cast<int>(rng() % 88);
  n.accidental = static_cast<int>(rng() % 3) - 1;
  n.accidentalSign = static_cast<int>(rng() % 4);
  n.keyShift = static_cast<int>(rng() % 3) - 1;
  n.pitch = n.linePitch + n.accidental + n.keyShift;
  n.velocityDigit = std::string(1, hex[rng() % 16]);
  n.durationDigit = std::string(1, hex[rng() % 16]);
  RespellToken(n);
  return n;
}

void ExpectSameStoredFields(const Note& a, const Note& b) {
  EXPECT_EQ(a.left, b.left);
  EXPECT_EQ(a.top, b.top);
  EXPECT_EQ(a.stemDown, b.stemDown);
  EXPECT_EQ(a.pitch, b.pitch);
  EXPECT_EQ(a.linePitch, b.linePitch);
  EXPECT_EQ(a.accidental, b.accidental);
  EXPECT_EQ(a.accidentalSign, b.accidentalSign);
  EXPECT_EQ(a.keyShift, b.keyShift);
  EXPECT_EQ(a.velocityDigit, b.velocityDigit);
  EXPECT_EQ(a.durationDigit, b.durationDigit);
  EXPECT_EQ(a.token, b.token);
}
}  // namespace

TEST(ScoreFileRoundTrip, RandomStaffsComeBackNoteForNote) {
  std::mt19937 rng(2024);
  const std::string texts[] = {"", "題名", "a,b c", "改行\nあり", "Ünïcode ♪ 🎻"};
  for (int round = 0; round < 300; ++round) {
    Staff s;
    const int count = static_cast<int>(rng() % 80);
    for (int i = 0; i < count; ++i) s.AddNote(RandomNote(rng));
    s.title = texts[rng() % 5];
    s.comment = texts[rng() % 5];
    s.keySignature = static_cast<int>(rng() % 15);
    s.timeSignature = static_cast<int>(rng() % 9);
    WindowSettings settings{static_cast<int>(rng() % 18), static_cast<int>(rng() % 20), static_cast<int>(rng() % 16)};
    const std::string text = SaveFileText(s, settings);
    ScoreReadReport report;
    ParseScoreFile(text, &report);
    EXPECT_TRUE(report.Repairs().empty()) << "a saved file needs no repair: " << report.Repairs().front();

    Staff back;
    const int slider = LoadScoreText(back, text);
    ASSERT_EQ(back.NoteCount(), count);
    for (int i = 1; i <= count; ++i) ExpectSameStoredFields(back.notes[i], s.notes[i]);
    EXPECT_EQ(back.title, s.title);
    EXPECT_EQ(back.comment, s.comment);
    EXPECT_EQ(back.keySignature, s.keySignature);
    EXPECT_EQ(back.timeSignature, s.timeSignature);
    EXPECT_EQ(slider, settings.tempoSlider);
    EXPECT_EQ(SaveFileText(back, settings), text);
  }
}
