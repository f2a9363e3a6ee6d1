#include "window/staff_head_panel.h"

#include <QAbstractButton>
#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>

#include "editor/key_time.h"
#include "window/control_factory.h"
#include "window/main_window.h"
#include "window/picture_canvas.h"
#include "window/staff_view.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

constexpr const char* kItemProperty = "headMenuItem";
// The mode button that plays from the keyboard: while it is on, typing plays notes and
// the text fields take no keys.
constexpr int kPlayModeButton = 1;

QAction* AddItem(QMenu& menu, std::string_view caption, int item) {
  QAction* action = menu.addAction(ToQString(caption));
  action->setProperty(kItemProperty, item);
  return action;
}

// A title, a separator, then the items: the title can be chosen and does nothing.
void FillMenu(QMenu& menu, const char* title, int count, std::string_view (*caption)(int)) {
  menu.addAction(QString::fromUtf8(title));
  menu.addSeparator();
  for (int item = 0; item < count; ++item) AddItem(menu, caption(item), item);
}

}  // namespace

StaffHeadPanel::StaffHeadPanel(MainWindow& window) : QObject(&window), window_(window) {
  BuildMenus();
  for (ControlId id : {ControlId::KeySignature, ControlId::TimeSignature, ControlId::StaffEnd})
    window_.Control(id)->installEventFilter(this);

  for (bool title : {true, false})
    connect(Field(title), &QLineEdit::textChanged, this, [this, title](const QString& text) {
      // Any change of text, typed or put in, leaves the score changed.
      Staff& staff = window_.State().staff;
      title ? SetTitle(staff, text.toStdString()) : SetComment(staff, text.toStdString());
    });
  if (auto* playMode = qobject_cast<QAbstractButton*>(window_.Control(ControlId::ModeButton, kPlayModeButton))) {
    auto follow = [this](bool playing) {
      for (bool title : {true, false}) Field(title)->setEnabled(!playing);
    };
    // A mode change while a score is read or played leaves the fields as they were.
    connect(playMode, &QAbstractButton::toggled, this, [this, follow](bool playing) {
      if (!window_.State().modes.Busy()) follow(playing);
    });
    follow(playMode->isChecked());
  }

  connect(&window_, &MainWindow::scoreChanged, this, [this] { ShowScore(); });
  ShowScore();
}

int StaffHeadPanel::ItemOf(const QAction* action) {
  const QVariant item = action ? action->property(kItemProperty) : QVariant();
  return item.isValid() ? item.toInt() : -1;
}

void StaffHeadPanel::BuildMenus() {
  keyMenu_ = new QMenu(&window_);
  FillMenu(*keyMenu_, kKeyMenuTitle, kKeyMenuItemCount, KeyMenuCaption);
  connect(keyMenu_, &QMenu::triggered, this, [this](QAction* action) { ChooseKeyItem(ItemOf(action)); });
  timeMenu_ = new QMenu(&window_);
  FillMenu(*timeMenu_, kTimeMenuTitle, kTimeCount, TimeMenuCaption);
  connect(timeMenu_, &QMenu::triggered, this, [this](QAction* action) { ChooseTimeItem(ItemOf(action)); });
}

bool StaffHeadPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ContextMenu) return true;  // the press has opened the menu already
  if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick) return false;
  const auto* press = static_cast<QMouseEvent*>(event);
  if (press->button() != Qt::LeftButton && press->button() != Qt::RightButton) return false;
  if (watched == window_.Control(ControlId::StaffEnd)) {
    PressRightOfStaff(window_.State().entry, window_.Services().clock->Ticks());
    return true;
  }
  QMenu* menu = watched == window_.Control(ControlId::KeySignature) ? keyMenu_ : timeMenu_;
  menu->popup(press->globalPosition().toPoint());
  return true;
}

void StaffHeadPanel::ChooseKeyItem(int item) {
  if (item < 0) return;  // the title
  WindowState& state = window_.State();
  const int keyBefore = state.staff.keySignature;
  const std::vector<Note> notesBefore = state.staff.notes;
  if (!ChooseKey(state.staff, state.tuning, state.modes, item)) return;
  window_.Staff().update();
  // Choosing the key already set, or an octave move of an empty staff, changes nothing.
  if (state.staff.keySignature != keyBefore || state.staff.notes != notesBefore)
    window_.NotifyScoreChanged(ScoreChange::Edited);
}

void StaffHeadPanel::ChooseTimeItem(int timeSignature) {
  WindowState& state = window_.State();
  const int before = state.staff.timeSignature;
  // The title item repaints the staff too, and changes nothing.
  if (timeSignature >= 0 && ChooseTime(state.staff, state.modes, timeSignature) &&
      state.staff.timeSignature != before)
    window_.NotifyScoreChanged(ScoreChange::Edited);
  window_.Staff().update();
}

void StaffHeadPanel::ShowScore() {
  const Staff& staff = window_.State().staff;
  PictureStore& pictures = window_.Pictures();
  static_cast<PictureCanvas*>(window_.Control(ControlId::KeySignature))
      ->SetPicture(pictures.Picture(QString::fromStdString(staff.keySignaturePicture)));
  static_cast<PictureCanvas*>(window_.Control(ControlId::TimeSignature))
      ->SetPicture(pictures.Picture(QString::fromStdString(staff.timeSignaturePicture)));
  for (bool title : {true, false}) {
    const QString text = QString::fromStdString(title ? staff.title : staff.comment);
    if (Field(title)->text() != text) Field(title)->setText(text);
  }
}

QLineEdit* StaffHeadPanel::Field(bool title) const {
  return static_cast<QLineEdit*>(window_.Control(title ? ControlId::TitleField : ControlId::ComposerField));
}

}  // namespace lirenza::window
