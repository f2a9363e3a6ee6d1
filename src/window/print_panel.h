#pragma once
// Page setup and printing from the file menu. The score is composed on the sheets it
// needs and sent through the toolkit's print dialog; the page setup chosen is kept on
// the window for the next run. While the score plays, printing does nothing.
#include <QObject>
#include <QPageLayout>
#include <memory>

class QPrinter;
class QWidget;

namespace lirenza {
class MainWindow;
namespace window {

// The two dialogs, so tests can answer them. Each returns false when cancelled.
class PrintDialogs {
 public:
  virtual ~PrintDialogs() = default;
  virtual bool SetUpPage(QWidget* parent, QPrinter& printer) = 0;
  virtual bool ChoosePrinter(QWidget* parent, QPrinter& printer) = 0;
};

class PrintPanel : public QObject {
  Q_OBJECT

 public:
  explicit PrintPanel(MainWindow& window);
  ~PrintPanel() override;
  void SetDialogs(std::unique_ptr<PrintDialogs> dialogs);

 private:
  void SetUpPage();
  void Print();

  MainWindow& window_;
  std::unique_ptr<PrintDialogs> dialogs_;
};

}  // namespace window
}  // namespace lirenza
