#include "window/tuning_panel.h"

#include <QLabel>
#include <QLineEdit>

#include "window/control_factory.h"
#include "window/main_window.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

// The key panel's rounded rim, on each side, that the name keeps clear of.
constexpr int kPanelRim = 6;

void ShowIn(QLineEdit* field, const std::string& text) {
  const QString shown = QString::fromStdString(text);
  if (field->text() != shown) field->setText(shown);
}

}  // namespace

TuningPanel::TuningPanel(MainWindow& window) : QObject(&window), window_(window) {
  // The fields only show the tuning: typing there would change nothing, and a click
  // on them must not take the keys the violin is played with.
  for (ControlId id : {ControlId::RatioField, ControlId::FrequencyField}) {
    for (int j = 0; j < layout::FamilySize(id); ++j) {
      auto* field = static_cast<QLineEdit*>(window.Control(id, j));
      field->setReadOnly(true);
      field->setFocusPolicy(Qt::NoFocus);
    }
  }
  connect(&window, &MainWindow::scoreChanged, this, &TuningPanel::FollowKey);
  FollowKey(ScoreChange::Replaced);
}

// The one place the tuning tables follow the staff's key, whatever changed it: an
// opened score, an undo, a save, the start (a key chosen on the staff head has
// retuned them already; retuning gives the same tables for the same key).
void TuningPanel::FollowKey(ScoreChange) {
  WindowState& state = window_.State();
  if (state.staff.keySignature == tunedKey_) return;
  tunedKey_ = state.staff.keySignature;
  TuneToKey(state.tuning, tunedKey_);
  ShowTuning();
}

void TuningPanel::ShowTuning() {
  const TuningTables& tuning = window_.State().tuning;
  for (int j = 0; j < 12; ++j) {
    ShowIn(static_cast<QLineEdit*>(window_.Control(ControlId::RatioField, j)), tuning.ratioTexts[j]);
    ShowIn(static_cast<QLineEdit*>(window_.Control(ControlId::FrequencyField, j)), tuning.frequencyTexts[j]);
  }
  // The names of the keys with sharps and flats run wider than the start's C major:
  // they get a smaller size rather than lose their ends.
  auto* keyName = static_cast<QLabel*>(window_.Control(ControlId::KeyNameLabel));
  const QString name = QString::fromStdString(tuning.keyName);
  QFont font = ControlFont(layout::ControlAt(ControlId::KeyNameLabel));
  font.setPixelSize(FittingPixelSize(font, name, keyName->width() - 2 * kPanelRim));
  keyName->setFont(font);
  keyName->setText(name);
}

}  // namespace lirenza::window
