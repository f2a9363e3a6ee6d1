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
  CliResult r = Run({"midi", P("one.note").string(), "-o", P("one.mid").string()});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_TRUE(r.err.empty());
  const std::string bytes = Slurp(P("one.mid"));
  EXPECT_EQ(bytes.size(), 79u);
  EXPECT_EQ(static_cast<unsigned char>(bytes[0x40]), 0x28) << "program of the violin";

  CliResult csv = Run({P("one.mid").string()}, {}, "midicsv");
  ASSERT_EQ(csv.exit, 0) << csv.err;
  EXPECT_NE(csv.out.find("0, 0, Header, 0, 1, 480"), std::string::npos) << csv.out;
  EXPECT_NE(csv.out.find("1, 0, System_exclusive, 5, 126, 127, 9, 1, 247"), std::string::npos) << csv.out;
  EXPECT_NE(csv.out.find("1, 240, Text_t, \"created by Belrosite\""), std::string::npos) << csv.out;
  EXPECT_NE(csv.out.find("1, 240, Tempo, 500000"), std::string::npos) << csv.out;
  EXPECT_NE(csv.out.find("1, 240, Program_c, 0, 40"), std::string::npos) << csv.out;
  EXPECT_NE(csv.out.find("1, 720, Note_on_c, 0, 60, 75"), std::string::npos) << csv.out;
  EXPECT_NE(csv.out.find("1, 1176, Note_on_c, 0, 60, 0"), std::string::npos) << csv.out;
  EXPECT_NE(csv.out.find("1, 1176, End_track"), std::string::npos) << csv.out;
}

TEST_F(Cli, MidiOptionsAndTheInstrumentTheScoreNames) {
  Write("s.note", "136,117,0,60,60,0,0,0,9,4,C494 ;S;;0;1;3;0;0\n");  // group 0 row 1: instrument 2
  struct Case {
    std::vector<std::string> extra;
    int program;
    const char* tempo;
  } cases[] = {
      {{}, 1, "Tempo, 750000"},
      {{"--tempo", "15"}, 1, "Tempo, 285714"},
      {{"--instrument", "16385"}, 0, "Tempo, 750000"},
      {{"--instrument", "74", "--gate", "0.75"}, 73, "Tempo, 750000"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> args = {"midi", P("s.note").string(), "-o", P("s.mid").string()};
    args.insert(args.end(), c.extra.begin(), c.extra.end());
    CliResult r = Run(args);
    ASSERT_EQ(r.exit, 0) << r.err;
    CliResult csv = Run({P("s.mid").string()}, {}, "midicsv");
    ASSERT_EQ(csv.exit, 0);
    EXPECT_NE(csv.out.find("Program_c, 0, " + std::to_string(c.program)), std::string::npos) << csv.out;
    EXPECT_NE(csv.out.find(c.tempo), std::string::npos) << csv.out;
  }
  Run({"midi", P("s.note").string(), "-o", P("g.mid").string(), "--gate", "0.75"});
  EXPECT_NE(Run({P("g.mid").string()}, {}, "midicsv").out.find("1, 1080, Note_on_c, 0, 60, 0"), std::string::npos);
  // Menu values that name no instrument fall back to the violin.
  for (const char* fields : {";;;16;0;7;0;0\n", ";;;5;99;7;0;0\n", ";;\n"}) {
    Write("f.note", fields);
    ASSERT_EQ(Run({"midi", P("f.note").string(), "-o", P("f.mid").string()}).exit, 0);
    EXPECT_NE(Run({P("f.mid").string()}, {}, "midicsv").out.find("Program_c, 0, 40"), std::string::npos) << fields;
  }
}

TEST_F(Cli, MistakesEndWithOneLineAndNoOutputFile) {
  Write("ok.note", ";;;5;0;7;0;0\n");
  Write("garbage.note", std::string("\x89PNG\r\n\x1a\n\0\0\0", 11));
  Write("words.note", "just some words\n");
  Write("bent.note", "\xEF\xBB\xBF;;;5;0;7;0;0\n");
  struct Case {
    const char* name;
    std::vector<std::string> args;
    int exit;
    const char* says;
  } cases[] = {
      {"missing file", {"midi", S("none.note"), "-o", S("x.mid")}, 1, "none.note"},
      {"binary file", {"midi", S("garbage.note"), "-o", S("x.mid")}, 1, "not a text file"},
      {"text that is no score", {"inspect", S("words.note")}, 1, "neither note records nor score fields"},
      {"endless input", {"midi", "/dev/zero", "-o", S("x.mid")}, 1, "256 MB"},
      {"a repair under --strict", {"midi", S("bent.note"), "-o", S("x.mid"), "--strict"}, 1, "byte-order mark"},
      {"folder that does not exist", {"midi", S("ok.note"), "-o", S("no/x.mid")}, 1, "cannot write"},
      {"output directory that does not exist", {"midi", S("ok.note"), "-d", S("no")}, 1, "no directory"},
      {"tempo out of range", {"midi", S("ok.note"), "-o", S("x.mid"), "--tempo", "16"}, 2, "--tempo"},
      {"gate not offered", {"midi", S("ok.note"), "-o", S("x.mid"), "--gate", "0.5"}, 2, "--gate"},
      {"no output named", {"midi", S("ok.note")}, 2, "-o"},
      {"one -o for two scores", {"midi", S("ok.note"), S("words.note"), "-o", S("x.mid")}, 2, "-d DIR"},
      {"-o and -d together", {"midi", S("ok.note"), "-o", S("x.mid"), "-d", S("")}, 2, "not both"},
      {"two scores, one output", {"midi", S("ok.note"), S("no/ok.note"), "-d", S("")}, 2, "both be written"},
      {"a title that would shift the fields", {"kestra", "C498", "-o", S("x.note"), "--title", "a;b;c;99;99;99;99"}, 2,
       "--title"},
      {"a title with a line break", {"kestra", "C498", "-o", S("x.note"), "--title", "a\nb"}, 2, "--title"},
      {"a token holding a comma", {"kestra", "C4,98", "-o", S("x.note")}, 2, "\",\""},
      {"a title that is not UTF-8", {"kestra", "C498", "-o", S("x.note"), "--title", "\xff"}, 2, "UTF-8"},
      {"unknown option", {"tuning", "--colour"}, 2, "--colour"},
      {"key out of range", {"tuning", "--key", "15"}, 2, "--key"},
      {"scale index", {"scale", "36", "-o", S("x.note")}, 2, "scale index"},
      {"unknown command", {"play"}, 2, "unknown command"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    CliResult r = Run(c.args);
    EXPECT_EQ(r.exit, c.exit);
    EXPECT_TRUE(OneLine(r.err)) << r.err;
    EXPECT_NE(r.err.find(c.says), std::string::npos) << r.err;
    EXPECT_FALSE(fs::exists(P("x.mid")));
    EXPECT_FALSE(fs::exists(P("x.note")));
  }
  // Nothing half-written stays behind in the folder.
  for (const auto& name : Entries()) EXPECT_NE(name[0], '.') << name;
}

TEST_F(Cli, AnOutputThatIsItsOwnScoreIsRefusedAndTheScoreKept) {
  const std::string score = "136,117,0,60,60,0,0,0,9,4,C494 ;One;;5;0;7;0;0\n";
  Write("s.note", score);
  fs::create_symlink(P("s.note"), P("link.mid"));
  for (const std::string& out : {S("s.note"), S("link.mid"), S("./s.note")}) {
    CliResult r = Run({"midi", S("s.note"), "-o", out});
    EXPECT_EQ(r.exit, 1) << out;
    EXPECT_TRUE(OneLine(r.err)) << r.err;
    EXPECT_EQ(Slurp(P("s.note")), score);
  }
  // With -d, the score's own folder and extension make the clash.
  Write("t.mid", score);
  CliResult r = Run({"midi", S("t.mid"), S("s.note"), "-d", S("")});
  EXPECT_EQ(r.exit, 1);
  EXPECT_EQ(Slurp(P("t.mid")), score);
  EXPECT_TRUE(fs::exists(P("s.mid"))) << "the other score is still written";
}

TEST_F(Cli, ManyScoresGoToOneFolderAndOneBadScoreStopsNoOther) {
  Write("a.note", "136,117,0,60,60,0,0,0,9,4,C494 ;A;;5;0;7;0;0\n");
  Write("b.note", "136,117,0,62,62,0,0,0,9,4,D494 ;B;;5;0;3;0;0\n");
  Write("bad.note", std::string("\0\0", 2));
  fs::create_directory(P("out"));
  CliResult r = Run({"midi", S("a.note"), S("bad.note"), S("b.note"), "-d", S("out"), "--tempo", "9"});
  EXPECT_EQ(r.exit, 1);
  EXPECT_TRUE(OneLine(r.err)) << r.err;
  EXPECT_NE(r.err.find("bad.note"), std::string::npos) << r.err;
  EXPECT_FALSE(fs::exists(P("out/bad.mid")));
  for (const char* name : {"a", "b"}) {
    SCOPED_TRACE(name);
    ASSERT_EQ(Run({"midi", S(name + std::string(".note")), "-o", S("one.mid"), "--tempo", "9"}).exit, 0);
    EXPECT_EQ(Slurp(P("out") / (name + std::string(".mid"))), Slurp(P("one.mid")));
  }
  r = Run({"midi", S("a.note"), S("b.note"), "-d", S("out")});
  EXPECT_EQ(r.exit, 0) << r.err;

  // "-o -" writes the same bytes to standard output.
  r = Run({"midi", S("a.note"), "-o", "-", "--tempo", "9"});
  ASSERT_EQ(r.exit, 0) << r.err;
  ASSERT_EQ(Run({"midi", S("a.note"), "-o", S("one.mid"), "--tempo", "9"}).exit, 0);
  EXPECT_EQ(r.out, Slurp(P("one.mid")));
}

TEST_F(Cli, MidiSaysHowManyNotesItLeftOutOfTheFile) {
  // Note numbers past either end of MIDI's 0..127; the middle note is kept.
  Write("w.note",
        "136,117,0,200,200,0,0,0,9,4,C494 168,117,0,60,60,0,0,0,9,4,C494 200,117,0,-3,-3,0,0,0,9,4,C494 "
        ";W;;5;0;7;0;0\n");
  CliResult r = Run({"midi", S("w.note"), "-o", S("w.mid")});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_TRUE(OneLine(r.err)) << r.err;
  EXPECT_NE(r.err.find(": 2 notes were left out"), std::string::npos) << r.err;
  const CliResult csv = Run({S("w.mid")}, {}, "midicsv");
  ASSERT_EQ(csv.exit, 0) << csv.err;
  std::size_t noteOns = 0;
  for (std::size_t at = 0; (at = csv.out.find("Note_on_c", at)) != std::string::npos; ++at) ++noteOns;
  EXPECT_EQ(noteOns, 2u) << csv.out;
}

TEST_F(Cli, EveryCommandAnswersHelpWithItsOwnUsage) {
  for (const char* command : {"midi", "tuning", "kestra", "scale", "inspect", "render", "instruments"}) {
    SCOPED_TRACE(command);
    CliResult r = Run({command, "--help"});
    EXPECT_EQ(r.exit, 0);
    EXPECT_TRUE(r.err.empty()) << r.err;
    EXPECT_EQ(r.out.rfind("Usage: lirenza-cli " + std::string(command) + " ", 0), 0u) << r.out;
    EXPECT_GE(Lines(r.out), 3) << "a usage line and what the command does";
  }
}

TEST_F(Cli, ADamagedScoreIsReadAsTheWindowReadsItAndEachRepairToldOnce) {
  // Two short records, a key and time outside their tables, a byte-order mark.
  Write("d.note", "\xEF\xBB\xBF" "136,117,0,60,60,0,0,0,9,4,C494 168,111,0,62 200,108 ;D;;5;0;7;99;12\n");
  CliResult r = Run({"midi", S("d.note"), "-o", S("d.mid")});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_EQ(Lines(r.err), 4) << r.err;
  EXPECT_NE(r.err.find("2 note records had missing fields, read as 0\n"), std::string::npos) << r.err;
  EXPECT_NE(r.err.find("byte-order mark"), std::string::npos) << r.err;
  EXPECT_NE(r.err.find("key signature number 99"), std::string::npos) << r.err;
  EXPECT_NE(r.err.find("time signature number 12"), std::string::npos) << r.err;

  // A file of notes alone, as another program might write it, converts too.
  Write("n.note", "136,117,0,60,60,0,0,0,9,4,C494 ");
  r = Run({"inspect", S("n.note"), "--json"});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_EQ(Lines(r.err), 1) << r.err;
  EXPECT_NE(r.out.find("\"token\":\"C494\""), std::string::npos) << r.out;
}

TEST_F(Cli, KestraSaysHowManyTokensItLeftOut) {
  std::string line = "C498";
  for (int i = 1; i < 200; ++i) line += " D498";
  CliResult r = Run({"kestra", line, "-o", S("k.note")});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_TRUE(OneLine(r.err)) << r.err;
  EXPECT_NE(r.err.find(" 8 "), std::string::npos) << r.err;
  EXPECT_EQ(ParseScoreFile(Slurp(P("k.note"))).notes.size(), static_cast<std::size_t>(kMaxKestraTokens));
  line.resize(line.size() - 8 * 5);  // exactly the most a score holds
  r = Run({"kestra", line, "-o", S("k.note")});
  EXPECT_EQ(r.exit, 0);
  EXPECT_TRUE(r.err.empty()) << r.err;
}

TEST_F(Cli, TextsReachTheTerminalEscapedAndJsonStaysValid) {
  Write("c.note", "136,117,0,60,60,0,0,0,9,4,C4\x1b[2J94 ;a\x1b]0;pwned\x07\xc2\x9b" "b;;5;0;7;0;0\n");
  CliResult r = Run({"inspect", S("c.note")});
  ASSERT_EQ(r.exit, 0) << r.err;
  for (char control : {'\x1b', '\x07'}) EXPECT_EQ(r.out.find(control), std::string::npos) << r.out;
  EXPECT_EQ(r.out.find("\xc2\x9b"), std::string::npos) << "the C1 control that also starts a sequence";
  EXPECT_NE(r.out.find("a\\x1b]0"), std::string::npos) << r.out;
  r = Run({"inspect", S("c.note"), "--json"});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_NE(r.out.find("\"title\":\"a\\u001b]0"), std::string::npos) << r.out;
  EXPECT_TRUE(IsUtf8Text(r.out));
  Write("c.json", r.out);
  CliResult jq = Run({"-e", ".notes[0].token", S("c.json")}, {}, "jq");
  EXPECT_EQ(jq.exit, 0) << jq.err << r.out;
}

TEST_F(Cli, KestraAndScaleWriteWhatTheWindowWouldSave) {
  CliResult r = Run({"kestra", "C498 E4b98 0008", "-o", P("k.note").string()});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_EQ(Slurp(P("k.note")),
            "128,114,0,60,60,0,0,0,9,8,C498 160,108,0,63,64,-1,2,0,9,8,E4b98 192,106,0,60,60,0,0,0,0,8,C408 "
            ";曲名;作曲家/解説;5;0;7;0;0\n");
  r = Run({"kestra", "G498", "-o", P("t.note").string(), "--title", "練習曲"});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_NE(Slurp(P("t.note")).find(";練習曲;作曲家/解説;"), std::string::npos);

  r = Run({"scale", "0", "-o", P("major.note").string()});
  ASSERT_EQ(r.exit, 0) << r.err;
  const std::string major = Slurp(P("major.note"));
  EXPECT_EQ(major.rfind("128,114,0,60,60,0,0,0,9,8,C498 160,111,0,62,62,", 0), 0u) << major;
  EXPECT_NE(major.find(";メージャー(イオニアン)スケール;作曲家/解説;5;0;7;0;0\n"), std::string::npos) << major;

  r = Run({"scale", "--list"});
  ASSERT_EQ(r.exit, 0);
  EXPECT_EQ(Lines(r.out), 36);
  EXPECT_NE(r.out.find("35\tハンガリアン\n"), std::string::npos);
}

TEST_F(Cli, InspectListsNotesInPlayingOrder) {
  // Entered right to left: playback plays them left to right.
  Write("r.note", "200,114,0,64,64,0,0,0,9,4,E494 136,114,0,60,60,0,0,0,C,8,C4C8 ;R;;5;0;7;0;0\n");
  CliResult r = Run({"inspect", P("r.note").string()});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_NE(r.out.find("2\t480000\t228000\t60\t100\tC4C8\n1\t720000\t456000\t64\t75\tE494\n"), std::string::npos)
      << r.out;
  r = Run({"inspect", P("r.note").string(), "--json"});
  ASSERT_EQ(r.exit, 0);
  EXPECT_NE(r.out.find("{\"place\":2,\"token\":\"C4C8\",\"start\":480000,\"length\":228000,\"pitch\":60,\"velocity\":100}"),
            std::string::npos)
      << r.out;
  EXPECT_NE(r.out.find("\"events\":[{\"place\":2,\"time\":480000,\"pitch\":60,\"velocity\":100}"), std::string::npos);
}

TEST_F(Cli, TuningPrintsTheTablesOfAKey) {
  CliResult r = Run({"tuning", "--key", "3", "--json"});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_EQ(r.out.rfind("{\"keyN\":3,\"name\":\"イ長調(A)/嬰ヘ短調(#F)\",\"ratios\":[\"3/5\",", 0), 0u) << r.out;
  // 145 entries in each table.
  const auto p = r.out.find("\"p\":[");
  const auto h = r.out.find("],\"h\":[");
  ASSERT_NE(p, std::string::npos);
  ASSERT_NE(h, std::string::npos);
  const std::string pList = r.out.substr(p, h - p);
  EXPECT_EQ(std::count(pList.begin(), pList.end(), ','), 144);
  EXPECT_NE(pList.find(",17664,"), std::string::npos);
  r = Run({"tuning"});
  ASSERT_EQ(r.exit, 0);
  EXPECT_NE(r.out.find("ハ長調(C)/イ短調(A)"), std::string::npos);
  EXPECT_NE(r.out.find("A\t5/3\t440\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("\n69\t17664\t440\t69\n"), std::string::npos);
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
    if (!report.notAScore.empty()) {
      EXPECT_EQ(inspect.exit, 1);
      continue;
    }
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
