#include "window/tuning_panel.h"

#include "window/main_window.h"

namespace lirenza::window {

TuningPanel::TuningPanel(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
