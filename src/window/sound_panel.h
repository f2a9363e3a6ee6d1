#pragma once
// The window's the instrument group and instrument menus, the volume and tempo sliders with their labels, and the speaker.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class SoundPanel : public QObject {
  Q_OBJECT

 public:
  explicit SoundPanel(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
