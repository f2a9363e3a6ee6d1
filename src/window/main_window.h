#pragma once
// The main window's frame: a frameless, see-through window of fixed size whose shape
// is its back picture. It makes every control of the layout table, reveals the slow
// ones after the start pause, is dragged by its body, minimised and closed by its
// drawn buttons, and asks before closing over unsaved changes.
#include <QElapsedTimer>
#include <QImage>
#include <QPoint>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "window/close_question.h"
#include "window/layout_table.h"
#include "window/picture_store.h"

class QButtonGroup;

namespace lirenza {

class MainWindow : public QWidget {
  Q_OBJECT

 public:
  // How long the sliders, group boxes and score list wait before they show.
  static constexpr int kStartPauseMs = 1500;
  // A second press on the body this soon after the first minimises the window.
  static constexpr int kDoublePressMs = 500;
  static constexpr int kBackPictureCount = 12;

  // question may be null: the real message box is used.
  explicit MainWindow(std::unique_ptr<CloseQuestion> question = nullptr, QWidget* parent = nullptr);
  ~MainWindow() override;

  // The widget made for a row of the layout table; nullptr when there is none.
  QWidget* Control(layout::ControlId id, int index = 0) const;

  // Whether the score has changes that closing would lose, and what saves them.
  void SetUnsavedChanges(bool unsaved) { unsavedChanges_ = unsaved; }
  bool HasUnsavedChanges() const { return unsavedChanges_; }
  void SetSaveAction(std::function<void()> save) { save_ = std::move(save); }

  // Shows back picture n and the name of its violinist; a number outside the twelve
  // shows the eighth picture but is kept as given.
  void SetBackPicture(int n);
  int BackPicture() const { return backPicture_; }
  bool StartPauseOver() const { return startPauseOver_; }

  PictureStore& Pictures() { return pictures_; }

 signals:
  void StartPauseEnded();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeControls();
  void GroupButtonFamilies();
  void WireFrameButtons();
  void EndStartPause();
  void PressOnBody(QMouseEvent* event);

  PictureStore pictures_;
  std::unique_ptr<CloseQuestion> question_;
  std::map<std::pair<layout::ControlId, int>, QWidget*> controls_;
  std::map<layout::ControlId, QButtonGroup*> buttonGroups_;
  QTimer startPause_;
  bool startPauseOver_ = false;
  QImage back_;
  int backPicture_ = 0;
  bool unsavedChanges_ = false;
  std::function<void()> save_;
  QPoint dragOffset_;  // from the window's corner to the mouse, at the press
  bool dragging_ = false;
  QElapsedTimer sinceLastPress_;
};

}  // namespace lirenza
