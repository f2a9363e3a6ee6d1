#pragma once
// The head of the staff and the fields above it: the key and time signatures show the
// score's and open their menus on a press (a key transposes the notes line by line and
// retunes; two items move the score an octave; a metre changes pictures only), the
// title and composer fields follow the score and write back into it, and a press on the
// repeat bar at the staff's end counts as the first click of a double click.
#include <QObject>

#include "window/menu_commands.h"

class QAction;
class QLineEdit;
class QMenu;

namespace lirenza {
class MainWindow;
namespace window {

class StaffHeadPanel : public QObject {
  Q_OBJECT

 public:
  explicit StaffHeadPanel(MainWindow& window);

  // Menu actions carry their item number; the title item carries none.
  static int ItemOf(const QAction* action);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildMenus();
  void ChooseKeyItem(int item);
  void ChooseTimeItem(int timeSignature);
  // Pictures and texts from the staff, after any change to the score.
  void ShowScore();
  QLineEdit* Field(bool title) const;

  MainWindow& window_;
  QMenu* keyMenu_ = nullptr;
  QMenu* timeMenu_ = nullptr;
};

}  // namespace window
}  // namespace lirenza
