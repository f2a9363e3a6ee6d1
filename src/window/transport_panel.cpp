#include "window/transport_panel.h"

#include "window/main_window.h"

namespace lirenza::window {

TransportPanel::TransportPanel(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
