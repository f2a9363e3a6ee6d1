#include "window/entry_panel.h"

#include "window/main_window.h"

namespace lirenza::window {

EntryPanel::EntryPanel(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
