#pragma once
// Notes from MIDI keyboards play the violin as the computer keyboard does: on the live
// player, with the finger shown in the present hand position. They arrive on the
// source's own thread and are played here, on the window's. A MIDI keyboard needs no
// focus, so leaving the window ends nothing; closing it ends every note.
#include <QObject>

#include "violin/midi_notes.h"

namespace lirenza {
class MainWindow;
namespace window {

class MidiKeyboardPanel : public QObject {
  Q_OBJECT

 public:
  explicit MidiKeyboardPanel(MainWindow& window);
  ~MidiKeyboardPanel() override;

 private:
  void Play(const MidiNoteEvent& event);

  MainWindow& window_;
  MidiKeyboardNotes notes_;
};

}  // namespace window
}  // namespace lirenza
