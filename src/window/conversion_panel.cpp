#include "window/conversion_panel.h"

#include "window/main_window.h"

namespace lirenza::window {

ConversionPanel::ConversionPanel(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
