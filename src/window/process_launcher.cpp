#include "window/process_launcher.h"

#include <QProcess>

namespace lirenza::window {

bool DetachedLauncher::Start(const QString& program, const QStringList& arguments) {
  return QProcess::startDetached(program, arguments);
}

}  // namespace lirenza::window
