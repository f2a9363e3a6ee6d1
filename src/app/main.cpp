// lirenza: the window program.
#include <QApplication>
#include <QFont>

#include "platform/sound_system.h"
#include "window/main_window.h"

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Lirenza"));
  QApplication::setOrganizationName(QStringLiteral("Lirenza"));
  // The installed Japanese face, named outright, so every machine draws the same text.
  QApplication::setFont(QFont(QStringLiteral("IPAexGothic")));

  // The sound fonts load on a thread of their own: the window paints at once and the
  // players sound as soon as the fonts are in.
  lirenza::SoundSystem sound(lirenza::AudioSettingsFromEnvironment());
  lirenza::window::WindowServices services;
  for (int i = 0; i < lirenza::kNotePlayers; ++i) services.ports.players[i] = &sound.Player(i);

  lirenza::MainWindow window(std::move(services));
  window.show();
  // A score named on the command line opens as a document does.
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() > 1) window.OpenDocument(arguments.at(1));
  return app.exec();
}
