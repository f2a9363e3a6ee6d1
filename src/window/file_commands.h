#pragma once
// The window's open, save and MIDI save through the file dialogs, a score dropped on the window or named on the command line, and the reading status.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class FileCommands : public QObject {
  Q_OBJECT

 public:
  explicit FileCommands(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
