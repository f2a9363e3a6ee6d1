#pragma once
// The computer keyboard as the violin: the physical keys held down, the polling passes of the
// hand positions, the panic key and the slider keys.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class KeyboardPanel : public QObject {
  Q_OBJECT

 public:
  explicit KeyboardPanel(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
