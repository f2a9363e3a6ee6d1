#pragma once
// The window's undo and redo of every change to the staff, as far back as the score
// was opened. Each change the window is told of becomes one step that holds only the
// notes it changed, before and after, with the score's signatures and texts; places
// are kept as if the staff stood at its start, so scrolling is never a change and an
// undone note comes back where it belongs in whatever bar is in view.
#include <QObject>
#include <QUndoStack>
#include <string>
#include <tuple>
#include <vector>

#include "score/note.h"
#include "window/menu_commands.h"

namespace lirenza {
class MainWindow;
struct Staff;
namespace window {

// Everything of a score beside its notes that a change can touch.
struct StaffHeader {
  int keySignature = 0;
  int timeSignature = 0;
  std::string keySignaturePicture, timeSignaturePicture, sheetPicture;
  std::string title, comment;
  int entryLeft = 0;  // unscrolled
  int entryTop = 0;
  bool operator==(const StaffHeader&) const = default;
  // Every field, in the order of HeaderFieldsOf.
  auto Fields() {
    return std::tie(keySignature, timeSignature, keySignaturePicture, timeSignaturePicture, sheetPicture, title,
                    comment, entryLeft, entryTop);
  }
};

// The score as undo keeps it: notes without the template, Left unscrolled, nothing of
// what lives only on screen.
struct StaffSnapshot {
  StaffHeader header;
  std::vector<Note> notes;
};

StaffSnapshot SnapshotOf(const Staff& staff);

// One change: the notes from `first` on that differ, as they were and as they became.
struct StaffStep {
  int first = 0;
  std::vector<Note> before, after;
  StaffHeader headerBefore, headerAfter;
};

class StaffHistory : public QObject {
  Q_OBJECT

 public:
  explicit StaffHistory(MainWindow& window);

  QUndoStack& Stack() { return stack_; }
  // Puts one side of a step back on the staff; the undo commands call this.
  void Restore(const StaffStep& step, bool undo);

 private:
  void Follow(ScoreChange change);
  void Record();
  void StartOver();
  void AfterRestore();

  MainWindow& window_;
  QUndoStack stack_;
  StaffSnapshot present_;  // the staff as the last step left it
  bool restored_ = false;  // a command put a step back; the index change finishes it
};

}  // namespace window
}  // namespace lirenza
