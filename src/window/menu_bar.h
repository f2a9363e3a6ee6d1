#pragma once
// The window's the menu bar with its menus, shortcuts and enabling rule, and the scale menu that fills the staff.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class MenuBar : public QObject {
  Q_OBJECT

 public:
  explicit MenuBar(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
