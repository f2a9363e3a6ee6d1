#include "window/midi_keyboard_panel.h"

#include "window/main_window.h"

namespace lirenza::window {

MidiKeyboardPanel::MidiKeyboardPanel(MainWindow& window) : QObject(&window), window_(window) {}

}  // namespace lirenza::window
