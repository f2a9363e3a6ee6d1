// The terminal that runs a script is one that is really installed, the user's own first,
// and it is handed the command in the way it understands: a wrong way opens a bare
// shell, or a window that closes at once, and the script never runs.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "platform/terminal_choice.h"

using namespace lirenza;
namespace fs = std::filesystem;

namespace {

const std::vector<std::string> kCommand = {"/opt/scripts/keep-open", "/opt/scripts/Play Midi.command"};

class TerminalChoice : public ::testing::Test {
 protected:
  void SetUp() override {
    bin = fs::temp_directory_path() / ("lirenza-terminals-" + std::to_string(getpid()));
    fs::remove_all(bin);
    fs::create_directories(bin / "second");
  }
  void TearDown() override { fs::remove_all(bin); }

  // A program file called name in folder; executable unless told otherwise.
  std::string Install(const std::string& name, bool executable = true, const std::string& folder = "") {
    const fs::path path = bin / folder / name;
    std::ofstream(path) << "#!/bin/sh\n";
    chmod(path.c_str(), executable ? 0755 : 0644);
    return path.string();
  }
  std::string Path() const { return bin.string() + ":" + (bin / "second").string(); }

  fs::path bin;
};

std::vector<std::string> Then(std::vector<std::string> head) {
  head.insert(head.end(), kCommand.begin(), kCommand.end());
  return head;
}

TEST_F(TerminalChoice, TheFirstInstalledTerminalRunsTheCommandItsOwnWay) {
  struct Row {
    std::vector<std::string> installed;
    std::string terminalVariable;
    std::string chosen;
    std::vector<std::string> arguments;
  };
  const Row rows[] = {
      {{"xterm"}, "", "xterm", Then({"-fa", "monospace", "-e"})},
      {{"xterm", "x-terminal-emulator", "gnome-terminal"}, "", "x-terminal-emulator", Then({"-e"})},
      {{"xterm", "gnome-terminal"}, "", "gnome-terminal", Then({"--"})},
      {{"xterm", "xfce4-terminal"}, "", "xfce4-terminal", Then({"-x"})},
      {{"xterm", "foot"}, "", "foot", kCommand},
      {{"xterm", "wezterm"}, "", "wezterm", Then({"start", "--"})},
      // The user's choice wins over the desktop's, and keeps its own way.
      {{"x-terminal-emulator", "kitty"}, "kitty", "kitty", kCommand},
      {{"x-terminal-emulator", "gnome-terminal"}, "gnome-terminal", "gnome-terminal", Then({"--"})},
      // A terminal unknown here is given the most common way.
      {{"x-terminal-emulator", "my-term"}, "my-term", "my-term", Then({"-e"})},
      // A choice that is not installed is passed over.
      {{"konsole"}, "kitty", "konsole", Then({"-e"})},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.installed.back() + " / TERMINAL=" + row.terminalVariable);
    fs::remove_all(bin), fs::create_directories(bin / "second");
    for (const std::string& name : row.installed) Install(name);
    const std::optional<ProgramCall> call = CallInTerminal(kCommand, row.terminalVariable, Path());
    ASSERT_TRUE(call);
    EXPECT_EQ(call->program, (bin / row.chosen).string());
    EXPECT_EQ(call->arguments, row.arguments);
  }
}

// x-terminal-emulator is a link to the desktop's terminal: the terminal at its end says
// how it takes a command, and a wrapper unknown here keeps the desktop's own -e.
TEST_F(TerminalChoice, TheDesktopsTerminalIsHandedTheCommandTheWayOfWhatItLinksTo) {
  const std::pair<std::string, std::vector<std::string>> rows[] = {
      {"gnome-terminal", Then({"--"})},
      {"lxterm", Then({"-fa", "monospace", "-e"})},
      {"gnome-terminal.wrapper", Then({"-e"})},
  };
  for (const auto& [target, arguments] : rows) {
    SCOPED_TRACE(target);
    fs::remove_all(bin), fs::create_directories(bin / "second");
    fs::create_symlink(Install(target, true, "second"), bin / "x-terminal-emulator");
    const std::optional<ProgramCall> call = CallInTerminal(kCommand, "", Path());
    ASSERT_TRUE(call);
    EXPECT_EQ(call->program, (bin / "x-terminal-emulator").string());
    EXPECT_EQ(call->arguments, arguments);
  }
}

TEST_F(TerminalChoice, OnlyExecutableFilesOnThePathCount) {
  // Not executable, a folder, or in no folder of the path: none of these is a terminal.
  Install("xterm", /*executable=*/false);
  fs::create_directories(bin / "gnome-terminal");
  EXPECT_FALSE(CallInTerminal(kCommand, "", Path()));
  EXPECT_FALSE(CallInTerminal(kCommand, "", ""));

  // The second folder of the path is searched too, and a path in $TERMINAL is taken as it stands.
  const std::string konsole = Install("konsole", true, "second");
  EXPECT_EQ(CallInTerminal(kCommand, "", Path())->program, konsole);
  const std::string own = Install("own-term");
  const std::optional<ProgramCall> byPath = CallInTerminal(kCommand, own, "/nowhere");
  ASSERT_TRUE(byPath);
  EXPECT_EQ(byPath->program, own);
  EXPECT_EQ(byPath->arguments, Then({"-e"}));
}

}  // namespace
