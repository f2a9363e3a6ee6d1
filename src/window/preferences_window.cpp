#include "window/preferences_window.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolBar>

#include "picture_list.h"
#include "window/control_factory.h"
#include "window/main_window.h"

namespace lirenza::window {
namespace {

// The window's content below its toolbar, and the toolbar's height.
constexpr int kContentWidth = 350;
constexpr int kContentHeight = 220;
constexpr int kToolbarHeight = 25;

struct Place {
  int x, y, width, height;
};
constexpr Place kKeyboardLabel{96, 22, 157, 19};
constexpr Place kKeyboardChoice{75, 39, 200, 25};
constexpr Place kBackLabel{96, 76, 157, 19};
constexpr Place kBackChoice{75, 92, 200, 25};
constexpr Place kCloseButton{250, 180, 80, 20};

constexpr const char* kKeyboardNames[] = {"JISキーボード", "USキーボード"};

void PlaceBelowToolbar(QWidget& widget, const Place& place) {
  widget.setGeometry(place.x, place.y + kToolbarHeight, place.width, place.height);
}

QLabel* Heading(QWidget& parent, const char* text, const Place& place) {
  auto* label = new QLabel(QString::fromUtf8(text), &parent);
  QFont font = label->font();
  font.setPixelSize(14);
  label->setFont(font);
  label->setStyleSheet(QStringLiteral("color: #808080;"));
  PlaceBelowToolbar(*label, place);
  return label;
}

}  // namespace

PreferencesWindow::PreferencesWindow(MainWindow& window) : QObject(&window), window_(window) {
  window_.OnMenu(MenuCommand::Preferences, [this](int) { Open(); });
}

void PreferencesWindow::Make() {
  dialog_ = new QDialog(&window_);
  dialog_->setWindowTitle(QStringLiteral("環境設定"));
  dialog_->setFixedSize(kContentWidth, kContentHeight + kToolbarHeight);
  // It opens over the main window and holds it, as a sheet does, without stopping the
  // program's event loop.
  dialog_->setWindowModality(Qt::WindowModal);

  auto* toolbar = new QToolBar(dialog_);
  toolbar->setGeometry(0, 0, kContentWidth, kToolbarHeight);
  toolbar->setToolButtonStyle(Qt::ToolButtonTextOnly);
  toolbar->addAction(QStringLiteral("キーボード"));
  toolbar->addAction(QStringLiteral("ボディーカラー"));
  toolbar->addSeparator()->setText(QStringLiteral("名称未設定"));

  Heading(*dialog_, "キーボード設定", kKeyboardLabel);
  keyboardChoice_ = new QComboBox(dialog_);
  for (const char* name : kKeyboardNames) keyboardChoice_->addItem(QString::fromUtf8(name));
  PlaceBelowToolbar(*keyboardChoice_, kKeyboardChoice);

  Heading(*dialog_, "背景画像", kBackLabel);
  backChoice_ = new QComboBox(dialog_);
  // Whole names do not fit the list's width: family names, the whole one as a tip.
  for (int row = 0; row < MainWindow::kBackPictureCount; ++row) {
    backChoice_->addItem(ToQString(pictures::kPortraitShortNames[row]));
    backChoice_->setItemData(row, ToQString(pictures::kPortraitNames[row]), Qt::ToolTipRole);
  }
  PlaceBelowToolbar(*backChoice_, kBackChoice);

  auto* close = new QPushButton(QStringLiteral("閉じる"), dialog_);
  PlaceBelowToolbar(*close, kCloseButton);
  close->setDefault(true);

  connect(keyboardChoice_, &QComboBox::currentIndexChanged, &window_,
          [this](int row) { window_.SetKeyboardLayout(row); });
  // Chosen here, the back changes alone: the violinist's name under it stays as it reads.
  connect(backChoice_, &QComboBox::currentIndexChanged, &window_,
          [this](int row) { window_.SetBackPicture(row, MainWindow::PlayerName::Stays); });
  connect(close, &QPushButton::clicked, dialog_, &QDialog::accept);
}

void PreferencesWindow::Open() {
  if (!dialog_) Make();
  {
    // Showing the present choices is not choosing them.
    const QSignalBlocker quietKeyboard(keyboardChoice_), quietBack(backChoice_);
    const int layout = window_.KeyboardLayout(), back = window_.BackPicture();
    keyboardChoice_->setCurrentIndex(layout >= 0 && layout < keyboardChoice_->count() ? layout : -1);
    backChoice_->setCurrentIndex(back >= 0 && back < backChoice_->count() ? back : -1);
  }
  dialog_->open();
}

}  // namespace lirenza::window
