#pragma once
// The four buttons that hand the score to the world outside: the MIDI file and the three
// player scripts, started in the desktop's terminal.
#include <QObject>

namespace lirenza {
class MainWindow;
class PictureCanvas;
namespace window {

class ConversionPanel : public QObject {
  Q_OBJECT

 public:
  // Score to MIDI, then play MIDI, MIDI to AIFF and play AIFF.
  static constexpr int kButtons = 4;

  explicit ConversionPanel(MainWindow& window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  int ButtonIndex(QObject* watched) const;
  void Press(int index);
  void ShowPicture(int index, bool pressed);
  void SaveMidi();
  void StartScript(int index);

  MainWindow& window_;
  PictureCanvas* buttons_[kButtons] = {};
};

}  // namespace window
}  // namespace lirenza
