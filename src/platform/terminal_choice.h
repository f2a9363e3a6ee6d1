#pragma once
// Which terminal window runs a command: the one the user named in $TERMINAL, the
// desktop's default (x-terminal-emulator), then the common ones in turn. Each terminal
// has its own way to be handed a command, and a wrong one opens an empty shell or
// nothing at all, so the way goes with the name.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lirenza {

struct ProgramCall {
  std::string program;
  std::vector<std::string> arguments;
};

// The full path of an executable regular file called name in one of the folders of
// pathVariable (colon-separated, as $PATH); a name with a slash is taken as a path.
std::optional<std::string> FindProgram(std::string_view name, std::string_view pathVariable);

// The call that opens a terminal window running command (the program, then its
// arguments, each handed over as one word). terminalVariable is $TERMINAL: when it names
// a program that is installed, that one is used. Each is handed the command in the way
// of the terminal it is, after following links, and with -e, which most terminals take,
// when it is none known here. Nothing when no terminal is installed.
std::optional<ProgramCall> CallInTerminal(const std::vector<std::string>& command, std::string_view terminalVariable,
                                          std::string_view pathVariable);

}  // namespace lirenza
