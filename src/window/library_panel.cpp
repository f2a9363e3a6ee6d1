#include "window/library_panel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCollator>
#include <QCoreApplication>
#include <QDir>
#include <QDrag>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTreeWidget>
#include <QUrl>
#include <algorithm>
#include <set>

#include "files/score_library.h"
#include "window/file_commands.h"
#include "window/main_window.h"
#include "window/resource_folder.h"
#include "window/transport_panel.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

constexpr int kNumberColumn = 0;
constexpr int kTitleColumn = 1;
constexpr int kFileNameRole = Qt::UserRole;
// The list's margins around a title, and the smallest size a long title shrinks to.
constexpr int kTitlePadding = 10;
constexpr int kSmallestTitlePixels = 8;
// Changes from outside show this soon; a copy of many files makes one rebuild.
constexpr int kRebuildDelayMs = 100;
// The record of the installed scores the library has received, beside the genre folders.
const QString kReceivedRecord = QStringLiteral(".received-scores");

QString GenreFolderOf(int genre) { return QString::fromStdString(GenreFolderName(genre)); }

bool IsScore(const QString& fileName) { return IsScoreFileName(fileName.toStdString()); }

QStringList ScoreFiles(const QString& folder) {
  QStringList scores;
  for (const QString& name : QDir(folder).entryList(QDir::Files))
    if (IsScore(name)) scores << name;
  return scores;
}

bool HasScores(const QString& folder) {
  for (int genre = 0; genre < kGenreCount; ++genre)
    if (!ScoreFiles(QDir(folder).filePath(GenreFolderOf(genre))).isEmpty()) return true;
  return false;
}

}  // namespace

QString LibraryPanel::LibraryFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Lirenza/ScoreBox");
}

// The scores lie beside the scripts, in the source tree and once installed.
QString LibraryPanel::InstalledScoresFolder() {
  return FindResourceFolder({"LIRENZA_SCORES", QDir::cleanPath(QStringLiteral(LIRENZA_SOURCE_SCRIPTS_DIR "/../scores")),
                             QStringLiteral("scores"),
                             QDir::cleanPath(QStringLiteral(LIRENZA_INSTALLED_SCRIPTS_DIR "/../scores"))},
                            HasScores);
}

int LibraryPanel::FillLibrary(const QString& installed, const QString& library) {
  const QDir libraryDir(library);
  for (int genre = 0; genre < kGenreCount; ++genre) libraryDir.mkpath(GenreFolderOf(genre));

  std::vector<std::string> offered;
  std::set<std::string> present;
  for (int genre = 0; genre < kGenreCount; ++genre) {
    if (installed.isEmpty()) break;
    for (const QString& name : ScoreFiles(QDir(installed).filePath(GenreFolderOf(genre)))) {
      const QString relative = GenreFolderOf(genre) + '/' + name;
      offered.push_back(relative.toStdString());
      if (QFileInfo::exists(libraryDir.filePath(relative))) present.insert(relative.toStdString());
    }
  }
  QFile record(libraryDir.filePath(kReceivedRecord));
  std::set<std::string> received;
  if (record.open(QIODevice::ReadOnly)) received = ParseReceivedList(record.readAll().toStdString());
  record.close();

  int copied = 0;
  for (const std::string& name : ScoresToInstall(offered, present, received)) {
    const QString relative = QString::fromStdString(name);
    copied += QFile::copy(QDir(installed).filePath(relative), libraryDir.filePath(relative));
  }
  const size_t before = received.size();
  received.insert(offered.begin(), offered.end());
  if (received.size() != before) {
    QSaveFile out(libraryDir.filePath(kReceivedRecord));
    if (out.open(QIODevice::WriteOnly)) {
      out.write(QByteArray::fromStdString(FormatReceivedList(received)));
      out.commit();
    }
  }
  return copied;
}

LibraryPanel::LibraryPanel(MainWindow& window)
    : QObject(&window), window_(window), list_(qobject_cast<QTreeWidget*>(window.Control(ControlId::ScoreList))) {
  FillLibrary(InstalledScoresFolder(), LibraryFolder());

  for (int genre = 0; genre < kGenreCount; ++genre)
    if (auto* button = qobject_cast<QAbstractButton*>(window_.Control(ControlId::GenreButton, genre)))
      connect(button, &QAbstractButton::clicked, this, [this, genre] { SelectGenre(genre); });

  rebuildSoon_.setSingleShot(true);
  rebuildSoon_.setInterval(kRebuildDelayMs);
  connect(&rebuildSoon_, &QTimer::timeout, this, [this] { Rebuild(); });
  connect(&watcher_, &QFileSystemWatcher::directoryChanged, &rebuildSoon_, qOverload<>(&QTimer::start));

  if (list_) {
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setAcceptDrops(true);
    list_->viewport()->setAcceptDrops(true);
    list_->setDropIndicatorShown(true);
    list_->viewport()->installEventFilter(this);
    qApp->installEventFilter(this);  // the list's keys among all others
    connect(list_, &QTreeWidget::itemDoubleClicked, this, [this] { OpenOrThrowAway(); });
  }
  if (auto* transport = window_.findChild<TransportPanel*>()) transport->SetScoreLoader([this] { LoadSelected(); });
  Rebuild(false);
}

QString LibraryPanel::GenreFolder() const { return QDir(LibraryFolder()).filePath(GenreFolderOf(genre_)); }

void LibraryPanel::SelectGenre(int genre) {
  if (genre < 0 || genre >= kGenreCount) return;
  genre_ = genre;
  if (auto* button = qobject_cast<QAbstractButton*>(window_.Control(ControlId::GenreButton, genre)))
    button->setChecked(true);
  Rebuild(false);
}

QString LibraryPanel::SelectedPath() const {
  const QTreeWidgetItem* item = list_ ? list_->currentItem() : nullptr;
  return item ? QDir(GenreFolder()).filePath(item->data(kTitleColumn, kFileNameRole).toString()) : QString();
}

// A title too long for the narrow list is drawn smaller, down to a size still read,
// rather than cut; its tooltip holds it whole.
void LibraryPanel::FitTitle(QTreeWidgetItem& item, const QString& title) const {
  item.setToolTip(kTitleColumn, title);
  const int width = list_->columnWidth(kTitleColumn) - kTitlePadding;
  QFont font = list_->font();
  int pixels = QFontInfo(font).pixelSize();
  font.setPixelSize(pixels);
  while (pixels > kSmallestTitlePixels && QFontMetrics(font).horizontalAdvance(title) > width) font.setPixelSize(--pixels);
  if (font != list_->font()) item.setFont(kTitleColumn, font);
}

void LibraryPanel::Rebuild(bool keepSelection) {
  Watch();
  if (!list_) return;
  const QTreeWidgetItem* current = list_->currentItem();
  const QString kept = keepSelection && current ? current->data(kTitleColumn, kFileNameRole).toString() : QString();

  QStringList files = ScoreFiles(GenreFolder());
  // Titles in the order a Japanese reader expects, "No. 2" before "No. 10".
  QCollator collator{QLocale(QLocale::Japanese, QLocale::Japan)};
  collator.setNumericMode(true);
  std::vector<std::pair<QString, QString>> rows;  // title, file name
  for (const QString& name : files) rows.emplace_back(QString::fromStdString(ScoreTitle(name.toStdString())), name);
  std::stable_sort(rows.begin(), rows.end(), [&](const auto& a, const auto& b) {
    const int order = collator.compare(a.first, b.first);
    return order != 0 ? order < 0 : a.second < b.second;
  });

  list_->clear();
  QTreeWidgetItem* select = nullptr;
  for (const auto& [title, name] : rows) {
    auto* item = new QTreeWidgetItem(list_);
    item->setText(kNumberColumn, QString::fromStdString(RowNumberText(list_->topLevelItemCount() - 1)));
    item->setTextAlignment(kNumberColumn, Qt::AlignCenter);
    item->setText(kTitleColumn, title);
    FitTitle(*item, title);
    item->setData(kTitleColumn, kFileNameRole, name);
    if (name == kept) select = item;
  }
  if (!select) select = list_->topLevelItem(0);
  list_->setCurrentItem(select);
}

void LibraryPanel::Watch() {
  const QStringList watched = watcher_.directories();
  if (!watched.isEmpty()) watcher_.removePaths(watched);
  // The library folder too, so a genre folder made or removed from outside is seen.
  for (const QString& folder : {LibraryFolder(), GenreFolder()})
    if (QFileInfo(folder).isDir()) watcher_.addPath(folder);
}

void LibraryPanel::OpenOrThrowAway() {
  if (window_.State().modes.Busy()) return;
  const QString path = SelectedPath();
  if (path.isEmpty()) return;
  if (deleteHeld_) {
    // Nothing asks: the trash gives the score back.
    QFile::moveToTrash(path);
  } else if (FileCommands* files = window_.findChild<FileCommands*>(); files && files->LoadScoreFile(path)) {
    // A score taken from the library can be played at once, as any opened one.
    window_.State().staff.hasChanges = true;
  }
  Rebuild();
}

void LibraryPanel::LoadSelected() {
  const QString path = SelectedPath();
  FileCommands* files = window_.findChild<FileCommands*>();
  if (!path.isEmpty() && files && files->LoadScoreFile(path)) window_.State().staff.hasChanges = true;
}

bool LibraryPanel::MoveRefusingClash(const QString& from, const QString& to) {
  if (QFileInfo::exists(to)) {
    window_.Services().dialogs->Tell(
        &window_, QStringLiteral("「%1」と同じ名前のファイルが移動先にすでにあるため、移動しませんでした。")
                      .arg(QFileInfo(to).fileName()));
    return false;
  }
  return QFile::rename(from, to);
}

void LibraryPanel::GiveOut(const QString& path) {
  if (path.isEmpty() || !QFileInfo::exists(path)) return Rebuild();
  const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
  if (!desktop.isEmpty() && QFileInfo(desktop).isDir())
    MoveRefusingClash(path, QDir(desktop).filePath(QFileInfo(path).fileName()));
  else
    QFile::moveToTrash(path);
  Rebuild();
}

void LibraryPanel::TakeIn(const QString& path) {
  const QFileInfo dropped(path);
  if (!IsScore(dropped.fileName()) || !dropped.isFile()) return;
  const QString target = QDir(GenreFolder()).filePath(dropped.fileName());
  if (dropped.absoluteFilePath() == QFileInfo(target).absoluteFilePath()) return;
  QDir().mkpath(GenreFolder());
  MoveRefusingClash(path, target);
  Rebuild();
}

void LibraryPanel::DragRow() {
  const QTreeWidgetItem* item = list_->currentItem();
  if (!item || window_.State().modes.playing || window_.State().modes.listPlaying) return;
  const QString path = SelectedPath();

  // The picture under the pointer: the row's title in a blue frame.
  QPixmap picture(100, std::max(list_->visualItemRect(item).height(), 14));
  picture.fill(Qt::white);
  QPainter painter(&picture);
  painter.setPen(QColor(0, 0, 255));
  QFont font = painter.font();
  font.setPixelSize(12);
  painter.setFont(font);
  painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
  painter.drawText(picture.rect().adjusted(10, 0, 0, 0), Qt::AlignVCenter, item->text(kTitleColumn));
  painter.end();

  auto* drag = new QDrag(list_);
  auto* data = new QMimeData;
  data->setUrls({QUrl::fromLocalFile(path)});
  drag->setMimeData(data);
  drag->setPixmap(picture);
  drag->exec(Qt::MoveAction | Qt::CopyAction);
  // Wherever the drag ended, the score leaves the library, unless it has already gone.
  GiveOut(path);
}

bool LibraryPanel::eventFilter(QObject* watched, QEvent* event) {
  if (!list_) return false;
  switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
      // Delete may go down while another control has the keyboard: it is followed
      // wherever it goes, and the double click on the list then finds it held.
      auto* key = static_cast<QKeyEvent*>(event);
      if (key->key() == Qt::Key_Delete && !key->isAutoRepeat()) deleteHeld_ = event->type() == QEvent::KeyPress;
      if (watched == list_ && key->key() == Qt::Key_Backspace && event->type() == QEvent::KeyPress) {
        GiveOut(SelectedPath());
        return true;
      }
      break;
    }
    case QEvent::WindowDeactivate:
      if (watched == &window_) deleteHeld_ = false;  // its release goes to another window
      break;
    case QEvent::MouseButtonPress: {
      auto* mouse = static_cast<QMouseEvent*>(event);
      pressed_ = watched == list_->viewport() && mouse->button() == Qt::LeftButton;
      pressAt_ = mouse->position().toPoint();
      break;
    }
    case QEvent::MouseButtonRelease:
      pressed_ = false;
      break;
    case QEvent::MouseMove: {
      auto* mouse = static_cast<QMouseEvent*>(event);
      if (watched != list_->viewport() || !pressed_ || !(mouse->buttons() & Qt::LeftButton)) break;
      if ((mouse->position().toPoint() - pressAt_).manhattanLength() < QApplication::startDragDistance()) break;
      pressed_ = false;
      DragRow();
      return true;
    }
    case QEvent::DragEnter:
    case QEvent::DragMove: {
      if (watched != list_->viewport()) break;
      auto* drag = static_cast<QDropEvent*>(event);
      if (drag->source() == list_ || !drag->mimeData()->hasUrls()) return drag->ignore(), true;
      drag->setDropAction(Qt::MoveAction);
      drag->accept();
      return true;
    }
    case QEvent::Drop: {
      if (watched != list_->viewport()) break;
      auto* drop = static_cast<QDropEvent*>(event);
      const QList<QUrl> urls = drop->mimeData()->urls();
      if (drop->source() != list_ && !urls.isEmpty() && urls.first().isLocalFile()) {
        drop->setDropAction(Qt::MoveAction);
        drop->accept();
        TakeIn(urls.first().toLocalFile());
      }
      return true;
    }
    default:
      break;
  }
  return false;
}

}  // namespace lirenza::window
