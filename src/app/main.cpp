// lirenza: the window program.
#include <QApplication>
#include <QFont>

#include "window/main_window.h"

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Lirenza"));
  QApplication::setOrganizationName(QStringLiteral("Lirenza"));
  // The installed Japanese face, named outright, so every machine draws the same text.
  QApplication::setFont(QFont(QStringLiteral("IPAexGothic")));

  lirenza::MainWindow window;
  window.show();
  return app.exec();
}
