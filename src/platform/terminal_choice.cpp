#include "platform/terminal_choice.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>

namespace lirenza {
namespace {

// How a terminal takes the command it is to run.
enum class CommandStyle {
  AfterDashE,        // -e program arguments...: the xterm convention, which Debian asks of x-terminal-emulator
  // xterm's own fonts have no Japanese: the desktop's monospace face, through fontconfig, has.
  XtermWithFace,
  AfterDashX,        // -x program arguments...: their -e wants a single string
  AfterDoubleDash,   // -- program arguments...: gnome-terminal's -e is deprecated and takes one string
  AfterStartDashes,  // start -- program arguments...
  Appended,          // program arguments... as the terminal's own arguments
};

struct Terminal {
  std::string_view name;
  CommandStyle style;
  bool tried = true;  // false: known only when $TERMINAL or a link names it
};

// Tried in this order after $TERMINAL. The desktop's choice first; the freedesktop
// launcher knows the user's choice where the Debian alternative does not exist; then
// the desktops' own terminals, the light ones, and xterm, which is almost always there.
constexpr std::array kTerminals = {
    Terminal{"x-terminal-emulator", CommandStyle::AfterDashE},
    Terminal{"xdg-terminal-exec", CommandStyle::Appended},
    Terminal{"gnome-terminal", CommandStyle::AfterDoubleDash},
    Terminal{"konsole", CommandStyle::AfterDashE},
    Terminal{"xfce4-terminal", CommandStyle::AfterDashX},
    Terminal{"mate-terminal", CommandStyle::AfterDashX},
    Terminal{"lxterminal", CommandStyle::AfterDashE},
    Terminal{"terminator", CommandStyle::AfterDashX},
    Terminal{"kitty", CommandStyle::Appended},
    Terminal{"alacritty", CommandStyle::AfterDashE},
    Terminal{"foot", CommandStyle::Appended},
    Terminal{"wezterm", CommandStyle::AfterStartDashes},
    Terminal{"urxvt", CommandStyle::AfterDashE},
    Terminal{"xterm", CommandStyle::XtermWithFace},
    // Debian's xterm wrappers, which hand every argument on to xterm.
    Terminal{"uxterm", CommandStyle::XtermWithFace, false},
    Terminal{"lxterm", CommandStyle::XtermWithFace, false},
};

bool IsExecutableFile(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && access(path.c_str(), X_OK) == 0;
}

std::string_view BaseName(std::string_view path) {
  const size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::optional<CommandStyle> KnownStyle(std::string_view program) {
  const std::string_view name = BaseName(program);
  for (const Terminal& terminal : kTerminals)
    if (terminal.name == name) return terminal.style;
  return std::nullopt;
}

// The way of the terminal a program really is: x-terminal-emulator is a link, through
// the alternatives, to the desktop's terminal, and that one's own way is the surer one.
CommandStyle StyleOf(const std::string& found, std::string_view asNamed) {
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(found, error);
  if (!error)
    if (std::optional<CommandStyle> style = KnownStyle(target.filename().string())) return *style;
  return KnownStyle(asNamed).value_or(CommandStyle::AfterDashE);
}

ProgramCall Call(std::string program, CommandStyle style, const std::vector<std::string>& command) {
  ProgramCall call{std::move(program), {}};
  switch (style) {
    case CommandStyle::AfterDashE: call.arguments = {"-e"}; break;
    case CommandStyle::XtermWithFace: call.arguments = {"-fa", "monospace", "-e"}; break;
    case CommandStyle::AfterDashX: call.arguments = {"-x"}; break;
    case CommandStyle::AfterDoubleDash: call.arguments = {"--"}; break;
    case CommandStyle::AfterStartDashes: call.arguments = {"start", "--"}; break;
    case CommandStyle::Appended: break;
  }
  call.arguments.insert(call.arguments.end(), command.begin(), command.end());
  return call;
}

}  // namespace

std::optional<std::string> FindProgram(std::string_view name, std::string_view pathVariable) {
  if (name.empty()) return std::nullopt;
  if (name.find('/') != std::string_view::npos) {
    std::string path(name);
    return IsExecutableFile(path) ? std::optional(path) : std::nullopt;
  }
  size_t start = 0;
  while (start <= pathVariable.size()) {
    size_t end = pathVariable.find(':', start);
    if (end == std::string_view::npos) end = pathVariable.size();
    std::string folder(pathVariable.substr(start, end - start));
    if (folder.empty()) folder = ".";  // an empty entry is the current folder, as the shell reads it
    std::string path = folder + "/" + std::string(name);
    if (IsExecutableFile(path)) return path;
    start = end + 1;
  }
  return std::nullopt;
}

std::optional<ProgramCall> CallInTerminal(const std::vector<std::string>& command, std::string_view terminalVariable,
                                          std::string_view pathVariable) {
  if (std::optional<std::string> chosen = FindProgram(terminalVariable, pathVariable))
    return Call(*chosen, StyleOf(*chosen, terminalVariable), command);
  for (const Terminal& terminal : kTerminals)
    if (terminal.tried)
      if (std::optional<std::string> found = FindProgram(terminal.name, pathVariable))
        return Call(*found, StyleOf(*found, terminal.name), command);
  return std::nullopt;
}

}  // namespace lirenza
