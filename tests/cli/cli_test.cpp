// lirenza-cli as a script would use it: exact files out, independent tools reading
// them back, and one clear line with a non-zero exit for every mistake.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "cli_harness.h"
#include "files/midi_writer.h"
#include "files/score_file.h"
#include "score/staff.h"
#include "violin/event_list.h"
#include "violin/tempo_table.h"

using namespace lirenza;
using namespace lirenza::test;

namespace {
class Cli : public CliTest {};
}  // namespace

TEST_F(Cli, MidiOfTheOneNoteScoreIsTheKnownFileAndMidicsvReadsIt) {
  Write("one.note", "136,117,0,60,60,0,0,0,9,4,C494 ;One;;5;0;7;0;0\n");
  const CliResult r = Run({"midi", S("one.note"), "-o", S("one.mid")});
  ASSERT_TRUE(r.exit == 0 && r.err.empty()) << r.err;
  EXPECT_EQ(Slurp(P("one.mid")).size(), 79u);

  const CliResult csv = Run({P("one.mid").string()}, {}, "midicsv");
  ASSERT_EQ(csv.exit, 0) << csv.err;
  for (const char* line : {"0, 0, Header, 0, 1, 480", "1, 0, System_exclusive, 5, 126, 127, 9, 1, 247",
                           "1, 240, Text_t, \"created by Belrosite\"", "1, 240, Tempo, 500000", "1, 240, Program_c, 0, 40",
                           "1, 720, Note_on_c, 0, 60, 75", "1, 1176, Note_on_c, 0, 60, 0", "1, 1176, End_track"})
    EXPECT_NE(csv.out.find(line), std::string::npos) << line << "\n" << csv.out;
}

TEST_F(Cli, MidiOptionsAndTheInstrumentTheScoreNames) {
  Write("s.note", "136,117,0,60,60,0,0,0,9,4,C494 ;S;;0;1;3;0;0\n");  // group 0 row 1: instrument 2
  // Menu values that name no instrument fall back to the violin.
  Write("f.note", ";;;16;0;7;0;0\n"), Write("g.note", ";;;5;99;7;0;0\n"), Write("h.note", ";;\n");
  const struct { std::vector<std::string> args; std::vector<const char*> says; } cases[] = {
      {{"s.note"}, {"Program_c, 0, 1\n", "Tempo, 750000\n", "1, 1176, Note_on_c, 0, 60, 0"}},
      {{"s.note", "--tempo", "15"}, {"Program_c, 0, 1\n", "Tempo, 285714\n"}},
      {{"s.note", "--instrument", "16385"}, {"Program_c, 0, 0\n"}},
      {{"s.note", "--instrument", "74", "--gate", "0.75"}, {"Program_c, 0, 73\n", "1, 1080, Note_on_c, 0, 60, 0"}},
      {{"f.note"}, {"Program_c, 0, 40\n"}}, {{"g.note"}, {"Program_c, 0, 40\n"}}, {{"h.note"}, {"Program_c, 0, 40\n"}},
  };
  for (const auto& c : cases) {
    std::vector<std::string> args = {"midi", S(c.args[0]), "-o", S("s.mid")};
    args.insert(args.end(), c.args.begin() + 1, c.args.end());
    ASSERT_EQ(Run(args).exit, 0) << c.args[0];
    const CliResult csv = Run({S("s.mid")}, {}, "midicsv");
    for (const char* line : c.says) EXPECT_NE(csv.out.find(line), std::string::npos) << line << "\n" << csv.out;
  }
}

TEST_F(Cli, MistakesEndWithOneLineAndNoOutputFile) {
  Write("ok.note", ";;;5;0;7;0;0\n");
  Write("garbage.note", std::string("\x89PNG\r\n\x1a\n\0\0\0", 11));
  Write("words.note", "just some words\n");
  Write("bent.note", "\xEF\xBB\xBF;;;5;0;7;0;0\n");
  const struct { std::vector<std::string> args; int exit; const char* says; } cases[] = {
      {{"midi", S("none.note"), "-o", S("x.mid")}, 1, "none.note"},
      {{"midi", S("garbage.note"), "-o", S("x.mid")}, 1, "not a text file"},
      {{"inspect", S("words.note")}, 1, "neither note records nor score fields"},
      {{"midi", "/dev/zero", "-o", S("x.mid")}, 1, "256 MB"},
      {{"midi", S("bent.note"), "-o", S("x.mid"), "--strict"}, 1, "byte-order mark"},
      {{"midi", S("ok.note"), "-o", S("no/x.mid")}, 1, "cannot write"},
      {{"midi", S("ok.note"), "-d", S("no")}, 1, "no directory"},
      {{"midi", S("ok.note"), "-o", S("x.mid"), "--tempo", "16"}, 2, "--tempo"},
      {{"midi", S("ok.note"), "-o", S("x.mid"), "--gate", "0.5"}, 2, "--gate"},
      {{"midi", S("ok.note")}, 2, "-o"},
      {{"midi", S("ok.note"), S("words.note"), "-o", S("x.mid")}, 2, "-d DIR"},
      {{"midi", S("ok.note"), "-o", S("x.mid"), "-d", S("")}, 2, "not both"},
      {{"midi", S("ok.note"), S("no/ok.note"), "-d", S("")}, 2, "both be written"},
      {{"kestra", "C498", "-o", S("x.note"), "--title", "a;b;c;99;99;99;99"}, 2, "--title"},
      {{"kestra", "C498", "-o", S("x.note"), "--title", "a\nb"}, 2, "--title"},
      {{"kestra", "C4,98", "-o", S("x.note")}, 2, "\",\""},
      {{"kestra", "C498", "-o", S("x.note"), "--title", "\xff"}, 2, "UTF-8"},
      {{"tuning", "--colour"}, 2, "--colour"},
      {{"tuning", "--key", "15"}, 2, "--key"},
      {{"scale", "36", "-o", S("x.note")}, 2, "scale index"},
      {{"play"}, 2, "unknown command"},
  };
  for (const auto& c : cases) {
    const CliResult r = Run(c.args);
    EXPECT_TRUE(r.exit == c.exit && OneLine(r.err) && r.err.find(c.says) != std::string::npos) << c.says << ": " << r.err;
    EXPECT_FALSE(fs::exists(P("x.mid")) || fs::exists(P("x.note"))) << c.says;
  }
  // Nothing half-written stays behind in the folder.
  for (const auto& name : Entries()) EXPECT_NE(name[0], '.') << name;
}

// Through a link or another spelling of its path, the output would overwrite the score.
TEST_F(Cli, AnOutputThatIsItsOwnScoreIsRefusedAndTheScoreKept) {
  const std::string score = "136,117,0,60,60,0,0,0,9,4,C494 ;One;;5;0;7;0;0\n";
  Write("s.note", score), Write("t.mid", score);
  fs::create_symlink(P("s.note"), P("link.mid"));
  for (const std::string& out : {S("s.note"), S("link.mid"), S("./s.note")}) {
    const CliResult r = Run({"midi", S("s.note"), "-o", out});
    EXPECT_TRUE(r.exit == 1 && OneLine(r.err)) << out << ": " << r.err;
  }
  // With -d, the score's own folder and extension make the clash; the other score is written.
  EXPECT_EQ(Run({"midi", S("t.mid"), S("s.note"), "-d", S("")}).exit, 1);
  EXPECT_TRUE(Slurp(P("s.note")) == score && Slurp(P("t.mid")) == score);
  EXPECT_TRUE(fs::exists(P("s.mid")));
}

TEST_F(Cli, ManyScoresGoToOneFolderAndOneBadScoreStopsNoOther) {
  Write("a.note", "136,117,0,60,60,0,0,0,9,4,C494 ;A;;5;0;7;0;0\n");
  Write("b.note", "136,117,0,62,62,0,0,0,9,4,D494 ;B;;5;0;3;0;0\n");
  Write("bad.note", std::string("\0\0", 2));
  fs::create_directory(P("out"));
  const CliResult r = Run({"midi", S("a.note"), S("bad.note"), S("b.note"), "-d", S("out"), "--tempo", "9"});
  EXPECT_TRUE(r.exit == 1 && OneLine(r.err) && r.err.find("bad.note") != std::string::npos) << r.err;
  EXPECT_FALSE(fs::exists(P("out/bad.mid")));
  for (const std::string name : {"a", "b"}) {
    ASSERT_EQ(Run({"midi", S(name + ".note"), "-o", S("one.mid"), "--tempo", "9"}).exit, 0);
    EXPECT_EQ(Slurp(P("out") / (name + ".mid")), Slurp(P("one.mid"))) << name;
  }
  // "-o -" writes the same bytes to standard output.
  const CliResult out = Run({"midi", S("b.note"), "-o", "-", "--tempo", "9"});
  EXPECT_TRUE(out.exit == 0 && out.out == Slurp(P("one.mid"))) << out.err;
}

TEST_F(Cli, EveryCommandAnswersHelpWithItsOwnUsage) {
  for (const std::string command : {"midi", "tuning", "kestra", "scale", "inspect", "render", "instruments"}) {
    const CliResult r = Run({command, "--help"});
    EXPECT_TRUE(r.exit == 0 && r.err.empty()) << command << ": " << r.err;
    EXPECT_EQ(r.out.rfind("Usage: lirenza-cli " + command + " ", 0), 0u) << r.out;
    EXPECT_GE(Lines(r.out), 3) << "a usage line and what the command does";
  }
}

// Each repair is told on one line; notes MIDI cannot hold are counted and left out.
TEST_F(Cli, ADamagedScoreIsReadAsTheWindowReadsItAndEachRepairToldOnce) {
  Write("d.note", "\xEF\xBB\xBF" "136,117,0,60,60,0,0,0,9,4,C494 168,111,0,62 200,108 ;D;;5;0;7;99;12\n");
  CliResult r = Run({"midi", S("d.note"), "-o", S("d.mid")});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_EQ(Lines(r.err), 4) << r.err;
  for (const char* says : {"2 note records had missing fields, read as 0\n", "byte-order mark", "key signature number 99",
                           "time signature number 12"})
    EXPECT_NE(r.err.find(says), std::string::npos) << r.err;
  Write("w.note",  // note numbers past either end of MIDI's range around one it keeps
        "136,117,0,200,200,0,0,0,9,4,C494 168,117,0,60,60,0,0,0,9,4,C494 200,117,0,-3,-3,0,0,0,9,4,C494 ;W;;5;0;7;0;0\n");
  r = Run({"midi", S("w.note"), "-o", S("w.mid")});
  EXPECT_TRUE(r.exit == 0 && OneLine(r.err) && r.err.find(": 2 notes were left out") != std::string::npos) << r.err;
  const std::string csv = Run({S("w.mid")}, {}, "midicsv").out;
  int noteOns = 0;
  for (auto at = csv.find("Note_on_c"); at != std::string::npos; at = csv.find("Note_on_c", at + 1)) ++noteOns;
  EXPECT_EQ(noteOns, 2) << csv;
  // A file of notes alone, as another program might write it, converts too.
  Write("n.note", "136,117,0,60,60,0,0,0,9,4,C494 ");
  r = Run({"inspect", S("n.note"), "--json"});
  EXPECT_TRUE(r.exit == 0 && Lines(r.err) == 1 && r.out.find("\"token\":\"C494\"") != std::string::npos) << r.err << r.out;
}

TEST_F(Cli, KestraSaysHowManyTokensItLeftOut) {
  std::string line = "C498";
  for (int i = 1; i < 200; ++i) line += " D498";
  CliResult r = Run({"kestra", line, "-o", S("k.note")});
  EXPECT_TRUE(r.exit == 0 && OneLine(r.err) && r.err.find(" 8 ") != std::string::npos) << r.err;
  EXPECT_EQ(ParseScoreFile(Slurp(P("k.note"))).notes.size(), static_cast<std::size_t>(kMaxKestraTokens));
  line.resize(line.size() - 8 * 5);  // exactly the most a score holds
  r = Run({"kestra", line, "-o", S("k.note")});
  EXPECT_TRUE(r.exit == 0 && r.err.empty()) << r.err;
}

TEST_F(Cli, TextsReachTheTerminalEscapedAndJsonStaysValid) {
  Write("c.note", "136,117,0,60,60,0,0,0,9,4,C4\x1b[2J94 ;a\x1b]0;pwned\x07\xc2\x9b" "b;;5;0;7;0;0\n");
  CliResult r = Run({"inspect", S("c.note")});
  ASSERT_EQ(r.exit, 0) << r.err;
  for (const char* control : {"\x1b", "\x07", "\xc2\x9b"}) EXPECT_EQ(r.out.find(control), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("a\\x1b]0"), std::string::npos) << r.out;
  r = Run({"inspect", S("c.note"), "--json"});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_NE(r.out.find("\"title\":\"a\\u001b]0"), std::string::npos) << r.out;
  EXPECT_TRUE(IsUtf8Text(r.out));
  Write("c.json", r.out);
  EXPECT_EQ(Run({"-e", ".notes[0].token", S("c.json")}, {}, "jq").exit, 0) << r.out;
}

TEST_F(Cli, KestraAndScaleWriteWhatTheWindowWouldSave) {
  ASSERT_EQ(Run({"kestra", "C498 E4b98 0008", "-o", S("k.note")}).exit, 0);
  EXPECT_EQ(Slurp(P("k.note")),
            "128,114,0,60,60,0,0,0,9,8,C498 160,108,0,63,64,-1,2,0,9,8,E4b98 192,106,0,60,60,0,0,0,0,8,C408 "
            ";曲名;作曲家/解説;5;0;7;0;0\n");
  ASSERT_EQ(Run({"kestra", "G498", "-o", S("t.note"), "--title", "練習曲"}).exit, 0);
  EXPECT_NE(Slurp(P("t.note")).find(";練習曲;作曲家/解説;"), std::string::npos);
  ASSERT_EQ(Run({"scale", "0", "-o", S("major.note")}).exit, 0);
  const std::string major = Slurp(P("major.note"));
  EXPECT_EQ(major.rfind("128,114,0,60,60,0,0,0,9,8,C498 160,111,0,62,62,", 0), 0u) << major;
  EXPECT_NE(major.find(";メージャー(イオニアン)スケール;作曲家/解説;5;0;7;0;0\n"), std::string::npos) << major;
}

// Entered right to left, played left to right; in a chord the longer note sounds first
// and the next column follows the shortest.
TEST_F(Cli, InspectListsNotesInPlayingOrder) {
  Write("r.note", "200,114,0,64,64,0,0,0,9,4,E494 136,114,0,60,60,0,0,0,C,8,C4C8 136,108,0,67,67,0,0,0,9,4,G494 ;;\n");
  CliResult r = Run({"inspect", S("r.note")});
  EXPECT_NE(r.out.find("3\t480000\t456000\t67\t75\tG494\n2\t480000\t228000\t60\t100\tC4C8\n1\t720000\t456000\t64\t75\tE494\n"),
            std::string::npos) << r.out << r.err;
  r = Run({"inspect", S("r.note"), "--json"});
  EXPECT_NE(r.out.find("\"notes\":[{\"place\":3,\"token\":\"G494\",\"start\":480000,\"length\":456000,\"pitch\":67,\"velocity\":75},"),
            std::string::npos) << r.out;
  EXPECT_NE(r.out.find(",{\"place\":2,\"time\":708000,\"pitch\":60,\"velocity\":0},"), std::string::npos) << r.out;
}

TEST_F(Cli, TuningPrintsTheTablesOfAKey) {
  CliResult r = Run({"tuning", "--key", "3", "--json"});
  EXPECT_EQ(r.out.rfind("{\"keyN\":3,\"name\":\"イ長調(A)/嬰ヘ短調(#F)\",\"ratios\":[\"3/5\",", 0), 0u) << r.out << r.err;
  EXPECT_NE(r.out.find(",17664,"), std::string::npos);
  r = Run({"tuning"});
  for (const char* says : {"ハ長調(C)/イ短調(A)", "A\t5/3\t440\n", "\n69\t17664\t440\t69\n"})
    EXPECT_NE(r.out.find(says), std::string::npos) << r.out;
}

namespace {
// A saved score with random damage of the kinds other editors and broken copies make.
std::string DamagedScore(std::mt19937& rng) {
  Staff staff;
  LoadKestraLine(staff, "C498 E4b94 G4#92 0008 A5C8 B3b91 D49F");
  for (std::size_t i = 1; i < staff.notes.size(); ++i) staff.notes[i].left += 40 * static_cast<int>(rng() % 9);
  std::string text = SaveFileText(staff, WindowSettings{5, 0, static_cast<int>(rng() % 16)});
  const char* inserts[] = {";", ",", " ", "\r", "-", "1e308", "99", "x", "9999999999", "\xEF\xBB\xBF", "  "};
  const int damages = 1 + static_cast<int>(rng() % 4);
  for (int d = 0; d < damages; ++d) {
    const std::size_t at = rng() % (text.size() + 1);
    switch (rng() % 4) {
      case 0: text.erase(at, 1 + rng() % 6); break;
      case 1: text.insert(at, inserts[rng() % std::size(inserts)]); break;
      case 2: text.resize(at); break;
      default: if (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at]))) text[at] = '0' + rng() % 10;
    }
  }
  if (rng() % 5 == 0) text.insert(0, "\xEF\xBB\xBF");
  return text;
}
}  // namespace

// Whatever a damaged file holds, the command line gets from it the notes the window's
// reader gets: the same playing events, and the MIDI bytes the library makes of that staff.
TEST_F(Cli, DamagedScoresGiveTheNotesAndMidiTheLibraryGives) {
  std::mt19937 rng(777);
  int read = 0;
  for (int round = 0; round < 40; ++round) {
    const std::string text = DamagedScore(rng);
    SCOPED_TRACE(text);
    Write("d.note", text);
    ScoreReadReport report;
    const ScoreFile file = ParseScoreFile(text, &report);
    CliResult inspect = Run({"inspect", S("d.note"), "--json"});
    if (!report.notAScore.empty()) { EXPECT_EQ(inspect.exit, 1); continue; }
    ASSERT_EQ(inspect.exit, 0) << inspect.err;
    EXPECT_EQ(Lines(inspect.err), static_cast<int>(report.Repairs().size())) << inspect.err;
    ++read;

    Staff staff;
    const int slider = ApplyScoreFile(staff, file);
    std::string events = "\"events\":[";
    const auto list = BuildEventList(staff.notes, 1.0, 0.95);
    char buf[160];
    for (std::size_t i = 1; i < list.size(); ++i) {
      std::snprintf(buf, sizeof buf, "%s{\"place\":%d,\"time\":%.0f,\"pitch\":%d,\"velocity\":%d}", i > 1 ? "," : "",
                    list[i].place, list[i].time, list[i].pitch, list[i].velocity);
      events += buf;
    }
    EXPECT_NE(inspect.out.find(events + "]}"), std::string::npos) << inspect.out;
    EXPECT_NE(inspect.out.find(",\"keyN\":" + std::to_string(staff.keySignature) + ",\"timeN\":" + std::to_string(staff.timeSignature)),
              std::string::npos);

    CliResult midi = Run({"midi", S("d.note"), "-o", S("d.mid"), "--instrument", "41"});
    ASSERT_EQ(midi.exit, 0) << midi.err;
    const auto bytes = MidiFileBytes(staff.notes, 0.95, TempoForSlider(slider).tempo, 41);
    EXPECT_EQ(Slurp(P("d.mid")), std::string(bytes.begin(), bytes.end()));
  }
  EXPECT_GT(read, 20) << "most damaged scores are still scores";
}
