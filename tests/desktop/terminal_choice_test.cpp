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

using Words = std::vector<std::string>;
const Words kCommand = {"/opt/scripts/run-and-wait", "/opt/scripts/Play Midi.command"};

Words Then(Words head) {
  head.insert(head.end(), kCommand.begin(), kCommand.end());
  return head;
}

TEST(TerminalChoice, TheFirstInstalledTerminalRunsTheCommandItsOwnWay) {
  // installed: "name", "name=target" for a link to target in a second folder of the path,
  // "name-" for a file that cannot be run, "name/" for a folder.
  struct Row {
    Words installed;
    std::string terminalVariable;
    std::string chosen;  // empty: none
    Words arguments;
  };
  const Row rows[] = {
      {{"xterm"}, "", "xterm", Then({"-fa", "monospace", "-e"})},
      {{"xterm", "x-terminal-emulator", "gnome-terminal"}, "", "x-terminal-emulator", Then({"-e"})},
      {{"xterm", "gnome-terminal"}, "", "gnome-terminal", Then({"--"})},
      // The desktop's terminal is a link: what it links to says how it takes a command,
      // and a wrapper unknown here keeps the desktop's own -e.
      {{"x-terminal-emulator=lxterm"}, "", "x-terminal-emulator", Then({"-fa", "monospace", "-e"})},
      {{"x-terminal-emulator=gnome-terminal.wrapper"}, "", "x-terminal-emulator", Then({"-e"})},
      // The user's choice wins, in its own way, or -e for one unknown here; one not
      // installed is passed over.
      {{"x-terminal-emulator", "kitty"}, "kitty", "kitty", kCommand},
      {{"x-terminal-emulator", "my-term"}, "my-term", "my-term", Then({"-e"})},
      {{"konsole"}, "kitty", "konsole", Then({"-e"})},
      // Only executable files count.
      {{"xterm-", "gnome-terminal/"}, "", "", {}},
  };
  const fs::path bin = fs::temp_directory_path() / ("lirenza-terminals-" + std::to_string(getpid()));
  const std::string path = bin.string() + ":" + (bin / "second").string();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.installed.back());
    fs::remove_all(bin), fs::create_directories(bin / "second");
    for (std::string name : row.installed) {
      if (name.ends_with('/')) {
        fs::create_directories(bin / name);
        continue;
      }
      const bool runnable = !name.ends_with('-');
      if (!runnable) name.pop_back();
      const size_t link = name.find('=');
      const fs::path file = link == std::string::npos ? bin / name : bin / "second" / name.substr(link + 1);
      std::ofstream(file) << "#!/bin/sh\n";
      chmod(file.c_str(), runnable ? 0755 : 0644);
      if (link != std::string::npos) fs::create_symlink(file, bin / name.substr(0, link));
    }
    const std::optional<ProgramCall> call = CallInTerminal(kCommand, row.terminalVariable, path);
    ASSERT_EQ(call.has_value(), !row.chosen.empty());
    if (!call) continue;
    EXPECT_EQ(call->program, (bin / row.chosen).string());
    EXPECT_EQ(call->arguments, row.arguments);
  }
  fs::remove_all(bin);
}

}  // namespace
