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

// Starts detached processes that outlive the window.
class DetachedLauncher : public ProcessLauncher {
 public:
  bool Start(const QString& program, const QStringList& arguments) override;
};

}  // namespace lirenza::window
