#include "window/entry_panel.h"

#include <QAbstractButton>

#include "editor/note_entry.h"
#include "window/main_window.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

constexpr ControlId kFamilies[] = {ControlId::LengthButton, ControlId::VelocityButton, ControlId::ArticulationButton};

// A chosen length or loudness reads at a glance: its button stays down, dark and sunk,
// as a bevel button held in does; the toolkit's own checked shade is too faint for it.
const char* const kBevelLook =
    "QToolButton { border: 1px solid #8a8a8a; border-radius: 3px;"
    " background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #ffffff, stop:1 #d8d8d8); }"
    "QToolButton:checked { border-color: #303030;"
    " background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #7c7c7c, stop:1 #a8a8a8); }"
    "QToolButton:pressed { background: #9a9a9a; }";

// The articulation button whose gate the entry state holds; the start choice when the
// gate is none of theirs.
int ArticulationOf(double gate) {
  for (int i = 0; i < static_cast<int>(kArticulationGates.size()); ++i)
    if (kArticulationGates[i] == gate) return i;
  return static_cast<int>(kArticulationGates.size()) - 1;
}

}  // namespace

EntryPanel::EntryPanel(MainWindow& window) : QObject(&window), window_(window) {
  for (ControlId family : kFamilies)
    for (int i = 0; i < layout::FamilySize(family); ++i)
      if (auto* button = qobject_cast<QAbstractButton*>(window_.Control(family, i))) {
        if (family != ControlId::ArticulationButton) button->setStyleSheet(QString::fromLatin1(kBevelLook));
        connect(button, &QAbstractButton::clicked, this, [this, family, i] { Choose(family, i); });
      }
  ShowChoices();
}

void EntryPanel::Choose(ControlId family, int index) {
  WindowState& state = window_.State();
  switch (family) {
    case ControlId::LengthButton: ChooseLength(state.staff, state.entry, state.modes, index); break;
    case ControlId::VelocityButton: ChooseLoudness(state.entry, index); break;
    case ControlId::ArticulationButton: ChooseArticulation(state.entry, index); break;
    default: break;
  }
  ShowChoices();
}

void EntryPanel::ShowChoices() {
  const EntryState& entry = window_.State().entry;
  const int chosen[] = {entry.lengthButton, entry.loudnessButton, ArticulationOf(entry.gate)};
  for (int f = 0; f < 3; ++f)
    if (auto* button = qobject_cast<QAbstractButton*>(window_.Control(kFamilies[f], chosen[f])))
      button->setChecked(true);  // the family's group releases the others
}

}  // namespace lirenza::window
