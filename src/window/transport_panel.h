#pragma once
// The window's play, stop and list play, the playback timer that sleeps until the next event is due, the sounding note's highlight and the staff following the music.
#include <QObject>
#include <QTimer>
#include <array>
#include <functional>
#include <string>

#include "violin/playback.h"

class QTreeWidget;

namespace lirenza {
class MainWindow;
namespace window {

// The score list beside the staff as playback walks it: rows, the chosen row, and the
// loading of that row's score onto the staff, which the library provides.
class ScoreListRows : public ScoreList {
 public:
  explicit ScoreListRows(QTreeWidget* list) : list_(list) {}
  int Rows() const override;
  int SelectedRow() const override;
  void Select(int row) override;
  void SetNotes() override {
    if (load_) load_();
  }
  void SetLoader(std::function<void()> load) { load_ = std::move(load); }

 private:
  QTreeWidget* list_;
  std::function<void()> load_;
};

class TransportPanel : public QObject {
  Q_OBJECT

 public:
  // The three transport buttons this panel drives: play, stop, list.
  static constexpr int kButtons = 3;
  // A piece without a single note ends as soon as it starts; a list of such scores
  // waits this long between them instead of loading them as fast as it can.
  static constexpr int kEmptyPieceWaitMs = 50;

  explicit TransportPanel(MainWindow& window);

  // What loads the selected row of the score list onto the staff (and tells the window
  // the staff was filled anew). Until it is set, list play loads nothing.
  void SetScoreLoader(std::function<void()> load) { list_.SetLoader(std::move(load)); }

  // Carries out every event that is due by the clock now, as the timer would over as
  // many ticks, then sleeps again. For a clock that does not move by itself.
  void TickNow();
  bool TimerActive() const { return timer_.isActive(); }

  // The two radio groups that choose how a score is played, as they stand now.
  PlayStyle Style() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  PlaybackEnv Env();
  int ButtonIndex(QObject* watched) const;
  void Press(int index);
  // One tick of each running timer; true when one of them carried out an event and
  // the next event is already due.
  bool TickOnce();
  void OnTimer();
  void SleepUntilDue();
  void ShowTransport();

  MainWindow& window_;
  ScoreListRows list_;
  QTimer timer_;
  std::array<bool, kButtons> pressActed_{};  // a press that acted gets its release
  std::array<std::string, kButtons> shownPicture_;
  int shownScroll_ = 0;
};

}  // namespace window
}  // namespace lirenza
