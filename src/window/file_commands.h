#pragma once
// The window's open, save and MIDI save through the file dialogs, a score dropped on the
// window or named on the command line, and the reading status. A file that cannot be
// read or written is told in one sentence and changes nothing, on disk or on the staff.
#include <QObject>
#include <QString>
#include <string>

namespace lirenza {
class MainWindow;
namespace window {

class FileCommands : public QObject {
  Q_OBJECT

 public:
  explicit FileCommands(MainWindow& window);

  // The open dialog, then the score it names onto the staff. A cancelled dialog leaves
  // an emptied staff, as opening starts with one.
  void OpenScore();
  // The save dialog, then the file; after a successful write the staff becomes a new
  // score. False when cancelled or failed: the staff keeps what it held.
  bool SaveScore();
  // The staff as a MIDI file through the save dialog; the staff is left as it is.
  bool SaveMidi();
  // A score from outside (the command line, the desktop, a drop): dropped while busy,
  // asks first over unsaved changes, and counts as changed once it stands on the staff.
  void OpenDocument(const QString& path);
  // Reads path onto the staff with the reading status shown. False, told and with
  // nothing changed when the file cannot be read or is not a score.
  bool LoadScoreFile(const QString& path);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowReading(bool reading);
  void ScrollToStart();
  bool Write(const QString& path, const std::string& bytes);

  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
