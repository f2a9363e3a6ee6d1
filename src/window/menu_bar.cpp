#include "window/menu_bar.h"

#include "window/main_window.h"

namespace lirenza::window {

MenuBar::MenuBar(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
