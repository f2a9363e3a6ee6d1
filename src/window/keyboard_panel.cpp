#include "window/keyboard_panel.h"

#include "window/main_window.h"

namespace lirenza::window {

KeyboardPanel::KeyboardPanel(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
