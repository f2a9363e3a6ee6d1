#pragma once
// The help menu's "about" box: the toolkit's own message box with the program's version
// and the licences of what it sounds and draws with.
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>

namespace lirenza {
class MainWindow;
namespace window {

class AboutBox : public QObject {
  Q_OBJECT

 public:
  explicit AboutBox(MainWindow& window);

  // The box's text (rich text): version, licence, and the sounds' and fonts' licences.
  static QString Text();
  // The box once shown; nullptr before.
  QMessageBox* Box() const { return box_; }

 private:
  void Open();

  MainWindow& window_;
  QPointer<QMessageBox> box_;
};

}  // namespace window
}  // namespace lirenza
