#include "window/staff_head_panel.h"

#include "window/main_window.h"

namespace lirenza::window {

StaffHeadPanel::StaffHeadPanel(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
