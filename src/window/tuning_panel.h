#pragma once
// The window's the twelve ratio and frequency fields and the key name, which follow the key of the score.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class TuningPanel : public QObject {
  Q_OBJECT

 public:
  explicit TuningPanel(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
