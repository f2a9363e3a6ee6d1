#include "window/menu_bar.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProxyStyle>
#include <tuple>

#include "editor/bar_operations.h"
#include "tuning/scale_lines.h"
#include "window/control_factory.h"
#include "window/main_window.h"
#include "window/staff_view.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

// Light text on the dark wood; the open menus are dark panels of their own, so they
// read the same over any back picture.
constexpr const char* kStyle =
    "QMenuBar { background: transparent; color: #f3e6cf; }"
    "QMenuBar::item { background: transparent; padding: 2px 9px; }"
    "QMenuBar::item:selected, QMenuBar::item:pressed { background: rgba(255, 236, 200, 60); border-radius: 3px; }"
    "QMenu { background: #2b1e15; color: #f3e6cf; border: 1px solid #7a5634; padding: 3px 0; }"
    "QMenu::item { padding: 3px 28px 3px 24px; }"
    "QMenu::item:selected { background: #8a5d34; }"
    "QMenu::item:disabled { color: #8c7b68; }"
    "QMenu::separator { height: 1px; background: #6b4a2e; margin: 3px 8px; }";

constexpr int kMenuFontPixels = 13;

// Alt is the modifier of the bar commands, and the keys play the violin: a lone Alt
// must not put the menu bar in keyboard navigation, where it would take every key.
class NoAltNavigation : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* answer) const override {
    return hint == SH_MenuBar_AltKeyNavigation ? 0 : QProxyStyle::styleHint(hint, option, widget, answer);
  }
};

// The two bodies of the body menu: the back picture and the colour under it.
struct BodyStyle {
  int backPicture;
  QRgb windowColour;
};
constexpr BodyStyle kBodyStyles[] = {{0, 0x191919}, {1, 0xb3b3b3}};

constexpr const char* kKeyboardNames[] = {"JISキーボード", "USキーボード"};
constexpr const char* kBodyNames[] = {"BlackBody", "WhiteBody"};

// What a bar command may change; compared to tell whether the score changed at all.
auto ScoreContent(const Staff& staff) {
  return std::make_tuple(staff.notes, staff.title, staff.comment, staff.keySignature, staff.timeSignature);
}

}  // namespace

MenuBar::MenuBar(MainWindow& window) : QObject(&window), window_(window) {
  QWidget* strip = window_.Control(ControlId::MenuBarStrip);
  bar_ = new QMenuBar(strip);
  // The window has no frame of the desktop's: the menus stay in it, never in a global bar.
  bar_->setNativeMenuBar(false);
  auto* style = new NoAltNavigation;
  style->setParent(bar_);
  bar_->setStyle(style);
  QFont font(ToQString(layout::StandInFace(layout::FontFace::Proportional)));
  font.setPixelSize(kMenuFontPixels);
  bar_->setFont(font);
  bar_->setStyleSheet(QString::fromLatin1(kStyle));

  BuildFileMenu();
  BuildEditMenu();
  BuildScaleMenu();
  BuildHelpMenu();
  // Open menus are windows of their own and do not inherit the bar's font.
  for (QMenu* menu : bar_->findChildren<QMenu*>()) menu->setFont(font);
  // Only as wide as its titles: the rest of the strip still drags the window.
  bar_->setGeometry(0, 0, std::min(bar_->sizeHint().width(), strip->width()), strip->height());

  RegisterHandlers();
  ShowCheckMarks();
  ApplyEnablingRule();
  connect(&window_, &MainWindow::scoreChanged, this, &MenuBar::ApplyEnablingRule);
  connect(&window_, &MainWindow::keyboardLayoutChanged, this, &MenuBar::ShowCheckMarks);
  // A shortcut is matched after its key is offered to the focused widget as an
  // override: the rule is brought up to date just before, whatever changed the score.
  qApp->installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (auto* field = qobject_cast<QLineEdit*>(now); field && window_.isAncestorOf(field)) lastTextField_ = field;
  });
}

QAction* MenuBar::AddItem(QMenu& menu, const char* text, const char* shortcut, MenuCommand command, int index,
                          bool waitsForChanges) {
  QAction* action = menu.addAction(QString::fromUtf8(text));
  if (shortcut && *shortcut) action->setShortcut(QKeySequence(QString::fromLatin1(shortcut)));
  // Shortcuts work anywhere in the window, the staff included; a focused text field
  // still keeps the keys of its own editing.
  action->setShortcutContext(Qt::WindowShortcut);
  window_.addAction(action);
  items_.push_back({action, command, index, waitsForChanges});
  connect(action, &QAction::triggered, this, [this, command, index] {
    window_.RunMenuCommand(command, index);
    ShowCheckMarks();  // a checkable item toggles itself; the marks follow the state only
  });
  return action;
}

void MenuBar::BuildFileMenu() {
  QMenu& menu = *bar_->addMenu(QStringLiteral("ファイル"));
  AddItem(menu, "楽譜を開く", "Ctrl+O", MenuCommand::OpenScore);
  AddItem(menu, "楽譜を保存", "Ctrl+S", MenuCommand::SaveScore, 0, true);
  menu.addSeparator();
  AddItem(menu, "Midiで保存", "Ctrl+M", MenuCommand::SaveMidi);
  menu.addSeparator();
  AddItem(menu, "用紙設定", "", MenuCommand::PageSetup);
  AddItem(menu, "印刷", "Ctrl+P", MenuCommand::Print);
  connect(&menu, &QMenu::aboutToShow, this, &MenuBar::ApplyEnablingRule);
}

void MenuBar::BuildEditMenu() {
  QMenu& menu = *bar_->addMenu(QStringLiteral("編集"));
  AddItem(menu, "取り消す", "Ctrl+Z", MenuCommand::Undo);
  AddItem(menu, "やり直す", "Ctrl+Shift+Z", MenuCommand::Redo);
  menu.addSeparator();
  AddItem(menu, "カット", "Ctrl+X", MenuCommand::Cut);
  AddItem(menu, "コピー", "Ctrl+C", MenuCommand::Copy);
  AddItem(menu, "ペースト", "Ctrl+V", MenuCommand::Paste);
  AddItem(menu, "すべて選択", "Ctrl+A", MenuCommand::SelectAll);
  menu.addSeparator();
  constexpr BarOperation kFirstGroup[] = {BarOperation::Cut, BarOperation::Copy, BarOperation::Paste,
                                          BarOperation::Clear, BarOperation::Insert};
  constexpr BarOperation kSecondGroup[] = {BarOperation::DoubleAll, BarOperation::DeleteAll};
  auto addBar = [&](BarOperation operation) {
    const int index = static_cast<int>(operation);
    const std::string caption(BarMenuCaption(operation));
    // The logic writes these shortcuts with the Mac's Option key, which is Alt here.
    QString shortcut = QString::fromUtf8(BarMenuShortcut(operation).data(),
                                         static_cast<qsizetype>(BarMenuShortcut(operation).size()));
    shortcut.replace(QStringLiteral("Option+"), QStringLiteral("Alt+"));
    // Cutting, copying, pasting and clearing a bar wait for a score that was worked on.
    const bool waits = operation == BarOperation::Cut || operation == BarOperation::Copy ||
                       operation == BarOperation::Paste || operation == BarOperation::Clear;
    AddItem(menu, caption.c_str(), shortcut.toLatin1().constData(), MenuCommand::BarCommand, index, waits);
  };
  for (BarOperation operation : kFirstGroup) addBar(operation);
  menu.addSeparator();
  for (BarOperation operation : kSecondGroup) addBar(operation);
  menu.addSeparator();

  QMenu& keyboard = *menu.addMenu(QStringLiteral("キーボード"));
  for (int i = 0; i < 2; ++i) {
    keyboardActions_.push_back(AddItem(keyboard, kKeyboardNames[i], "", MenuCommand::KeyboardType, i));
    keyboardActions_.back()->setCheckable(true);
  }
  menu.addSeparator();
  QMenu& body = *menu.addMenu(QStringLiteral("外観"));
  for (int i = 0; i < 2; ++i) {
    bodyActions_.push_back(AddItem(body, kBodyNames[i], "", MenuCommand::BodyStyle, i));
    bodyActions_.back()->setCheckable(true);
  }
  connect(&menu, &QMenu::aboutToShow, this, &MenuBar::ApplyEnablingRule);
}

void MenuBar::BuildScaleMenu() {
  QMenu& menu = *bar_->addMenu(QStringLiteral("スケール"));
  int section = 0;
  for (int i = 0; i < kScaleCount; ++i) {
    if (section < static_cast<int>(kScaleSections.size()) && kScaleSections[section].firstIndex == i) {
      const std::string_view heading = kScaleSections[section++].caption;
      menu.addAction(QString::fromUtf8(heading.data(), static_cast<qsizetype>(heading.size())))->setEnabled(false);
    }
    const std::string caption(kScaleLines[i].caption);
    scaleActions_.push_back(AddItem(menu, caption.c_str(), "", MenuCommand::Scale, i));
    scaleActions_.back()->setCheckable(true);
  }
  connect(&menu, &QMenu::aboutToShow, this, &MenuBar::ApplyEnablingRule);
}

void MenuBar::BuildHelpMenu() {
  QMenu& menu = *bar_->addMenu(QStringLiteral("ヘルプ"));
  AddItem(menu, "Lirenzaヘルプ", "", MenuCommand::Help);
  AddItem(menu, "Lirenzaについて...", "", MenuCommand::About)->setMenuRole(QAction::AboutRole);
  AddItem(menu, "環境設定", "Ctrl+,", MenuCommand::Preferences)->setMenuRole(QAction::PreferencesRole);
  connect(&menu, &QMenu::aboutToShow, this, &MenuBar::ApplyEnablingRule);
}

void MenuBar::RegisterHandlers() {
  window_.OnMenu(MenuCommand::Scale, [this](int index) { ChooseScale(index); });
  window_.OnMenu(MenuCommand::BarCommand, [this](int index) { RunBarCommand(index); });
  window_.OnMenu(MenuCommand::BodyStyle, [this](int index) { SetBodyStyle(index); });
  // The keyboard type is a mark only: the physical keys play the same notes on either,
  // and the mark shows what the preferences say.
  window_.OnMenu(MenuCommand::KeyboardType, [this](int) { ShowCheckMarks(); });
  window_.OnMenu(MenuCommand::Cut, [this](int) {
    if (QLineEdit* field = TextField()) field->cut();
  });
  window_.OnMenu(MenuCommand::Copy, [this](int) {
    if (QLineEdit* field = TextField()) field->copy();
  });
  window_.OnMenu(MenuCommand::Paste, [this](int) {
    if (QLineEdit* field = TextField()) field->paste();
  });
  window_.OnMenu(MenuCommand::SelectAll, [this](int) {
    if (QLineEdit* field = TextField()) field->selectAll();
  });
}

void MenuBar::ApplyEnablingRule() {
  const bool changed = window_.State().staff.hasChanges;
  for (const Item& item : items_)
    item.action->setEnabled(window_.HasMenuHandler(item.command) && (!item.waitsForChanges || changed));
}

bool MenuBar::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) ApplyEnablingRule();
  return false;
}

void MenuBar::ChooseScale(int index) {
  WindowState& state = window_.State();
  if (index < 0 || index >= kScaleCount || state.modes.Busy()) return;
  checkedScale_ = index;
  window_.Staff().ForgetNoteIndexes();
  LoadKestraLine(state.staff, kScaleLines[index].line);
  SetTitle(state.staff, ScaleTitle(index));
  window_.ShowStaffScroll();
  // A fill is an edit like any other: undo brings back the score it replaced.
  window_.NotifyScoreChanged(ScoreChange::Edited);
}

void MenuBar::RunBarCommand(int index) {
  if (index < 0 || index >= kBarMenuOperations) return;
  WindowState& state = window_.State();
  Staff& staff = state.staff;
  const auto before = ScoreContent(staff);
  const auto operation = static_cast<BarOperation>(index);
  // Every command but the copy mark removes or moves notes.
  if (!state.modes.Busy() && operation != BarOperation::Copy) window_.Staff().ForgetNoteIndexes();
  if (ChooseFromBarMenu(staff, state.modes, operation, *window_.Services().confirm) !=
      BarMenuOutcome::Done)
    return;
  // Writing the score out twice starts from its beginning.
  window_.ShowStaffScroll();
  // Marking a bar for copying, or a question answered no, leaves the score as it was.
  if (ScoreContent(staff) != before) window_.NotifyScoreChanged(ScoreChange::Edited);
}

void MenuBar::SetBodyStyle(int index) {
  if (index < 0 || index >= static_cast<int>(std::size(kBodyStyles))) return;
  bodyStyle_ = index;
  // The body changes under the violinist's name, which stays as it reads.
  window_.SetBackPicture(kBodyStyles[index].backPicture, MainWindow::PlayerName::Stays);
  window_.SetBodyColour(QColor::fromRgb(kBodyStyles[index].windowColour));
  ShowCheckMarks();
}

void MenuBar::ShowCheckMarks() {
  for (int i = 0; i < static_cast<int>(scaleActions_.size()); ++i) scaleActions_[i]->setChecked(i == checkedScale_);
  for (int i = 0; i < static_cast<int>(keyboardActions_.size()); ++i)
    keyboardActions_[i]->setChecked(i == window_.KeyboardLayout());
  for (int i = 0; i < static_cast<int>(bodyActions_.size()); ++i) bodyActions_[i]->setChecked(i == bodyStyle_);
}

QLineEdit* MenuBar::TextField() const {
  if (auto* focused = qobject_cast<QLineEdit*>(QApplication::focusWidget()); focused && window_.isAncestorOf(focused))
    return focused;
  return lastTextField_.data();
}

}  // namespace lirenza::window
