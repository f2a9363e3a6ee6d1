#include "app/app_start.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include "window/main_window.h"

namespace lirenza {

bool InstallToolkitTranslation(QCoreApplication& app) {
  auto* translator = new QTranslator(&app);
  if (!translator->load(QStringLiteral("qtbase_ja"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    delete translator;
    return false;
  }
  return QCoreApplication::installTranslator(translator);
}

void ReceiveDocuments(MainWindow& window, const QStringList& files) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
  for (const QString& file : files) window.OpenDocument(file);
}

}  // namespace lirenza
