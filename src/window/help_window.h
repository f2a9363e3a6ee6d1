#pragma once
// The help menu's pages, shown inside the program in a window of their own with back,
// forward and contents. The pages and their pictures are made with the program; a
// missing folder is told in one sentence.
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTextBrowser>
#include <QWidget>

namespace lirenza {
class MainWindow;
namespace window {

class HelpWindow : public QObject {
  Q_OBJECT

 public:
  explicit HelpWindow(MainWindow& window);

  // Where the pages are: $LIRENZA_HELP, the build tree, beside the program, the prefix.
  static QString DefaultFolder();
  void SetFolder(QString folder) { folder_ = std::move(folder); }

  // The help window and its page view once opened; nullptr before.
  QWidget* Window() const { return helpWindow_; }
  QTextBrowser* Browser() const { return browser_; }

 private:
  void Open();
  void Make();

  MainWindow& window_;
  QString folder_;
  QPointer<QWidget> helpWindow_;
  QTextBrowser* browser_ = nullptr;
};

}  // namespace window
}  // namespace lirenza
