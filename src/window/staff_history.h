#pragma once
// The window's undo and redo of every change to the staff, as far back as the score was opened.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class StaffHistory : public QObject {
  Q_OBJECT

 public:
  explicit StaffHistory(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
