#include "window/sound_panel.h"

#include "window/main_window.h"

namespace lirenza::window {

SoundPanel::SoundPanel(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
