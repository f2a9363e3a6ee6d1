#pragma once
// The four buttons that hand the score to the world outside: the MIDI file and the three
// player scripts, started in the desktop's terminal.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class ConversionPanel : public QObject {
  Q_OBJECT

 public:
  explicit ConversionPanel(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
