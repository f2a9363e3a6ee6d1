#pragma once
// The window's play, stop and list play, the playback timer that sleeps until the next event is due, the sounding note's highlight and the staff following the music.
#include <QObject>

namespace lirenza {
class MainWindow;
namespace window {

class TransportPanel : public QObject {
  Q_OBJECT

 public:
  explicit TransportPanel(MainWindow& window);

 private:
  MainWindow& window_;
};

}  // namespace window
}  // namespace lirenza
