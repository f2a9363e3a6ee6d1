#pragma once
// The sound of the window: the instrument group and instrument menus, which set one
// instrument on all seven note players; the tempo slider with its number beside it and
// the tempo term and number on the staff head; the volume slider and the speaker
// picture that shows its level.
#include <QObject>
#include <string>

#include "window/menu_commands.h"

#include "window/menu_commands.h"

class QSlider;
class QToolButton;

namespace lirenza {
class MainWindow;
namespace window {

class SoundPanel : public QObject {
  Q_OBJECT

 public:
  explicit SoundPanel(MainWindow& window);

  // The group menu's item at menuIndex: its names fill the instrument menu and its
  // first instrument sounds at once, so the choice of a group is heard.
  void ChooseGroup(int menuIndex);
  // A row of the instrument menu: its instrument goes to every player.
  void ChooseInstrumentRow(int row);

 private:
  void FillGroupMenu();
  void ShowTempo(int sliderValue);
  void ShowVolume(int sliderValue);
  void SetSystemVolume(int sliderValue);
  void FollowScore(ScoreChange change);

  MainWindow& window_;
  QToolButton* groupButton_;
  QToolButton* instrumentButton_;
  QSlider* tempoSlider_;
  QSlider* volumeSlider_;
  std::string groupNumbers_;  // the numbers of the current group's rows, in menu order
};

}  // namespace window
}  // namespace lirenza
