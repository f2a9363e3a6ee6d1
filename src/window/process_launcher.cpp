#include "window/process_launcher.h"

#include "window/resource_folder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <string>
#include <vector>

#include "platform/terminal_choice.h"

namespace lirenza::window {
namespace {

// Runs a script, then holds its terminal window open for the user to read.
const QString kRunAndWait = QStringLiteral("run-and-wait");

bool HasScripts(const QString& folder) {
  return !folder.isEmpty() && QFileInfo(QDir(folder).filePath(kRunAndWait)).isFile();
}

bool IsScript(const QString& path) {
  const QFileInfo info(path);
  return info.isFile() && info.isExecutable();
}

}  // namespace

bool DetachedLauncher::Start(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.setProgram(program);
  process.setArguments(arguments);
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  return process.startDetached();
}

QString ScriptsFolder() {
  return FindResourceFolder({"LIRENZA_SCRIPTS", QStringLiteral(LIRENZA_SOURCE_SCRIPTS_DIR), QStringLiteral("scripts"),
                             QStringLiteral(LIRENZA_INSTALLED_SCRIPTS_DIR)},
                            HasScripts);
}

QString ScriptPath(const QString& name) { return QDir(ScriptsFolder()).filePath(name); }

bool RunScript(ProcessLauncher& launcher, const QString& name, const QStringList& arguments) {
  const QString script = ScriptPath(name);
  return IsScript(script) && launcher.Start(script, arguments);
}

TerminalStart StartScriptInTerminal(ProcessLauncher& launcher, const QString& name) {
  const QString script = ScriptPath(name);
  const QString runAndWait = ScriptPath(kRunAndWait);
  if (!IsScript(script) || !IsScript(runAndWait)) return TerminalStart::NoScript;
  const std::vector<std::string> command = {QFile::encodeName(runAndWait).toStdString(),
                                            QFile::encodeName(script).toStdString()};
  const std::optional<ProgramCall> call =
      CallInTerminal(command, qgetenv("TERMINAL").toStdString(), qgetenv("PATH").toStdString());
  if (!call) return TerminalStart::NoTerminal;
  QStringList arguments;
  for (const std::string& argument : call->arguments) arguments << QFile::decodeName(argument.c_str());
  return launcher.Start(QFile::decodeName(call->program.c_str()), arguments) ? TerminalStart::Started
                                                                            : TerminalStart::NotStarted;
}

}  // namespace lirenza::window
