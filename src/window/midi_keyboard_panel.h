#pragma once
// Notes from MIDI keyboards play the violin as the computer keyboard does.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class MidiKeyboardPanel : public QObject {
  Q_OBJECT

 public:
  explicit MidiKeyboardPanel(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
