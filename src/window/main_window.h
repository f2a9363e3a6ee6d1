#pragma once
// The main window's frame: a frameless, see-through window of fixed size whose shape
// is its back picture. It makes every control of the layout table, reveals the slow
// ones after the start pause, is dragged by its body, minimised and closed by its
// drawn buttons, and asks before closing over unsaved changes.
#include <QColor>
#include <QElapsedTimer>
#include <QImage>
#include <QPoint>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "window/close_question.h"
#include "window/layout_table.h"
#include "window/menu_commands.h"
#include "window/picture_store.h"
#include "window/window_state.h"

class QButtonGroup;

namespace lirenza {

namespace window {
class StaffView;
}

class MainWindow : public QWidget {
  Q_OBJECT

 public:
  // How long the sliders, group boxes and score list wait before they show.
  static constexpr int kStartPauseMs = 1500;
  // A second press on the body this soon after the first minimises the window.
  static constexpr int kDoublePressMs = 500;
  static constexpr int kBackPictureCount = 12;

  // Services left empty get the real ones.
  explicit MainWindow(window::WindowServices services = {}, QWidget* parent = nullptr);
  ~MainWindow() override;

  // The widget made for a row of the layout table; nullptr when there is none.
  QWidget* Control(layout::ControlId id, int index = 0) const;

  window::WindowState& State() { return state_; }
  const window::WindowServices& Services() const { return services_; }
  window::StaffView& Staff() { return *staffView_; }

  // Whether the score has changes that closing would lose, and what saves them. The
  // save returns false when nothing was saved (cancelled or failed): closing stops.
  bool HasUnsavedChanges() const { return state_.staff.hasChanges; }
  void SetSaveAction(std::function<bool()> save) { save_ = std::move(save); }
  // The close question over unsaved changes, and the save it may ask for. False when the
  // user cancelled or nothing was saved: whatever would replace the score must stop.
  bool SettleUnsavedChanges();

  // Opens a score file as a document from outside (the command line, the desktop):
  // through the opener the file commands register, after the close question when the
  // staff has unsaved changes.
  void SetDocumentOpener(std::function<void(const QString& path)> opener) { opener_ = std::move(opener); }
  void OpenDocument(const QString& path) {
    if (opener_) opener_(path);
  }

  // Menu items and shortcuts reach the panel that carries them out through here.
  void OnMenu(window::MenuCommand command, std::function<void(int index)> handler);
  bool HasMenuHandler(window::MenuCommand command) const { return menuHandlers_.count(command) != 0; }
  // Runs the handler of command; false when none is registered.
  bool RunMenuCommand(window::MenuCommand command, int index = 0);

  // After the logic moved the staff (a page turned by playback, a fill, a bar command,
  // an opened score), the scroll bar shows where the staff stands, without feeding the
  // move back, and the staff is painted again.
  void ShowStaffScroll();

  // Every change to the score is told here, and every panel that shows it hears it.
  void NotifyScoreChanged(window::ScoreChange change) { emit scoreChanged(change); }

  // Shows back picture n and, unless told to keep it, the name of its violinist; a
  // number outside the twelve shows the eighth picture but is kept as given.
  enum class PlayerName { Follows, Stays };
  void SetBackPicture(int n, PlayerName name = PlayerName::Follows);
  int BackPicture() const { return backPicture_; }

  // The keyboard the user says is in front of them, 0 Japanese (JIS), 1 US. The keys
  // play the same notes on either; the menus and the preferences show it.
  void SetKeyboardLayout(int layout);
  int KeyboardLayout() const { return keyboardLayout_; }
  // The page setup of the last run, as the printing keeps it; the settings file holds it.
  void SetPrinterSetup(std::string setup) { printerSetup_ = std::move(setup); }
  const std::string& PrinterSetup() const { return printerSetup_; }

  // Where the desktop composites windows, what the back leaves out shows the desktop;
  // where it does not, it would show black, so the window takes the back's outline as
  // its shape and lays the body colour under the back's soft edge.
  void SetDesktopComposites(bool composites);
  bool DesktopComposites() const { return desktopComposites_; }
  void SetBodyColour(QColor colour);
  QColor BodyColour() const { return bodyColour_; }
  bool StartPauseOver() const { return startPauseOver_; }

  PictureStore& Pictures() { return pictures_; }

  // Whether event, sent to watched, takes the keyboard and mouse away from this
  // window: it stops being the active window, the program goes to the background, or
  // another of its windows (a menu, a dialog) opens over it. A key or a button held
  // then is never seen rising, so whatever it sounds must end at once.
  bool LosesInput(const QObject* watched, const QEvent* event) const;

 signals:
  void StartPauseEnded();
  void scoreChanged(window::ScoreChange change);
  void keyboardLayoutChanged(int layout);
  // The window is closing for good: the close question, if any, let it go.
  void Closing();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeControls();
  void PlaceStaff();
  void MakePanels();
  void GroupButtonFamilies();
  void WireFrameButtons();
  void EndStartPause();
  void PressOnBody(QMouseEvent* event);
  void FollowBackOutline();

  // A window given no fingerboard view draws the fingers on its own violin.
  bool drawsOwnViolin_;
  PictureStore pictures_;
  window::WindowServices services_;
  window::WindowState state_;
  window::StaffView* staffView_ = nullptr;
  std::map<window::MenuCommand, std::function<void(int)>> menuHandlers_;
  std::map<std::pair<layout::ControlId, int>, QWidget*> controls_;
  std::map<layout::ControlId, QButtonGroup*> buttonGroups_;
  QTimer startPause_;
  bool startPauseOver_ = false;
  QImage back_;
  int backPicture_ = 0;
  int keyboardLayout_ = 0;
  std::string printerSetup_;
  bool desktopComposites_ = true;
  QColor bodyColour_{0x19, 0x19, 0x19};
  std::function<bool()> save_;
  std::function<void(const QString&)> opener_;
  QPoint dragOffset_;  // from the window's corner to the mouse, at the press
  bool dragging_ = false;
  QElapsedTimer sinceLastPress_;
};

}  // namespace lirenza
