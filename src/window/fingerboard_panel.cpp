#include "window/fingerboard_panel.h"

#include <QApplication>
#include <QMouseEvent>

#include "editor/note_entry.h"
#include "window/main_window.h"
#include "window/staff_view.h"

namespace lirenza::window {

using layout::ControlId;

FingerboardPanel::FingerboardPanel(MainWindow& window)
    : QObject(&window), window_(window), canvas_(window.Control(ControlId::ViolinCanvas)) {
  if (!canvas_) return;
  canvas_->installEventFilter(this);
  // The bow stands over the strings while a note sounds: a press on it is a press on
  // the string under it.
  if (QWidget* bow = window.Control(ControlId::BowCanvas)) bow->setAttribute(Qt::WA_TransparentForMouseEvents);
}

// Not holding a note, only the violin's events come here. Holding one, the whole
// application's do instead (the filter moves, so that no event is seen twice): the
// release, and whatever would take it away.
bool FingerboardPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == canvas_) return OnCanvas(event);
  if (holding_ && MustEndHeldNote(watched, event)) EndHeldNote();
  return false;
}

bool FingerboardPanel::OnCanvas(QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
      // The toolkit reports a quick second press as a double click: it is a press all
      // the same, one more note. Should a press have come before it, it played already.
      const auto& mouse = static_cast<const QMouseEvent&>(*event);
      if (mouse.button() != Qt::LeftButton) return false;
      if (holding_ && event->type() == QEvent::MouseButtonDblClick) return true;
      if (holding_) EndHeldNote();  // a release lost on the way: the old note ends first
      // A press that plays nothing is a press on the violin's body, which drags the window.
      return Press(mouse);
    }
    case QEvent::MouseButtonRelease:
      if (!holding_ || static_cast<const QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
      EndHeldNote();
      return true;
    case QEvent::Hide:
      if (holding_) EndHeldNote();
      return false;
    default:
      return false;
  }
}

bool FingerboardPanel::MustEndHeldNote(QObject* watched, QEvent* event) const {
  // There is one mouse: wherever its release was sent, it ends the note.
  if (event->type() == QEvent::MouseButtonRelease)
    return static_cast<const QMouseEvent*>(event)->button() == Qt::LeftButton;
  return window_.LosesInput(watched, event);
}

bool FingerboardPanel::Press(const QMouseEvent& event) {
  WindowState& state = window_.State();
  Staff& staff = state.staff;
  const int scrollBefore = staff.scrollValue;
  const QPoint at = event.position().toPoint();
  const Modifiers mods{.option = event.modifiers().testFlag(Qt::AltModifier)};
  const MouseDownResult result = FingerboardMouseDown(at.x(), at.y(), mods, state.modes, staff, press_,
                                                      state.tuning, window_.Services().ports);
  // The page turns before the strings are looked at, so also for a press that misses them.
  if (staff.scrollValue != scrollBefore) window_.ShowStaffScroll();
  if (!result.handled) return false;

  holding_ = true;
  tuningAtPress_ = state.tuning;
  canvas_->removeEventFilter(this);
  qApp->installEventFilter(this);

  EnterPlayedNote(staff, state.entry, result.index, result.accidental);
  window_.Staff().update(StaffView::NoteRect(staff.notes.back()));
  window_.NotifyScoreChanged(ScoreChange::Edited);
  return true;
}

void FingerboardPanel::EndHeldNote() {
  holding_ = false;
  qApp->removeEventFilter(this);
  canvas_->installEventFilter(this);
  FingerboardMouseUp(press_, tuningAtPress_, window_.Services().ports);
}

}  // namespace lirenza::window
