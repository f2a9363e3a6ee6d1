// lirenza-cli as a script would use it: exact files out, independent tools reading
// them back, and one clear line with a non-zero exit for every mistake.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

struct Result {
  int exit = -1;
  std::string out, err;
};

std::string Slurp(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

std::string Quote(const std::string& s) {
  std::string q = "'";
  for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return q + "'";
}

class Cli : public ::testing::Test {
 protected:
  fs::path dir;
  void SetUp() override {
    char tmpl[] = "/tmp/lirenza-cli-XXXXXX";
    dir = ::mkdtemp(tmpl);
  }
  void TearDown() override {
    std::error_code ec;
    fs::remove_all(dir, ec);
  }
  fs::path P(const std::string& name) const { return dir / name; }
  void Write(const std::string& name, const std::string& text) const { std::ofstream(P(name), std::ios::binary) << text; }

  Result Run(const std::vector<std::string>& args, const char* program = nullptr) const {
    std::string cmd = program ? program : std::getenv("LIRENZA_CLI");
    if (!program) cmd = Quote(cmd);
    for (const auto& a : args) cmd += " " + Quote(a);
    cmd += " >" + Quote(P(".out").string()) + " 2>" + Quote(P(".err").string()) + " </dev/null";
    Result r;
    const int status = std::system(cmd.c_str());
    r.exit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    r.out = Slurp(P(".out"));
    r.err = Slurp(P(".err"));
    fs::remove(P(".out"));
    fs::remove(P(".err"));
    return r;
  }
};

int Lines(const std::string& s) { return static_cast<int>(std::count(s.begin(), s.end(), '\n')); }

}  // namespace

TEST_F(Cli, MidiOfTheOneNoteScoreIsTheKnownFileAndMidicsvReadsIt) {
  Write("one.note", "136,117,0,60,60,0,0,0,9,4,C494 ;One;;5;0;7;0;0\n");
  Result r = Run({"midi", P("one.note").string(), "-o", P("one.mid").string()});
  ASSERT_EQ(r.exit, 0) << r.err;
  EXPECT_TRUE(r.err.empty());
  const std::string bytes = Slurp(P("one.mid"));
  EXPECT_EQ(bytes.size(), 79u);
  EXPECT_EQ(static_cast<unsigned char>(bytes[0x40]), 0x28) << "program of the violin";

  Result csv = Run({P("one.mid").string()}, "midicsv");
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
    Result r = Run(args);
    ASSERT_EQ(r.exit, 0) << r.err;
    Result csv = Run({P("s.mid").string()}, "midicsv");
    ASSERT_EQ(csv.exit, 0);
    EXPECT_NE(csv.out.find("Program_c, 0, " + std::to_string(c.program)), std::string::npos) << csv.out;
    EXPECT_NE(csv.out.find(c.tempo), std::string::npos) << csv.out;
  }
  Run({"midi", P("s.note").string(), "-o", P("g.mid").string(), "--gate", "0.75"});
  EXPECT_NE(Run({P("g.mid").string()}, "midicsv").out.find("1, 1080, Note_on_c, 0, 60, 0"), std::string::npos);
  // Menu values that name no instrument fall back to the violin.
  for (const char* fields : {";;;16;0;7;0;0\n", ";;;5;99;7;0;0\n", ";;\n"}) {
    Write("f.note", fields);
    ASSERT_EQ(Run({"midi", P("f.note").string(), "-o", P("f.mid").string()}).exit, 0);
    EXPECT_NE(Run({P("f.mid").string()}, "midicsv").out.find("Program_c, 0, 40"), std::string::npos) << fields;
  }
}

TEST_F(Cli, MistakesEndWithOneLineAndNoOutputFile) {
  Write("ok.note", ";;;5;0;7;0;0\n");
  Write("garbage.note", std::string("\x89PNG\r\n\x1a\n\0\0\0", 11));
  Write("words.note", "just some words\n");
  struct Case {
    const char* name;
    std::vector<std::string> args;
    int exit;
    const char* says;
  } cases[] = {
      {"missing file", {"midi", P("none.note").string(), "-o", P("x.mid").string()}, 1, "none.note"},
      {"binary file", {"midi", P("garbage.note").string(), "-o", P("x.mid").string()}, 1, "not a text file"},
      {"text that is no score", {"inspect", P("words.note").string()}, 1, "no score fields"},
      {"folder that does not exist", {"midi", P("ok.note").string(), "-o", P("no/x.mid").string()}, 1, "cannot write"},
      {"tempo out of range", {"midi", P("ok.note").string(), "-o", P("x.mid").string(), "--tempo", "16"}, 2, "--tempo"},
      {"gate not offered", {"midi", P("ok.note").string(), "-o", P("x.mid").string(), "--gate", "0.5"}, 2, "--gate"},
      {"no output named", {"midi", P("ok.note").string()}, 2, "-o"},
      {"unknown option", {"tuning", "--colour"}, 2, "--colour"},
      {"key out of range", {"tuning", "--key", "15"}, 2, "--key"},
      {"scale index", {"scale", "36", "-o", P("x.note").string()}, 2, "scale index"},
      {"unknown command", {"play"}, 2, "unknown command"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Result r = Run(c.args);
    EXPECT_EQ(r.exit, c.exit);
    EXPECT_EQ(Lines(r.err), 1) << r.err;
    EXPECT_NE(r.err.find(c.says), std::string::npos) << r.err;
    EXPECT_FALSE(fs::exists(P("x.mid")));
    EXPECT_FALSE(fs::exists(P("x.note")));
  }
  // Nothing half-written stays behind in the folder.
  int entries = 0;
  for (auto& e : fs::directory_iterator(dir)) entries += e.path().filename().string()[0] == '.';
  EXPECT_EQ(entries, 0);
}

TEST_F(Cli, KestraAndScaleWriteWhatTheWindowWouldSave) {
  Result r = Run({"kestra", "C498 E4b98 0008", "-o", P("k.note").string()});
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
  Result r = Run({"inspect", P("r.note").string()});
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
  Result r = Run({"tuning", "--key", "3", "--json"});
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
