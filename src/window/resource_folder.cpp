#include "window/resource_folder.h"

#include <QCoreApplication>
#include <QDir>

namespace lirenza {

QString FindResourceFolder(const ResourcePlaces& places, const std::function<bool(const QString&)>& holds) {
  const QString fromEnvironment = qEnvironmentVariable(places.environmentVariable);
  if (!fromEnvironment.isEmpty()) return fromEnvironment;
  if (!places.buildFolder.isEmpty() && holds(places.buildFolder)) return places.buildFolder;
  if (QCoreApplication::instance()) {
    const QString beside = QDir::cleanPath(
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../share/lirenza/") + places.installedName));
    if (holds(beside)) return beside;
  }
  return places.installedFolder;
}

}  // namespace lirenza
