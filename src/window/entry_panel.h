#pragma once
// The window's the length, loudness and articulation buttons, which set what a double click on the staff enters.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class EntryPanel : public QObject {
  Q_OBJECT

 public:
  explicit EntryPanel(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
