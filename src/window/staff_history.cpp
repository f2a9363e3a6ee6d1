#include "window/staff_history.h"

#include "window/main_window.h"

namespace lirenza::window {

StaffHistory::StaffHistory(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
