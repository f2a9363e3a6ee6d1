#pragma once
// The small preferences window of the help menu: which keyboard is in front of the
// user and which back the window wears. Each choice takes effect at once on the main
// window, which keeps it and hands it to the settings file at close. It opens over the
// main window, which waits while it is open, and is made at first use.
#include <QComboBox>
#include <QDialog>
#include <QObject>
#include <QPointer>

namespace lirenza {
class MainWindow;
namespace window {

class PreferencesWindow : public QObject {
  Q_OBJECT

 public:
  explicit PreferencesWindow(MainWindow& window);

  // Opens the window with the main window's present choices; returns at once.
  void Open();
  // The window, once it was opened; nullptr before.
  QDialog* Dialog() const { return dialog_; }
  QComboBox* KeyboardChoice() const { return keyboardChoice_; }
  QComboBox* BackChoice() const { return backChoice_; }

 private:
  void Make();

  MainWindow& window_;
  QPointer<QDialog> dialog_;
  QComboBox* keyboardChoice_ = nullptr;
  QComboBox* backChoice_ = nullptr;
};

}  // namespace window
}  // namespace lirenza
