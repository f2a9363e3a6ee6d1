#include "window/file_commands.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QUrl>
#include <cerrno>
#include <optional>

#include "files/file_io.h"
#include "files/midi_writer.h"
#include "files/score_file.h"
#include "violin/tempo_table.h"
#include "window/main_window.h"
#include "window/staff_view.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

const QString kScoreSuffix = QStringLiteral("note");

QString Shown(const QString& path) { return QFileInfo(path).fileName(); }

// Why a score could not be read, as the user would put it.
QString ReadFailure(const QString& path) {
  const QFileInfo file(path);
  if (!file.exists()) return QStringLiteral("「%1」が見つからないため、楽譜を開けませんでした。").arg(Shown(path));
  if (file.isDir()) return QStringLiteral("「%1」はフォルダのため、楽譜として開けません。").arg(Shown(path));
  if (!file.isReadable()) return QStringLiteral("「%1」を読む権限がないため、楽譜を開けませんでした。").arg(Shown(path));
  if (static_cast<std::size_t>(file.size()) > kMaxReadBytes)
    return QStringLiteral("「%1」は楽譜にしては大きすぎるため、開けませんでした。").arg(Shown(path));
  return QStringLiteral("「%1」を読み込めなかったため、楽譜を開けませんでした。").arg(Shown(path));
}

QString WriteFailure(const QString& path, int errorNumber) {
  switch (errorNumber) {
    case EACCES:
    case EPERM:
    case EROFS:
      return QStringLiteral("このフォルダには書き込めないため、「%1」を保存できませんでした。").arg(Shown(path));
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return QStringLiteral("ディスクに空きがないため、「%1」を保存できませんでした。").arg(Shown(path));
    case ENOENT:
    case ENOTDIR:
      return QStringLiteral("保存先のフォルダが見つからないため、「%1」を保存できませんでした。").arg(Shown(path));
    case EISDIR:
      return QStringLiteral("「%1」はフォルダのため、その名前では保存できませんでした。").arg(Shown(path));
    default:
      return QStringLiteral("「%1」を保存できませんでした。").arg(Shown(path));
  }
}

// The first score file among what is dragged; empty when it offers none.
QString DraggedScore(const QMimeData* data) {
  if (!data || !data->hasUrls()) return {};
  for (const QUrl& url : data->urls())
    if (url.isLocalFile() && QFileInfo(url.toLocalFile()).suffix().compare(kScoreSuffix, Qt::CaseInsensitive) == 0)
      return url.toLocalFile();
  return {};
}

}  // namespace

FileCommands::FileCommands(MainWindow& window) : QObject(&window), window_(window) {
  window.OnMenu(MenuCommand::OpenScore, [this](int) { OpenScore(); });
  window.OnMenu(MenuCommand::SaveScore, [this](int) {
    if (!window_.State().modes.Busy()) SaveScore();
  });
  window.OnMenu(MenuCommand::SaveMidi, [this](int) { SaveMidi(); });
  window.SetSaveAction([this] { return SaveScore(); });
  window.SetDocumentOpener([this](const QString& path) { OpenDocument(path); });
  window.setAcceptDrops(true);
  window.installEventFilter(this);
}

void FileCommands::OpenScore() {
  WindowState& state = window_.State();
  if (state.modes.Busy()) return;
  const std::optional<QString> path = window_.Services().dialogs->OpenScorePath(&window_);
  if (path) {
    LoadScoreFile(*path);
    return;
  }
  // Opening starts with an empty staff, and a cancelled dialog leaves it so; the notes
  // that were there come back with undo.
  if (state.staff.NoteCount() == 0) return;
  window_.Staff().ForgetNoteIndexes();
  ScrollToStart();
  ClearStaff(state.staff);
  window_.Staff().update();
  window_.NotifyScoreChanged(ScoreChange::Edited);
}

bool FileCommands::LoadScoreFile(const QString& path) {
  WindowState& state = window_.State();
  ShowReading(true);
  std::string error;
  const std::optional<std::string> bytes = ReadWholeFile(QFile::encodeName(path).toStdString(), &error);
  ScoreReadReport report;
  ScoreFile file;
  if (bytes) file = ParseScoreFile(*bytes, &report);
  if (!bytes || !report.notAScore.empty()) {
    ShowReading(false);
    window_.Services().dialogs->Tell(
        &window_, bytes ? QStringLiteral("「%1」は楽譜ファイルではないため、開けませんでした。").arg(Shown(path))
                        : ReadFailure(path));
    return false;
  }
  window_.Staff().ForgetNoteIndexes();
  ScrollToStart();
  state.tempoSlider = ApplyScoreFile(state.staff, file);
  // The hand position's button shows the position still in force.
  if (auto* button = qobject_cast<QAbstractButton*>(window_.Control(ControlId::PositionButton, state.handPosition)))
    button->setChecked(true);
  state.documentPath = path;
  ShowReading(false);
  window_.Staff().update();
  window_.NotifyScoreChanged(ScoreChange::Replaced);
  return true;
}

bool FileCommands::SaveScore() {
  WindowState& state = window_.State();
  ScrollToStart();
  // What the file keeps of each note is what the staff shows of it.
  RespellNotesInView(state.staff);
  WindowSettings settings{state.instrumentGroupMenu, state.instrumentMenuRow, state.tempoSlider};
  const std::string text = SaveFileText(state.staff, settings);
  const QString suggested =
      state.documentPath.isEmpty() ? QString::fromStdString(state.staff.title)
                                   : QFileInfo(state.documentPath).dir().filePath(QString::fromStdString(state.staff.title));
  const std::optional<QString> path = window_.Services().dialogs->SaveScorePath(&window_, suggested);
  if (!path || !Write(*path, text)) return false;
  // Only now that the file is safely on disk does the staff start a new score.
  state.documentPath = *path;
  window_.Staff().ForgetNoteIndexes();
  ResetAfterSave(state.staff, settings);
  state.tempoSlider = settings.tempoSlider;
  window_.Staff().update();
  window_.NotifyScoreChanged(ScoreChange::Saved);
  return true;
}

bool FileCommands::SaveMidi() {
  const WindowState& state = window_.State();
  const std::vector<std::uint8_t> bytes = MidiFileBytes(state.staff.notes, state.entry.gate,
                                                        TempoForSlider(state.tempoSlider).tempo, state.instrument);
  const std::optional<QString> path =
      window_.Services().dialogs->SaveMidiPath(&window_, QString::fromStdString(state.staff.title));
  return path && Write(*path, std::string(bytes.begin(), bytes.end()));
}

void FileCommands::OpenDocument(const QString& path) {
  if (window_.State().modes.Busy()) return;
  if (!window_.SettleUnsavedChanges()) return;
  // A score opened from outside counts as changed: closing asks before it goes.
  if (LoadScoreFile(path)) window_.State().staff.hasChanges = true;
}

bool FileCommands::Write(const QString& path, const std::string& bytes) {
  std::string error;
  int errorNumber = 0;
  if (WriteFileAtomically(QFile::encodeName(path).toStdString(), bytes, &error, &errorNumber)) return true;
  window_.Services().dialogs->Tell(&window_, WriteFailure(path, errorNumber));
  return false;
}

// The reading status: the label and the wait cursor show, and the busy flag keeps
// every other handler back until the score stands on the staff.
void FileCommands::ShowReading(bool reading) {
  window_.State().modes.loading = reading;
  window_.setCursor(reading ? Qt::WaitCursor : Qt::PointingHandCursor);
  if (QWidget* label = window_.Control(ControlId::LoadingLabel)) {
    label->setVisible(reading);
    if (reading) label->repaint();
  }
}

// The staff goes back to its start, and the scroll bar with it.
void FileCommands::ScrollToStart() {
  ScrollTo(window_.State().staff, 0);
  window_.ShowStaffScroll();
}

bool FileCommands::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &window_) return false;
  switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
      auto* drag = static_cast<QDropEvent*>(event);
      if (window_.State().modes.Busy() || DraggedScore(drag->mimeData()).isEmpty()) return false;
      drag->acceptProposedAction();
      return true;
    }
    case QEvent::Drop: {
      auto* drop = static_cast<QDropEvent*>(event);
      const QString path = DraggedScore(drop->mimeData());
      if (path.isEmpty()) return false;
      drop->acceptProposedAction();
      // Opened once the drop is over: the question it may ask must not run inside it.
      QMetaObject::invokeMethod(this, [this, path] { OpenDocument(path); }, Qt::QueuedConnection);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace lirenza::window
