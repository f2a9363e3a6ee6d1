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
  EXPECT_EQ(f.notes[0].note, "C498");
  EXPECT_EQ(f.notes[0].backdrop, "n8");
  EXPECT_EQ(f.notes[1].left, 152);
  EXPECT_EQ(f.notes[1].dr, "2");
  EXPECT_EQ(f.title, "演奏");
  EXPECT_EQ(f.comment, "作曲家/解説");
  EXPECT_EQ(f.instrumentGroup, 1);
  EXPECT_EQ(f.instrumentRow, 41);
  EXPECT_EQ(f.tempoSlider, 7);
  EXPECT_EQ(ScoreFileText(f), std::string(kTwoNotes) + "\n");
}

TEST(ScoreFileText, SaveWritesEntryOrderUnscrolledAndThenResets) {
  Staff s;
  ChangeKestra(s, "E4b98 C498 0008");
  s.icv[1].left = 400;  // entry order, not time order, is file order
  s.title = "題";
  s.comment = "";
  s.keyN = 9;
  s.timeN = 2;
  SetMSBValue(s, 288);
  WindowSettings settings{3, 2, 12};
  const std::string text = SaveFileText(s, settings);
  EXPECT_EQ(text,
            "400,108,0,63,64,-1,2,0,9,8,E4b98 160,114,0,60,60,0,0,0,9,8,C498 "
            "192,106,0,60,60,0,0,0,0,8,0008 ;題;;3;2;12;9;2\n");
  EXPECT_EQ(s.msbValue, 0);
  ResetAfterSave(s, settings);
  EXPECT_EQ(s.NoteCount(), 0);
  EXPECT_EQ(s.title, "演奏");
  EXPECT_EQ(s.comment, "作曲家/解説");
  EXPECT_EQ(s.keyN, 0);
  EXPECT_EQ(s.timeN, 0);
  EXPECT_EQ(s.kcvPicture, "S0");
  EXPECT_EQ(s.tcvPicture, "T4");
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
    int tempo, keyN, timeN;
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
    EXPECT_EQ(f.keyN, c.keyN);
    EXPECT_EQ(f.timeN, c.timeN);
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
      for (int v : {n.left, n.top, n.noteNo, n.nline, n.sf, n.sib, n.ks}) {
        EXPECT_LE(v, kMaxNoteNumberMagnitude);
        EXPECT_GE(v, -kMaxNoteNumberMagnitude);
      }
    }
    EXPECT_GE(f.tempoSlider, 0);
    EXPECT_LE(f.tempoSlider, kMaxTempoSlider);
    EXPECT_LE(f.keyN, kMaxKeyNumber);
    EXPECT_LE(f.timeN, kMaxTimeNumber);
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
  EXPECT_EQ(f.notes[0].backdrop, "r4");
  EXPECT_TRUE(f.notes[0].position) << "position still follows the stored flag";
  EXPECT_EQ(f.notes[1].backdrop, "uA");
  // A short record: missing fields are empty or 0, and a missing flag is not "0".
  EXPECT_EQ(f.notes[2].left, 310);
  EXPECT_EQ(f.notes[2].noteNo, 0);
  EXPECT_EQ(f.notes[2].ve, "");
  EXPECT_TRUE(f.notes[2].position);
  EXPECT_EQ(f.notes[2].backdrop, "");
  EXPECT_EQ(f.notes[3].sf, -1);
  EXPECT_EQ(f.notes[3].backdrop, "") << "no picture for a digit that is not hexadecimal";
}

TEST(LoadScoreText, ReplacesTheStaffKeepsTheCursorAndMapsTheSignaturePictures) {
  Staff s;
  ChangeKestra(s, "C498 D498 E498");
  s.preNote[0] = 700;
  s.noteChanged = true;
  int slider = LoadScoreText(s, "152,99,0,62,62,0,0,0,9,2,D492 ;曲;;1;41;15;10;6\n");
  EXPECT_EQ(s.NoteCount(), 1);
  EXPECT_EQ(s.icv[1].note, "D492");
  EXPECT_EQ(s.preNote[0], 136) << "no reader sets the cursor";
  EXPECT_EQ(slider, 15);
  EXPECT_EQ(s.keyN, 10);
  EXPECT_EQ(s.kcvPicture, "F3");
  EXPECT_EQ(s.timeN, 6);
  EXPECT_EQ(s.tcvPicture, "T5");
  EXPECT_TRUE(s.noteChanged) << "the title changed";
  // Signature numbers outside the tables read as a new score's, which would otherwise
  // sound every note at 0 Hz; the slider is held to its range.
  slider = LoadScoreText(s, ";曲;;0;0;99;20;30\n");
  EXPECT_EQ(s.keyN, 0);
  EXPECT_EQ(s.kcvPicture, "S0");
  EXPECT_EQ(s.timeN, 0);
  EXPECT_EQ(s.tcvPicture, "T4");
  EXPECT_EQ(slider, 15);
  EXPECT_EQ(LoadScoreText(s, ";;;;;-4;;"), 0);
  EXPECT_TRUE(s.noteChanged) << "the title changed to empty";
  LoadScoreText(s, ";;;;;-4;;");
  EXPECT_FALSE(s.noteChanged) << "same texts: a load alone is no change";
}

namespace {
NoteCV RandomNote(std::mt19937& rng) {
  const char* hex = "0123456789ABCDEF";
  NoteCV n;
  n.left = 120 + 8 * static_cast<int>(rng() % 1200);
  n.top = 57 + 3 * static_cast<int>(rng() % 36);
  n.position = rng() % 2;
  n.nline = 21 + static_cast<int>(rng() % 88);
  n.sf = static_cast<int>(rng() % 3) - 1;
  n.sib = static_cast<int>(rng() % 4);
  n.ks = static_cast<int>(rng() % 3) - 1;
  n.noteNo = n.nline + n.sf + n.ks;
  n.ve = std::string(1, hex[rng() % 16]);
  n.dr = std::string(1, hex[rng() % 16]);
  RepaintToken(n);
  return n;
}

void ExpectSameStoredFields(const NoteCV& a, const NoteCV& b) {
  EXPECT_EQ(a.left, b.left);
  EXPECT_EQ(a.top, b.top);
  EXPECT_EQ(a.position, b.position);
  EXPECT_EQ(a.noteNo, b.noteNo);
  EXPECT_EQ(a.nline, b.nline);
  EXPECT_EQ(a.sf, b.sf);
  EXPECT_EQ(a.sib, b.sib);
  EXPECT_EQ(a.ks, b.ks);
  EXPECT_EQ(a.ve, b.ve);
  EXPECT_EQ(a.dr, b.dr);
  EXPECT_EQ(a.note, b.note);
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
    s.keyN = static_cast<int>(rng() % 15);
    s.timeN = static_cast<int>(rng() % 9);
    WindowSettings settings{static_cast<int>(rng() % 18), static_cast<int>(rng() % 20), static_cast<int>(rng() % 16)};
    const std::string text = SaveFileText(s, settings);
    ScoreReadReport report;
    ParseScoreFile(text, &report);
    EXPECT_TRUE(report.Repairs().empty()) << "a saved file needs no repair: " << report.Repairs().front();

    Staff back;
    const int slider = LoadScoreText(back, text);
    ASSERT_EQ(back.NoteCount(), count);
    for (int i = 1; i <= count; ++i) ExpectSameStoredFields(back.icv[i], s.icv[i]);
    EXPECT_EQ(back.title, s.title);
    EXPECT_EQ(back.comment, s.comment);
    EXPECT_EQ(back.keyN, s.keyN);
    EXPECT_EQ(back.timeN, s.timeN);
    EXPECT_EQ(slider, settings.tempoSlider);
    EXPECT_EQ(SaveFileText(back, settings), text);
  }
}
