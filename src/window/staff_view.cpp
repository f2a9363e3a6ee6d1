#include "window/staff_view.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "editor/key_time.h"
#include "editor/note_gestures.h"
#include "violin/key_push.h"
#include "window/picture_store.h"

namespace lirenza::window {
namespace {

// The velocity digit: its size, and its baseline in the note's picture beside the head.
constexpr int kVelocityDigitPixels = 11;
constexpr QPoint kDigitUnderHead{7, 32};
constexpr QPoint kDigitOverHead{7, 13};
// The note pictures whose stem falls from the head.
constexpr char kStemDownFamily[] = "u";

// Where the canvas stands in the window: notes keep window pixels.
constexpr int kCanvasLeft = kViewLeft;
constexpr int kCanvasTop = 60;
constexpr int kCanvasWidth = 868;
constexpr int kCanvasHeight = 140;
// The stretch of the sheet drawn at each paint; wider and taller than the canvas, so
// the canvas clips it, never the picture.
constexpr int kSheetStretchWidth = 870;
constexpr int kSheetStretchHeight = 188;

// The sign over a note, by the accidental it shows.
const char* SignPicture(int accidentalSign) {
  switch (accidentalSign) {
    case 1: return "Sh";
    case 2: return "Fl";
    case 3: return "Nt";
    default: return nullptr;
  }
}

// Menu actions carry what they do as properties, so a caption never decides an action.
constexpr const char* kChoiceKind = "noteChoiceKind";
constexpr const char* kChoiceValue = "noteChoiceValue";
constexpr const char* kOperation = "barOperation";

Modifiers ModifiersOf(const QMouseEvent* event) {
  const Qt::KeyboardModifiers m = event->modifiers();
  return {.option = m.testFlag(Qt::AltModifier), .shift = m.testFlag(Qt::ShiftModifier),
          .control = m.testFlag(Qt::ControlModifier)};
}

}  // namespace

StaffView::StaffView(StaffViewState state, QWidget* parent) : QWidget(parent), state_(state) {
  setFixedSize(kCanvasWidth, kCanvasHeight);
  setMouseTracking(true);  // hover sound
  setFocusPolicy(Qt::ClickFocus);  // Backspace reaches the note last pressed
  setAttribute(Qt::WA_OpaquePaintEvent);  // the sheet covers every pixel
}

QRect StaffView::NoteRect(const Note& note) {
  return {note.left - kCanvasLeft, note.top - kCanvasTop, kNoteWidth, kNoteHeight};
}

int StaffView::NoteAt(QPoint point) const {
  const Staff& staff = state_.staff;
  for (int i = staff.NoteCount(); i >= 1; --i)
    if (NoteRect(staff.notes[i]).contains(point)) return i;
  return 0;
}

QPoint StaffView::InsideNote(int index, QPoint point) const {
  return point - NoteRect(state_.staff.notes[index]).topLeft();
}

std::optional<NoteMenuChoice> StaffView::NoteChoiceOf(const QAction* action) {
  if (!action || !action->property(kChoiceKind).isValid()) return std::nullopt;
  return NoteMenuChoice{static_cast<NoteMenuChoice::Kind>(action->property(kChoiceKind).toInt()),
                        action->property(kChoiceValue).toInt()};
}

std::optional<BarOperation> StaffView::BarOperationOf(const QAction* action) {
  if (!action || !action->property(kOperation).isValid()) return std::nullopt;
  return static_cast<BarOperation>(action->property(kOperation).toInt());
}

void StaffView::RefreshNote(int index) {
  if (index >= 1 && index <= state_.staff.NoteCount()) update(NoteRect(state_.staff.notes[index]));
}

void StaffView::ScrollTo(int value) {
  lirenza::ScrollTo(state_.staff, value);
  update();
}

void StaffView::paintEvent(QPaintEvent* event) {
  Staff& staff = state_.staff;
  QPainter painter(this);
  painter.fillRect(event->rect(), Qt::white);
  // The metre chooses the sheet at every paint, whatever picture the canvas was given.
  const QImage sheet = state_.pictures.Picture(QString::fromStdString(TimeSheetPicture(staff.timeSignature)));
  const qreal scale = sheet.devicePixelRatio();
  painter.drawImage(QRectF(0, 0, kSheetStretchWidth, kSheetStretchHeight), sheet,
                    QRectF(staff.scrollValue * scale, 0, kSheetStretchWidth * scale, kSheetStretchHeight * scale));

  // Painting is what brings a note's token up to date after its menu changed it.
  RespellNotesInView(staff);
  for (int i = 1; i <= staff.NoteCount(); ++i) {
    const Note& note = staff.notes[i];
    if (InView(note) && NoteRect(note).intersects(event->rect())) PaintNote(painter, note);
  }
}

void StaffView::PaintNote(QPainter& painter, const Note& note) {
  const QRect rect = NoteRect(note);
  if (!note.picture.empty()) painter.drawImage(rect.topLeft(), state_.pictures.Picture(QString::fromStdString(note.picture)));
  if (const char* sign = SignPicture(note.accidentalSign))
    painter.drawImage(rect.topLeft() + QPoint(0, 6), state_.pictures.Picture(sign));
  if (!note.IsRest()) {
    // Every note's loudness can be read on the staff beside its head, on the side its
    // stem leaves free: under a head whose stem rises, over one whose stem falls (the
    // head fills rows 15 to 22 of the note's picture, a falling stem and its flags the
    // rows below).
    const bool stemFalls = note.picture.rfind(kStemDownFamily, 0) == 0;
    QFont font = painter.font();
    font.setPixelSize(kVelocityDigitPixels);
    painter.setFont(font);
    painter.setPen(QColor(0, 0, 255));
    painter.drawText(rect.topLeft() + (stemFalls ? kDigitOverHead : kDigitUnderHead),
                     QString::fromStdString(note.velocityDigit));
  }
  if (note.sounding) painter.drawImage(rect.topLeft(), state_.pictures.Picture("nOn"));
}

void StaffView::mousePressEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  const bool contextual = event->button() == Qt::RightButton;
  if (event->button() != Qt::LeftButton && !contextual) return;
  if (const int index = NoteAt(point)) {
    if (!contextual) setFocus(Qt::MouseFocusReason);
    PressNote(index, event);
    return;
  }
  // A right click is a press on the staff too: it selects the bar its menu acts on.
  Staff& staff = state_.staff;
  if (EnterNoteAt(staff, state_.entry, state_.modes, ModifiersOf(event), state_.clock.Ticks(), point.x(),
                  point.y())) {
    update(NoteRect(staff.notes.back()));
    emit staffChanged();
  }
  if (contextual) OpenStaffMenuAt(point, event->globalPosition().toPoint());
}

void StaffView::PressNote(int index, QMouseEvent* event) {
  Staff& staff = state_.staff;
  const QRect rect = NoteRect(staff.notes[index]);
  const QPoint inside = InsideNote(index, event->position().toPoint());
  const bool contextual = event->button() == Qt::RightButton;
  const int hoverPitch = HoverPitchOf(index);
  switch (NoteMouseDown(staff, index, state_.clock.Ticks(), contextual, inside.x(), inside.y())) {
    case PressResult::Deleted:
      EndHoverSound(hoverPitch);
      NoteGone(index);
      update(rect);
      emit staffChanged();
      break;
    case PressResult::Contextual:
      if (contextual) OpenNoteMenuAt(index, event->globalPosition().toPoint());
      break;
    case PressResult::Claimed:
      dragged_ = index;
      lastPressed_ = index;
      noteAtPress_ = staff.notes[index];
      break;
  }
}

void StaffView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  Staff& staff = state_.staff;
  if (dragged_ == 0 || dragged_ > staff.NoteCount()) {
    dragged_ = 0;
    HoverOver(NoteAt(point));
    return;
  }
  // Only the note's old and new places need painting while it follows the mouse.
  const QRect before = NoteRect(staff.notes[dragged_]);
  const QPoint inside = InsideNote(dragged_, point);
  NoteMouseDrag(staff, dragged_, state_.clock.Ticks(), inside.x(), inside.y(), state_.ports, state_.tuning);
  update(before);
  update(NoteRect(staff.notes[dragged_]));
}

void StaffView::mouseReleaseEvent(QMouseEvent* event) {
  Staff& staff = state_.staff;
  const int index = dragged_;
  dragged_ = 0;
  if (index == 0 || index > staff.NoteCount() || event->button() != Qt::LeftButton) return;
  const QRect before = NoteRect(staff.notes[index]);
  NoteMouseUp(staff, index, state_.ports, state_.tuning);
  update(before);
  update(NoteRect(staff.notes[index]));
  if (staff.notes[index].StoredFields() != noteAtPress_.StoredFields()) emit staffChanged();
}

void StaffView::keyPressEvent(QKeyEvent* event) {
  const int index = lastPressed_;
  Staff& staff = state_.staff;
  if (event->key() == Qt::Key_Backspace && index >= 1 && index <= staff.NoteCount()) {
    const QRect rect = NoteRect(staff.notes[index]);
    const int hoverPitch = HoverPitchOf(index);
    if (NoteKeyDown(staff, index, 8)) {
      EndHoverSound(hoverPitch);
      NoteGone(index);
      update(rect);
      emit staffChanged();
      return;
    }
  }
  QWidget::keyPressEvent(event);
}

void StaffView::leaveEvent(QEvent* event) {
  if (dragged_ == 0) HoverOver(0);
  QWidget::leaveEvent(event);
}

void StaffView::HoverOver(int index) {
  if (index == hovered_) return;
  if (hovered_ >= 1 && hovered_ <= state_.staff.NoteCount())
    NoteMouseExit(state_.staff, hovered_, state_.ports, state_.tuning, handPosition_);
  hovered_ = index;
  if (index) NoteMouseEnter(state_.staff, index, state_.ports, state_.tuning, handPosition_);
}

// A note deleted under the mouse gets no exit: the sound its hover started ends here,
// or it would hang.
int StaffView::HoverPitchOf(int index) const {
  return index == hovered_ && !state_.staff.notes[index].IsRest() ? state_.staff.notes[index].hoverPitch : -1;
}

void StaffView::EndHoverSound(int hoverPitch) {
  if (hoverPitch >= 0) PlayAndShow(state_.ports, state_.tuning, handPosition_, hoverPitch, 0);
}

void StaffView::ForgetNoteIndexes() {
  HoverOver(0);
  dragged_ = lastPressed_ = 0;
}

// A removed note closes the gap: the notes after it move down one index.
void StaffView::NoteGone(int index) {
  for (int* held : {&dragged_, &hovered_, &lastPressed_}) {
    if (*held == index)
      *held = 0;
    else if (*held > index)
      --*held;
  }
}

QAction* StaffView::RunMenu(QMenu& menu, QPoint globalPos) { return menu.exec(globalPos); }

void StaffView::OpenNoteMenuAt(int index, QPoint globalPos) {
  QMenu menu(this);
  for (const NoteMenu& part : OpenNoteMenu(state_.staff.notes[index], state_.ports, state_.tuning)) {
    QMenu* sub = menu.addMenu(QString::fromStdString(part.title));
    for (const NoteMenuItem& item : part.items) {
      if (item.choice.kind == NoteMenuChoice::Kind::Separator) {
        sub->addSeparator();
        continue;
      }
      QAction* action = sub->addAction(QString::fromStdString(item.caption));
      action->setCheckable(true);
      action->setChecked(item.checked);
      action->setProperty(kChoiceKind, static_cast<int>(item.choice.kind));
      action->setProperty(kChoiceValue, item.choice.value);
    }
  }
  const std::optional<NoteMenuChoice> choice = NoteChoiceOf(RunMenu(menu, globalPos));
  // The menu ran its own event loop: the note may have gone meanwhile.
  Staff& staff = state_.staff;
  if (!choice || index > staff.NoteCount()) return;
  if (ChooseFromNoteMenu(staff.notes[index], state_.modes, *choice)) {
    update(NoteRect(staff.notes[index]));
    emit staffChanged();
  }
}

void StaffView::OpenStaffMenuAt(QPoint point, QPoint globalPos) {
  QMenu menu(this);
  for (const StaffMenuRow& row : kStaffMenuRows) {
    if (row.caption == "-") {
      menu.addSeparator();
      continue;
    }
    QAction* action = menu.addAction(QString::fromUtf8(row.caption.data(), static_cast<qsizetype>(row.caption.size())));
    if (row.isOperation)
      action->setProperty(kOperation, static_cast<int>(row.operation));
    else
      action->setEnabled(false);  // the menu's title
  }
  const std::optional<BarOperation> operation = BarOperationOf(RunMenu(menu, globalPos));
  if (!operation) return;
  switch (ChooseFromStaffMenu(state_.staff, *operation, point.x(), point.y(), state_.confirm)) {
    case BarMenuOutcome::OpenFile: emit openScoreRequested(); break;
    case BarMenuOutcome::SaveFile: emit saveScoreRequested(); break;
    case BarMenuOutcome::Ignored: break;
    case BarMenuOutcome::Done:
      // Bar operations remove and add notes anywhere: no index held so far still names
      // the same note.
      dragged_ = hovered_ = lastPressed_ = 0;
      update();
      emit staffChanged();
      break;
  }
}

}  // namespace lirenza::window
