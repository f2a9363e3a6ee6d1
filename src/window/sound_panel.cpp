#include "window/sound_panel.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QSlider>
#include <QToolButton>

#include "violin/instrument_table.h"
#include "violin/tempo_table.h"
#include "window/control_factory.h"
#include "window/main_window.h"
#include "window/picture_canvas.h"
#include "window/process_launcher.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

// The window starts on the violin: the string group, its first row.
constexpr int kStartGroup = 5;

// Room the menu button keeps for its arrow beside the caption.
constexpr int kMenuArrowRoom = 16;

// Shows text in the control made for id, in the row's font made smaller where the
// text would not fit: the longest instrument and tempo names run wider than the
// places were made for, and a caption cut off in the middle says nothing.
template <typename Widget>
void ShowText(Widget* w, ControlId id, const QString& text, int spareWidth = 0) {
  const layout::Control& row = layout::ControlAt(id);
  QFont font = ControlFont(row);
  font.setPixelSize(FittingPixelSize(font, text, row.place.width - spareWidth));
  w->setFont(font);
  w->setText(text);
}

}  // namespace

SoundPanel::SoundPanel(MainWindow& window)
    : QObject(&window),
      window_(window),
      groupButton_(static_cast<QToolButton*>(window.Control(ControlId::InstrumentGroupMenu))),
      instrumentButton_(static_cast<QToolButton*>(window.Control(ControlId::InstrumentMenu))),
      tempoSlider_(static_cast<QSlider*>(window.Control(ControlId::TempoSlider))),
      volumeSlider_(static_cast<QSlider*>(window.Control(ControlId::VolumeSlider))) {
  FillGroupMenu();
  connect(groupButton_->menu(), &QMenu::triggered, this,
          [this](QAction* item) { ChooseGroup(item->data().toInt()); });
  connect(instrumentButton_->menu(), &QMenu::triggered, this,
          [this](QAction* item) { ChooseInstrumentRow(item->data().toInt()); });
  ChooseGroup(kStartGroup);

  // Both sliders act while the thumb moves, not only when it is let go. The labels keep
  // their start texts until the tempo slider first moves.
  window.State().tempoSlider = tempoSlider_->value();
  window.State().tempoFactor = TempoForSlider(tempoSlider_->value()).tempoFactor;
  connect(tempoSlider_, &QSlider::valueChanged, this, &SoundPanel::ShowTempo);
  connect(volumeSlider_, &QSlider::valueChanged, this, &SoundPanel::SetSystemVolume);
  ShowVolume(volumeSlider_->value());
  connect(&window, &MainWindow::scoreChanged, this, &SoundPanel::FollowScore);
}

// A score carries its tempo: opening one, or the new score a save leaves, moves the
// slider, and the slider's own change shows it. The instrument stays as chosen.
void SoundPanel::FollowScore(ScoreChange change) {
  if (change == ScoreChange::Replaced || change == ScoreChange::Saved)
    tempoSlider_->setValue(ClampTempoSlider(window_.State().tempoSlider));
}

void SoundPanel::FillGroupMenu() {
  QMenu* menu = groupButton_->menu();
  for (int index = 0; index < kInstrumentGroupMenuItems; ++index) {
    if (index == kInstrumentSeparator) {
      menu->addSeparator();
      continue;
    }
    const InstrumentGroup* group = InstrumentGroupAt(index);
    if (!group) continue;
    menu->addAction(ToQString(group->name))->setData(index);
  }
}

void SoundPanel::ChooseGroup(int menuIndex) {
  const GroupChoice choice = ChooseInstrumentGroup(menuIndex);
  if (choice.rows.empty()) return;  // the separator or an index the menu does not have
  ShowText(groupButton_, ControlId::InstrumentGroupMenu, QString::fromStdString(choice.caption), kMenuArrowRoom);
  groupNumbers_ = choice.groupNumbers;
  window_.State().instrumentGroupMenu = menuIndex;

  QMenu* rows = instrumentButton_->menu();
  rows->clear();
  for (int row = 0; row < static_cast<int>(choice.rows.size()); ++row)
    rows->addAction(ToQString(choice.rows[row]))->setData(row);
  ChooseInstrumentRow(0);
}

void SoundPanel::ChooseInstrumentRow(int row) {
  const QList<QAction*> rows = instrumentButton_->menu()->actions();
  if (row < 0 || row >= rows.size()) return;
  ShowText(instrumentButton_, ControlId::InstrumentMenu, rows[row]->text(), kMenuArrowRoom);
  const int instrument = ChooseInstrument(groupNumbers_, row);
  WindowState& state = window_.State();
  state.instrumentMenuRow = row;
  state.instrument = instrument;
  // One instrument for every player: the program plays one sound, in every path.
  for (NotePlayer* player : window_.Services().ports.players)
    if (player) player->Instrument(instrument);
}

void SoundPanel::ShowTempo(int sliderValue) {
  const TempoRow tempo = TempoForSlider(sliderValue);
  window_.State().tempoSlider = sliderValue;
  window_.State().tempoFactor = tempo.tempoFactor;
  const QString number = QString::number(tempo.number);
  ShowText(static_cast<QLabel*>(window_.Control(ControlId::TempoSliderNumber)), ControlId::TempoSliderNumber,
           number);
  ShowText(static_cast<QLabel*>(window_.Control(ControlId::TempoNumber)), ControlId::TempoNumber, number);
  ShowText(static_cast<QLabel*>(window_.Control(ControlId::TempoWord)), ControlId::TempoWord,
           QString::fromStdString(tempo.term));
}

void SoundPanel::ShowVolume(int sliderValue) {
  const QString picture = QString::fromStdString(SpeakerPicture(VolumeLevel(sliderValue)));
  static_cast<PictureCanvas*>(window_.Control(ControlId::Speaker))->SetPicture(window_.Pictures().Picture(picture));
}

// The slider sets the computer's own output volume, through a script that knows the
// desktop's mixer. It runs on its own at each step of a drag, and a mixer that fails or
// hangs never holds the slider back nor says anything.
void SoundPanel::SetSystemVolume(int sliderValue) {
  ShowVolume(sliderValue);
  RunScript(*window_.Services().launcher, QStringLiteral("SetVolume"), {QString::number(VolumeLevel(sliderValue))});
}

}  // namespace lirenza::window
