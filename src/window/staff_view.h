#pragma once
// The staff canvas: paints the sheet of the current metre and every note in view, and
// turns the mouse and Backspace into the editor's gestures. Notes are not widgets: a
// press, a drag or a hover finds its note by hit-testing the notes' rectangles, the
// latest note first, because it is the one drawn on top.
#include <QImage>
#include <QRect>
#include <QWidget>
#include <optional>

#include "editor/bar_operations.h"
#include "editor/note_entry.h"
#include "editor/note_menu.h"
#include "ports/ports.h"
#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/playback.h"

class QAction;
class QMenu;

namespace lirenza {

class PictureStore;

// The widget is also the StaffDisplay through which playback asks for its highlights
// to be painted.
namespace window {

// Everything the staff reads and changes; the window owns all of it.
struct StaffViewState {
  Staff& staff;
  Modes& modes;
  EntryState& entry;
  TuningTables& tuning;
  const SoundPorts& ports;
  const Clock& clock;
  PictureStore& pictures;
  Confirm& confirm;  // asked before the staff's menu deletes every note
};

class StaffView : public QWidget, public StaffDisplay {
  Q_OBJECT

 public:
  explicit StaffView(StaffViewState state, QWidget* parent = nullptr);

  // A note's rectangle in this widget: notes keep window pixels, the canvas stands at
  // the staff's first column and the top of the staff.
  static QRect NoteRect(const Note& note);
  // The note under a point of this widget, latest first; 0 when there is none.
  int NoteAt(QPoint point) const;
  int LastPressedNote() const { return lastPressed_; }

  // The hand position the hover sound shows on the fingerboard.
  void SetHandPosition(int position) { handPosition_ = position; }
  // Called before something other than the staff's own gestures (a menu's bar
  // command, a scale) removes or moves notes: the note under the mouse falls silent,
  // and no index held so far is trusted to name the same note afterwards.
  void ForgetNoteIndexes();

  // What a menu action chooses, read back from the action itself.
  static std::optional<NoteMenuChoice> NoteChoiceOf(const QAction* action);
  static std::optional<BarOperation> BarOperationOf(const QAction* action);

  // Playback lights a note while it sounds: only that note is painted again.
  void RefreshNote(int index) override;
  void RefreshStaff() override { update(); }

 public slots:
  // The scroll bar under the staff: the view moves by whole bars.
  void ScrollTo(int value);

 signals:
  // The score changed: a note was made, moved, changed or deleted, or a bar operation ran.
  void staffChanged();
  // The staff's menu asked for a score file to be opened or saved.
  void openScoreRequested();
  void saveScoreRequested();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  // Shows a menu and returns the action chosen, nullptr when none. Tests choose here.
  virtual QAction* RunMenu(QMenu& menu, QPoint globalPos);

 private:
  void PaintNote(QPainter& painter, const Note& note);
  void PressNote(int index, QMouseEvent* event);
  void OpenNoteMenuAt(int index, QPoint globalPos);
  void OpenStaffMenuAt(QPoint point, QPoint globalPos);
  void HoverOver(int index);
  void NoteGone(int index);
  int HoverPitchOf(int index) const;
  void EndHoverSound(int hoverPitch);
  QPoint InsideNote(int index, QPoint point) const;

  StaffViewState state_;
  int handPosition_ = 0;
  int dragged_ = 0;      // the note a press claimed, until the release
  int hovered_ = 0;      // the note sounding under the mouse
  int lastPressed_ = 0;  // the note Backspace deletes
  Note noteAtPress_;     // what the dragged note was, to tell whether the drop changed it
};

}  // namespace window
}  // namespace lirenza
