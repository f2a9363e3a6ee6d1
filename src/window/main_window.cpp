#include "window/main_window.h"

#include <QAbstractButton>
#include <QBitmap>
#include <QButtonGroup>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QSignalBlocker>

#include "picture_list.h"
#include "window/about_box.h"
#include "window/control_factory.h"
#include "window/conversion_panel.h"
#include "window/desktop_compositor.h"
#include "window/entry_panel.h"
#include "window/file_commands.h"
#include "window/fingerboard_panel.h"
#include "window/help_window.h"
#include "window/keyboard_panel.h"
#include "window/library_panel.h"
#include "window/menu_bar.h"
#include "window/midi_keyboard_panel.h"
#include "window/picture_canvas.h"
#include "window/preferences_window.h"
#include "window/print_panel.h"
#include "window/sound_panel.h"
#include "window/staff_head_panel.h"
#include "window/staff_history.h"
#include "window/staff_view.h"
#include "window/transport_panel.h"
#include "window/tuning_panel.h"
#include "window/violin_view.h"

namespace lirenza {
namespace {

using layout::ControlId;

// The back picture a number outside the twelve falls back to.
constexpr int kFallbackBackPicture = 8;

// The drawn window buttons, by index: close, minimise, and one that does nothing.
enum WindowButtonIndex { kCloseButton = 0, kMinimiseButton = 1 };

const QString kCloseMessage = QStringLiteral("アプリを閉じる前に、変更した楽譜を保存しますか？");
const QString kCloseExplanation = QStringLiteral("保存しない場合は、変更した部分は破棄されます。 ");
const QString kSaveCaption = QStringLiteral("保存");
const QString kDontSaveCaption = QStringLiteral("保存しない");

}  // namespace

MainWindow::MainWindow(window::WindowServices services, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint),
      drawsOwnViolin_(services.ports.view == nullptr),
      pictures_(PictureStore::DefaultFolder(), PictureStore::ScaleForScreens()),
      services_(window::WithRealServices(std::move(services), this)) {
  // The largest pictures of the first paint (the violin, the back SetBackPicture(0)
  // shows, the staff's sheet) decode on their own thread while the controls are made.
  pictures_.ReadAhead({QStringLiteral("Violin"), QStringLiteral("ViolinBack0"),
                       QString::fromStdString(state_.staff.sheetPicture)});
  setWindowTitle(ToQString(layout::kWindowTitle));
  setAttribute(Qt::WA_TranslucentBackground);
  setFixedSize(layout::kWindowWidth, layout::kWindowHeight);
  setCursor(Qt::PointingHandCursor);

  MakeControls();
  if (drawsOwnViolin_) services_.ports.view = new window::ViolinView(*this);
  PlaceStaff();
  GroupButtonFamilies();
  WireFrameButtons();
  desktopComposites_ = window::DesktopComposites();
  SetBackPicture(0);
  MakePanels();

  startPause_.setSingleShot(true);
  startPause_.setInterval(kStartPauseMs);
  connect(&startPause_, &QTimer::timeout, this, &MainWindow::EndStartPause);
  startPause_.start();
}

// Panels and controls read the window's state and its table of controls, and a
// widget being torn down still sends events (focus, leave, hide) to their handlers.
// So they go first, panels before the controls they watch, while the state lives.
MainWindow::~MainWindow() {
  QList<QPointer<QObject>> panels, widgets;
  for (QObject* child : children()) (child->isWidgetType() ? widgets : panels).append(child);
  for (const QPointer<QObject>& child : panels) delete child.data();
  for (const QPointer<QObject>& child : widgets) delete child.data();
  controls_.clear();
}

QWidget* MainWindow::Control(ControlId id, int index) const {
  auto found = controls_.find({id, index});
  return found == controls_.end() ? nullptr : found->second;
}

void MainWindow::MakeControls() {
  const layout::Place windowPlace{0, 0, layout::kWindowWidth, layout::kWindowHeight};
  for (const layout::Control& c : layout::AllControls()) {
    QWidget* parent = this;
    layout::Place parentPlace = windowPlace;
    if (c.parent != ControlId::Window) {
      parent = Control(c.parent);
      parentPlace = layout::ControlAt(c.parent).place;
    }
    controls_[{c.ref.id, c.ref.index}] = MakeControl(c, parent, parentPlace, pictures_);
  }
}

// The staff canvas of the table becomes the staff view, at the same place; the
// scroll bar under it moves the view by bars.
void MainWindow::PlaceStaff() {
  QWidget* canvas = Control(ControlId::StaffCanvas);
  staffView_ = new window::StaffView(
      window::StaffViewState{state_.staff, state_.modes, state_.entry, state_.tuning, services_.ports,
                             *services_.clock, pictures_, *services_.confirm},
      canvas->parentWidget());
  staffView_->setGeometry(canvas->geometry());
  staffView_->setToolTip(canvas->toolTip());
  staffView_->stackUnder(canvas);
  // The hidden note template lives in the canvas: it moves over with its place.
  for (QWidget* child : canvas->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    const QPoint at = child->pos();
    child->setParent(staffView_);
    child->move(at);
  }
  delete canvas;
  controls_[{ControlId::StaffCanvas, 0}] = staffView_;
  connect(staffView_, &window::StaffView::staffChanged, this,
          [this] { NotifyScoreChanged(window::ScoreChange::Edited); });
  connect(staffView_, &window::StaffView::openScoreRequested, this,
          [this] { RunMenuCommand(window::MenuCommand::OpenScore); });
  connect(staffView_, &window::StaffView::saveScoreRequested, this,
          [this] { RunMenuCommand(window::MenuCommand::SaveScore); });
  if (auto* bar = qobject_cast<QScrollBar*>(Control(ControlId::StaffScrollBar)))
    connect(bar, &QScrollBar::valueChanged, staffView_, &window::StaffView::ScrollTo);
}

// Each panel owns its controls and their events; the window only makes them.
void MainWindow::MakePanels() {
  new window::EntryPanel(*this);
  new window::StaffHeadPanel(*this);
  new window::SoundPanel(*this);
  new window::TuningPanel(*this);
  new window::TransportPanel(*this);
  new window::FileCommands(*this);
  new window::StaffHistory(*this);
  new window::MenuBar(*this);
  new window::KeyboardPanel(*this);
  new window::FingerboardPanel(*this);
  new window::ConversionPanel(*this);
  new window::MidiKeyboardPanel(*this);
  new window::LibraryPanel(*this);  // after the transport and file commands it hands scores to
  new window::PreferencesWindow(*this);
  new window::AboutBox(*this);
  new window::PrintPanel(*this);
  new window::HelpWindow(*this);
}

bool MainWindow::LosesInput(const QObject* watched, const QEvent* event) const {
  switch (event->type()) {
    case QEvent::WindowDeactivate:
      return watched == this;
    case QEvent::ApplicationStateChange:
      return static_cast<const QApplicationStateChangeEvent*>(event)->applicationState() != Qt::ApplicationActive;
    case QEvent::Show: {
      if (!watched->isWidgetType()) return false;
      const auto* shown = static_cast<const QWidget*>(watched);
      return shown != this && shown->isWindow() && shown->windowType() != Qt::ToolTip;
    }
    default:
      return false;
  }
}

void MainWindow::ShowStaffScroll() {
  auto* bar = qobject_cast<QScrollBar*>(Control(ControlId::StaffScrollBar));
  if (bar && bar->value() != state_.staff.scrollValue) {
    const QSignalBlocker quiet(bar);
    bar->setValue(state_.staff.scrollValue);
  }
  staffView_->update();
}

void MainWindow::OnMenu(window::MenuCommand command, std::function<void(int)> handler) {
  menuHandlers_[command] = std::move(handler);
}

bool MainWindow::RunMenuCommand(window::MenuCommand command, int index) {
  auto found = menuHandlers_.find(command);
  if (found == menuHandlers_.end()) return false;
  found->second(index);
  return true;
}

// Each family of radio and bevel buttons holds one choice: a press on one releases
// the others, and the index of the button is its identifier in the group.
void MainWindow::GroupButtonFamilies() {
  for (const layout::Control& c : layout::AllControls()) {
    if (c.kind != layout::ControlKind::RadioButton && c.kind != layout::ControlKind::BevelButton) continue;
    QButtonGroup*& group = buttonGroups_[c.ref.id];
    if (!group) group = new QButtonGroup(this);
    group->addButton(static_cast<QAbstractButton*>(Control(c.ref.id, c.ref.index)), c.ref.index);
  }
}

void MainWindow::WireFrameButtons() {
  for (int i = 0; i < layout::FamilySize(ControlId::WindowButton); ++i) {
    auto* button = static_cast<PictureCanvas*>(Control(ControlId::WindowButton, i));
    const QString atRest = ToQString(layout::ControlAt(ControlId::WindowButton, i).picture);
    // The red and yellow buttons light up under the mouse and darken when held.
    const bool lights = i == kCloseButton || i == kMinimiseButton;
    button->SetButtonPictures(pictures_.Picture(atRest), pictures_.Picture(lights ? atRest + "I" : atRest),
                              pictures_.Picture(lights ? atRest + "P" : atRest));
  }
  connect(static_cast<PictureCanvas*>(Control(ControlId::WindowButton, kCloseButton)), &PictureCanvas::Pressed,
          this, &QWidget::close);
  connect(static_cast<PictureCanvas*>(Control(ControlId::WindowButton, kMinimiseButton)),
          &PictureCanvas::Pressed, this, &QWidget::showMinimized);

  auto* backButton = static_cast<PictureCanvas*>(Control(ControlId::BackPictureButton));
  backButton->SetButtonPictures(pictures_.Picture(QStringLiteral("musi1")), pictures_.Picture(QStringLiteral("musi0")),
                                pictures_.Picture(QStringLiteral("musi2")));
  connect(backButton, &PictureCanvas::Pressed, this,
          [this] { SetBackPicture((backPicture_ + 1) % kBackPictureCount); });
}

void MainWindow::SetBackPicture(int n, PlayerName name) {
  backPicture_ = n;
  const int shown = n >= 0 && n < kBackPictureCount ? n : kFallbackBackPicture;
  back_ = pictures_.Picture(QStringLiteral("ViolinBack%1").arg(shown));
  if (auto* label = qobject_cast<QLabel*>(Control(ControlId::PlayerNameLabel)); label && name == PlayerName::Follows)
    label->setText(ToQString(pictures::kPortraitNames[shown]));
  FollowBackOutline();
  update();
}

void MainWindow::SetKeyboardLayout(int layout) {
  if (layout == keyboardLayout_) return;
  keyboardLayout_ = layout;
  emit keyboardLayoutChanged(layout);
}

void MainWindow::SetDesktopComposites(bool composites) {
  desktopComposites_ = composites;
  FollowBackOutline();
  update();
}

void MainWindow::SetBodyColour(QColor colour) {
  bodyColour_ = colour;
  update();
}

// Without a compositor the window is cut to the back's outline: what is even a little
// opaque stays, so the soft edge is drawn over the body colour instead of black.
void MainWindow::FollowBackOutline() {
  if (desktopComposites_ || back_.isNull()) {
    clearMask();
    return;
  }
  // The outline in the window's pixels, whatever scale the back was drawn at.
  const QImage alpha = back_.convertToFormat(QImage::Format_Alpha8)
                           .scaled(back_.deviceIndependentSize().toSize(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
  QImage outline(alpha.size(), QImage::Format_MonoLSB);
  outline.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});  // 1: black, the bitmap's inside
  outline.fill(0);
  for (int y = 0; y < alpha.height(); ++y) {
    const uchar* from = alpha.constScanLine(y);
    uchar* to = outline.scanLine(y);
    for (int x = 0; x < alpha.width(); ++x)
      if (from[x] != 0) to[x >> 3] |= uchar(1u << (x & 7));
  }
  setMask(QBitmap::fromImage(outline));
}

void MainWindow::EndStartPause() {
  for (const layout::Control& c : layout::AllControls()) {
    QWidget* w = Control(c.ref.id, c.ref.index);
    if (c.visibility == layout::Visibility::AfterStartPause) w->show();
    // From here on the text fields hold their captions as text, unless a score opened
    // during the pause (from the command line, say) already gave them its own.
    if (c.kind == layout::ControlKind::TextField && !c.caption.empty()) {
      auto* field = static_cast<QLineEdit*>(w);
      if (field->text().isEmpty()) field->setText(ToQString(c.caption));
    }
  }
  startPauseOver_ = true;
  emit StartPauseEnded();
}

void MainWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.fillRect(rect(), Qt::transparent);  // what the picture leaves out shows the desktop
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  if (!desktopComposites_) painter.fillRect(rect(), bodyColour_);
  painter.drawImage(0, 0, back_);
}

void MainWindow::PressOnBody(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  event->accept();
  const bool secondPress = sinceLastPress_.isValid() && sinceLastPress_.elapsed() < kDoublePressMs;
  sinceLastPress_.start();
  if (secondPress) {
    dragging_ = false;
    sinceLastPress_.invalidate();
    showMinimized();
    return;
  }
  dragging_ = true;
  dragOffset_ = event->globalPosition().toPoint() - pos();
}

void MainWindow::mousePressEvent(QMouseEvent* event) { PressOnBody(event); }

// The toolkit reports a quick second press as a double click instead of a press.
void MainWindow::mouseDoubleClickEvent(QMouseEvent* event) { PressOnBody(event); }

void MainWindow::mouseMoveEvent(QMouseEvent* event) {
  if (!dragging_ || !(event->buttons() & Qt::LeftButton)) return;
  move(event->globalPosition().toPoint() - dragOffset_);
}

bool MainWindow::SettleUnsavedChanges() {
  if (!HasUnsavedChanges()) return true;
  switch (services_.closeQuestion->Ask(this, kCloseMessage, kCloseExplanation, kSaveCaption, kDontSaveCaption)) {
    case CloseQuestion::Answer::Cancel: return false;
    case CloseQuestion::Answer::Save: return !save_ || save_();  // nothing saved: the changes stay on screen
    case CloseQuestion::Answer::DontSave: return true;
  }
  return false;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (SettleUnsavedChanges()) {
    event->accept();
    emit Closing();
  } else {
    event->ignore();
  }
}

}  // namespace lirenza
