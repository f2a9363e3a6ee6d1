#pragma once
// The window's the head of the staff: key and time signatures with their menus, the octave moves, the tempo mark, title and composer.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class StaffHeadPanel : public QObject {
  Q_OBJECT

 public:
  explicit StaffHeadPanel(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
