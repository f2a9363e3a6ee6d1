#include "window/fingerboard_panel.h"

#include "window/main_window.h"

namespace lirenza::window {

FingerboardPanel::FingerboardPanel(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
