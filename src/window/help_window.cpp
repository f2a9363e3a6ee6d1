#include "window/help_window.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QToolBar>
#include <QVBoxLayout>

#include "window/main_window.h"
#include "window/resource_folder.h"

namespace lirenza::window {
namespace {

const QString kIndexPage = QStringLiteral("index.html");
const QString kNoHelp = QStringLiteral("ヘルプのページが見つかりません。Lirenza を入れ直してください。");
constexpr QSize kHelpSize{720, 680};

bool HasPages(const QString& folder) { return !folder.isEmpty() && QFileInfo::exists(QDir(folder).filePath(kIndexPage)); }

}  // namespace

HelpWindow::HelpWindow(MainWindow& window) : QObject(&window), window_(window), folder_(DefaultFolder()) {
  window_.OnMenu(MenuCommand::Help, [this](int) { Open(); });
}

QString HelpWindow::DefaultFolder() {
  return FindResourceFolder({"LIRENZA_HELP", QStringLiteral(LIRENZA_BUILD_HELP_DIR), QStringLiteral("help"),
                             QStringLiteral(LIRENZA_INSTALLED_HELP_DIR)},
                            HasPages);
}

void HelpWindow::Make() {
  helpWindow_ = new QWidget(&window_, Qt::Window);
  helpWindow_->setWindowTitle(QStringLiteral("Lirenzaヘルプ"));
  helpWindow_->resize(kHelpSize);
  auto* layout = new QVBoxLayout(helpWindow_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* toolbar = new QToolBar(helpWindow_);
  browser_ = new QTextBrowser(helpWindow_);
  // Links between the pages stay here; a link to the web goes to the desktop's browser.
  browser_->setOpenExternalLinks(true);
  QAction* back = toolbar->addAction(QStringLiteral("戻る"), browser_, &QTextBrowser::backward);
  QAction* forward = toolbar->addAction(QStringLiteral("進む"), browser_, &QTextBrowser::forward);
  toolbar->addAction(QStringLiteral("目次"), browser_, &QTextBrowser::home);
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
  layout->addWidget(toolbar);
  layout->addWidget(browser_);
}

void HelpWindow::Open() {
  if (!HasPages(folder_)) {
    window_.Services().dialogs->Tell(&window_, kNoHelp);
    return;
  }
  if (!helpWindow_) Make();
  // The page view reads no linked style sheet: the pages' one is its default.
  QFile style(QDir(folder_).filePath(QStringLiteral("style.css")));
  if (style.open(QIODevice::ReadOnly)) browser_->document()->setDefaultStyleSheet(QString::fromUtf8(style.readAll()));
  browser_->setSearchPaths({folder_});
  browser_->setSource(QUrl::fromLocalFile(QDir(folder_).filePath(kIndexPage)));
  helpWindow_->show();
  helpWindow_->raise();
  helpWindow_->activateWindow();
}

}  // namespace lirenza::window
