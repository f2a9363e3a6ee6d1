#pragma once
// The window's menu bar: the file, edit, scale and help menus with their texts and
// shortcuts, standing on the frame's top edge. Every item reaches its panel through
// the window's menu commands; an item whose command nobody carries out yet stays
// disabled, and saving and the first four bar commands wait for unsaved changes.
// The menu bar carries out itself what belongs to no panel: the scales, the edit
// menu's bar commands, the text fields' cut, copy, paste and select all, the keyboard
// type marks and the body style.
#include <QObject>
#include <QPointer>
#include <vector>

#include "window/menu_commands.h"

class QAction;
class QLineEdit;
class QMenu;
class QMenuBar;

namespace lirenza {
class MainWindow;
namespace window {

class MenuBar : public QObject {
  Q_OBJECT

 public:
  explicit MenuBar(MainWindow& window);

  QMenuBar* Bar() const { return bar_; }
  // The scale last chosen from the menu; it keeps the check mark.
  int CheckedScale() const { return checkedScale_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Item {
    QAction* action;
    MenuCommand command;
    int index;
    bool waitsForChanges;  // enabled only while the score holds unsaved changes
  };

  void BuildFileMenu();
  void BuildEditMenu();
  void BuildScaleMenu();
  void BuildHelpMenu();
  QAction* AddItem(QMenu& menu, const char* text, const char* shortcut, MenuCommand command, int index = 0,
                   bool waitsForChanges = false);
  void RegisterHandlers();
  void ApplyEnablingRule();

  void ChooseScale(int index);
  void RunBarCommand(int index);
  void SetBodyStyle(int index);
  void ShowCheckMarks();
  // The text field that has the focus or last had it.
  QLineEdit* TextField() const;

  MainWindow& window_;
  QMenuBar* bar_ = nullptr;
  std::vector<Item> items_;
  std::vector<QAction*> scaleActions_, keyboardActions_, bodyActions_;
  int checkedScale_ = 0;
  int bodyStyle_ = -1;    // none checked until one is chosen
  QPointer<QLineEdit> lastTextField_;
};

}  // namespace window
}  // namespace lirenza
