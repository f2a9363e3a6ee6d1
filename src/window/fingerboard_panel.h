#pragma once
// The mouse as the left hand on the drawn violin: a press on a string sounds, shows and
// enters a note; its release ends it wherever the pointer is.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class FingerboardPanel : public QObject {
  Q_OBJECT

 public:
  explicit FingerboardPanel(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
