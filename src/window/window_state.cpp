#include "window/window_state.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <chrono>

namespace lirenza::window {
namespace {

const QString kScoreFilter = QStringLiteral("楽譜 (*.note)");
const QString kMidiFilter = QStringLiteral("MIDI (*.mid *.midi)");

std::optional<QString> Given(const QString& path) {
  if (path.isEmpty()) return std::nullopt;
  return path;
}

// Takes every call and makes no sound.
struct SilentPlayer : NotePlayer {
  void Instrument(int) override {}
  void PlayNote(int, int) override {}
};

// Where no fingerboard is drawn, the finger and string calls still arrive and show
// nothing, so playback takes the same path with or without a violin on screen.
struct UndrawnFingerboard : FingerboardView {
  void ShowFinger(int, int) override {}
  void HideFinger(int, int) override {}
  void ShowCleanViolin() override {}
};

}  // namespace

long long SteadyClock::Ticks() const { return static_cast<long long>(Microseconds() * 60 / 1e6); }

double SteadyClock::Microseconds() const {
  using namespace std::chrono;
  return duration<double, std::micro>(steady_clock::now().time_since_epoch()).count();
}

std::optional<QString> ToolkitDialogs::OpenScorePath(QWidget* parent) {
  return Given(QFileDialog::getOpenFileName(parent, QString(), QString(), kScoreFilter));
}

namespace {

// A name typed without an ending gets the file type's, and the dialog asks before
// replacing the file of that full name, not of the name as typed.
std::optional<QString> SavePath(QWidget* parent, const QString& suggested, const QString& filter,
                                const QString& suffix) {
  QFileDialog dialog(parent, QString(), suggested, filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(suffix);
  if (!suggested.isEmpty()) dialog.selectFile(suggested);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return Given(dialog.selectedFiles().first());
}

}  // namespace

std::optional<QString> ToolkitDialogs::SaveScorePath(QWidget* parent, const QString& suggested) {
  return SavePath(parent, suggested, kScoreFilter, QStringLiteral("note"));
}

std::optional<QString> ToolkitDialogs::SaveMidiPath(QWidget* parent, const QString& suggested) {
  return SavePath(parent, suggested, kMidiFilter, QStringLiteral("mid"));
}

void ToolkitDialogs::Tell(QWidget* parent, const QString& sentence) {
  QMessageBox::warning(parent, QStringLiteral("Lirenza"), sentence);
}

bool ToolkitConfirm::Ask(const std::string& message, const std::string& explanation, const std::string& action) {
  QMessageBox box(QMessageBox::Warning, QStringLiteral("Lirenza"), QString::fromStdString(message),
                  QMessageBox::Cancel, parent_);
  box.setInformativeText(QString::fromStdString(explanation));
  QPushButton* act = box.addButton(QString::fromStdString(action), QMessageBox::AcceptRole);
  box.setDefaultButton(QMessageBox::Cancel);
  box.exec();
  return box.clickedButton() == act;
}

WindowServices WithRealServices(WindowServices services, QWidget* parent) {
  // A missing player stays silent rather than taking the window down.
  static SilentPlayer silent;
  for (NotePlayer*& player : services.ports.players)
    if (!player) player = &silent;
  static UndrawnFingerboard undrawn;
  if (!services.ports.view) services.ports.view = &undrawn;
  if (!services.clock) services.clock = std::make_shared<SteadyClock>();
  if (!services.confirm) services.confirm = std::make_shared<ToolkitConfirm>(parent);
  if (!services.dialogs) services.dialogs = std::make_shared<ToolkitDialogs>();
  if (!services.closeQuestion) services.closeQuestion = std::make_shared<MessageBoxCloseQuestion>();
  if (!services.launcher) services.launcher = std::make_shared<DetachedLauncher>();
  return services;
}

}  // namespace lirenza::window
