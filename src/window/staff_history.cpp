#include "window/staff_history.h"

#include <QUndoCommand>
#include <tuple>
#include <utility>

#include "window/main_window.h"
#include "window/staff_view.h"

namespace lirenza::window {
namespace {

// A note as undo keeps it: stored fields and picture, Left as on the unscrolled staff.
Note Kept(const Note& note, int scroll) {
  Note kept;
  kept.StoredFields() = note.StoredFields();
  kept.picture = note.picture;
  kept.left = note.left + scroll;
  return kept;
}

// The stored fields after Left, which comes first in the record.
template <typename Fields>
auto AfterLeft(Fields fields) {
  return std::apply([](auto&, auto&... rest) { return std::tie(rest...); }, fields);
}

bool SameNote(const Note& onStaff, int scroll, const Note& kept) {
  return onStaff.left + scroll == kept.left && onStaff.picture == kept.picture &&
         AfterLeft(onStaff.StoredFields()) == AfterLeft(kept.StoredFields());
}

// The staff's fields that StaffHeader keeps, in the same order; entryLeft as the
// staff holds it, scrolled.
template <typename S>
auto HeaderFieldsOf(S& staff) {
  return std::tie(staff.keySignature, staff.timeSignature, staff.keySignaturePicture, staff.timeSignaturePicture,
                  staff.sheetPicture, staff.title, staff.comment, staff.entryLeft, staff.entryTop);
}

StaffHeader HeaderOf(const Staff& staff) {
  StaffHeader header;
  header.Fields() = HeaderFieldsOf(staff);
  header.entryLeft += staff.appliedScroll;
  return header;
}

// Each field of now takes its value in becomes where the step changed it (was differs).
template <typename Now, typename Step, std::size_t... I>
void TakeChangedFields(Now now, Step was, Step becomes, std::index_sequence<I...>) {
  ((std::get<I>(was) != std::get<I>(becomes) ? void(std::get<I>(now) = std::get<I>(becomes)) : void()), ...);
}

class StaffEdit : public QUndoCommand {
 public:
  StaffEdit(StaffHistory& history, StaffStep step) : history_(history), step_(std::move(step)) {}
  void undo() override { history_.Restore(step_, true); }
  // Pushing runs redo at once; the staff already holds that change.
  void redo() override {
    if (pushed_) history_.Restore(step_, false);
    pushed_ = true;
  }

 private:
  StaffHistory& history_;
  StaffStep step_;
  bool pushed_ = false;
};

}  // namespace

StaffSnapshot SnapshotOf(const Staff& staff) {
  StaffSnapshot snapshot{HeaderOf(staff), {}};
  snapshot.notes.reserve(staff.notes.size() - 1);
  for (int i = 1; i <= staff.NoteCount(); ++i) snapshot.notes.push_back(Kept(staff.notes[i], staff.appliedScroll));
  return snapshot;
}

StaffHistory::StaffHistory(MainWindow& window) : QObject(&window), window_(window) {
  present_ = SnapshotOf(window.State().staff);
  connect(&window, &MainWindow::scoreChanged, this, &StaffHistory::Follow);
  connect(&stack_, &QUndoStack::indexChanged, this, [this] {
    if (restored_) AfterRestore();
  });
  window.OnMenu(MenuCommand::Undo, [this](int) {
    if (!window_.State().modes.Busy()) stack_.undo();
  });
  window.OnMenu(MenuCommand::Redo, [this](int) {
    if (!window_.State().modes.Busy()) stack_.redo();
  });
}

void StaffHistory::Follow(ScoreChange change) {
  switch (change) {
    case ScoreChange::Edited: Record(); break;
    case ScoreChange::Replaced: StartOver(); break;
    case ScoreChange::Saved: {
      // A save that left the staff as it was marks this step as the saved one; one that
      // started a new score starts the history over with it.
      const StaffSnapshot now = SnapshotOf(window_.State().staff);
      if (now.header == present_.header && now.notes == present_.notes)
        stack_.setClean();
      else
        StartOver();
      break;
    }
    case ScoreChange::Restored: break;
  }
}

void StaffHistory::Record() {
  const Staff& staff = window_.State().staff;
  const int scroll = staff.appliedScroll;
  const int now = staff.NoteCount();
  const int kept = static_cast<int>(present_.notes.size());
  // Only the stretch between the notes that stayed at the front and at the back changed.
  int front = 0;
  while (front < now && front < kept && SameNote(staff.notes[front + 1], scroll, present_.notes[front])) ++front;
  int back = 0;
  while (back < now - front && back < kept - front &&
         SameNote(staff.notes[now - back], scroll, present_.notes[kept - 1 - back]))
    ++back;
  const StaffHeader header = HeaderOf(staff);
  if (front == now && front == kept && header == present_.header) return;

  StaffStep step;
  step.first = front;
  step.before.assign(present_.notes.begin() + front, present_.notes.end() - back);
  for (int i = front + 1; i <= now - back; ++i) step.after.push_back(Kept(staff.notes[i], scroll));
  step.headerBefore = present_.header;
  step.headerAfter = header;
  present_.notes.erase(present_.notes.begin() + front, present_.notes.end() - back);
  present_.notes.insert(present_.notes.begin() + front, step.after.begin(), step.after.end());
  present_.header = header;
  stack_.push(new StaffEdit(*this, std::move(step)));
}

void StaffHistory::StartOver() {
  stack_.clear();
  present_ = SnapshotOf(window_.State().staff);
}

void StaffHistory::Restore(const StaffStep& step, bool undo) {
  window_.Staff().ForgetNoteIndexes();
  const std::vector<Note>& from = undo ? step.after : step.before;
  const std::vector<Note>& to = undo ? step.before : step.after;

  auto keptFirst = present_.notes.begin() + step.first;
  present_.notes.erase(keptFirst, keptFirst + static_cast<std::ptrdiff_t>(from.size()));
  present_.notes.insert(present_.notes.begin() + step.first, to.begin(), to.end());

  // Only the changed stretch is written back, so the notes around it keep what they
  // hold on screen (a hover sound, a highlight).
  Staff& staff = window_.State().staff;
  const int scroll = staff.appliedScroll;
  const auto first = std::min<std::ptrdiff_t>(1 + step.first, staff.notes.end() - staff.notes.begin());
  staff.notes.erase(staff.notes.begin() + first,
                    staff.notes.begin() + std::min<std::ptrdiff_t>(first + from.size(), staff.notes.size()));
  std::vector<Note> placed(to);
  for (Note& note : placed) note.left -= scroll;
  staff.notes.insert(staff.notes.begin() + first, placed.begin(), placed.end());

  // Of the rest, only what the step changed goes back: a title typed since, which no
  // step holds yet, stays as typed.
  StaffHeader was = undo ? step.headerAfter : step.headerBefore;
  StaffHeader becomes = undo ? step.headerBefore : step.headerAfter;
  StaffHeader now = HeaderOf(staff);
  TakeChangedFields(now.Fields(), was.Fields(), becomes.Fields(),
                    std::make_index_sequence<std::tuple_size_v<decltype(now.Fields())>>{});
  HeaderFieldsOf(staff) = now.Fields();
  staff.entryLeft -= scroll;
  present_.header = now;
  restored_ = true;
}

void StaffHistory::AfterRestore() {
  restored_ = false;
  WindowState& state = window_.State();
  state.staff.hasChanges = !stack_.isClean();
  window_.Staff().update();
  window_.NotifyScoreChanged(ScoreChange::Restored);
}

}  // namespace lirenza::window
