#pragma once
// Starting a program of the desktop and going on at once: the volume script, the
// player scripts in a terminal. The window never waits for one nor learns how it ended.
#include <QString>
#include <QStringList>

namespace lirenza::window {

class ProcessLauncher {
 public:
  virtual ~ProcessLauncher() = default;
  // False when the program could not be started.
  virtual bool Start(const QString& program, const QStringList& arguments) = 0;
};

// Starts detached processes that outlive the window. What they print goes nowhere: the
// window has no place to show it, and the player scripts show theirs in their terminal.
class DetachedLauncher : public ProcessLauncher {
 public:
  bool Start(const QString& program, const QStringList& arguments) override;
};

// The folder of the scripts that come with the program: $LIRENZA_SCRIPTS when set, the
// source's own in a build tree, else the installed folder.
QString ScriptsFolder();
QString ScriptPath(const QString& name);

// Runs a script of the program's folder with arguments, out of sight. False when the
// script is missing or could not be started.
bool RunScript(ProcessLauncher& launcher, const QString& name, const QStringList& arguments);

enum class TerminalStart { Started, NotStarted, NoScript, NoTerminal };

// Opens a terminal window ($TERMINAL, the desktop's, or a common one found on PATH) that
// runs the script without arguments and stays open until the user has read it.
TerminalStart StartScriptInTerminal(ProcessLauncher& launcher, const QString& name);

}  // namespace lirenza::window
