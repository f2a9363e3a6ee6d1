#pragma once
// The length, loudness and articulation buttons, which decide what a double click on
// the staff enters: the editor keeps the choice in the window's entry state, and the
// buttons always show what the entry state holds, so a refused choice springs back.
#include <QObject>

#include "window/layout_table.h"

namespace lirenza {
class MainWindow;
namespace window {

class EntryPanel : public QObject {
  Q_OBJECT

 public:
  explicit EntryPanel(MainWindow& window);

 private:
  void Choose(layout::ControlId family, int index);
  // Checks the one button of each family that the entry state names.
  void ShowChoices();

  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
