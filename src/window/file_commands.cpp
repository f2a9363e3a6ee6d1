#include "window/file_commands.h"

#include "window/main_window.h"

namespace lirenza::window {

FileCommands::FileCommands(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
