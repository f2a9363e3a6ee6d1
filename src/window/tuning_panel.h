#pragma once
// The tuning the instrument plays in, shown beside the violin: for each of the twelve
// notes from C its ratio to the key's tonic and its frequency around middle C, and
// the key's name. It follows the key of the staff, however the key changed: chosen on
// the staff head, opened with a score, put back by undo, reset by a save.
#include <QObject>

#include "window/menu_commands.h"

namespace lirenza {
class MainWindow;
namespace window {

class TuningPanel : public QObject {
  Q_OBJECT

 public:
  explicit TuningPanel(MainWindow& window);

 private:
  void FollowKey(ScoreChange change);
  void ShowTuning();

  MainWindow& window_;
  int tunedKey_ = -1;  // the staff's key the tuning tables were last built for
};

}  // namespace window
}  // namespace lirenza
