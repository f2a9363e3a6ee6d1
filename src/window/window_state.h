#pragma once
// What the main window works on, in two parts: the state it owns (the staff, the
// modes, the entry buttons' choice, the tuning tables, playback) and the services
// it is handed (the note players, the clock, the questions and dialogs). The program
// hands in the real services; the widget tests hand in fakes and drive the real window.
#include <QString>
#include <memory>
#include <optional>
#include <string>

#include "editor/note_entry.h"
#include "ports/midi_input.h"
#include "ports/ports.h"
#include "score/staff.h"
#include "tuning/pure_scale.h"
#include "violin/instrument_table.h"
#include "violin/playback.h"
#include "violin/tempo_table.h"
#include "window/close_question.h"
#include "window/process_launcher.h"

class QWidget;

namespace lirenza::window {

struct WindowState {
  Staff staff;
  Modes modes;
  EntryState entry;
  TuningTables tuning;         // tuned to the key of the staff at start and after each key choice
  PlaybackState playback;
  int handPosition = 0;       // 0 first, 1 third, 2 fifth position
  double tempoFactor = 1.0;   // larger is slower; the tempo slider sets it
  // The tempo slider, 0 to 15, as a score file keeps it. The sound panel keeps it with
  // the slider; an opened score or a save sets it and tells scoreChanged, and the
  // slider moves to it.
  int tempoSlider = kTempoSliderStart;
  QString documentPath;       // the score file last opened or saved; empty for a new score
  // The instrument menus' values and the instrument they chose. The sound panel keeps
  // them; a saved score carries the menu values, a MIDI file the instrument.
  int instrumentGroupMenu = 5;
  int instrumentMenuRow = 0;
  int instrument = kViolin;
};

// The file dialogs and the one-sentence messages. A path that is not given (the
// dialog was cancelled) is nullopt.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual std::optional<QString> OpenScorePath(QWidget* parent) = 0;
  virtual std::optional<QString> SaveScorePath(QWidget* parent, const QString& suggested) = 0;
  virtual std::optional<QString> SaveMidiPath(QWidget* parent, const QString& suggested) = 0;
  // One clear sentence about something that failed; nothing else happens.
  virtual void Tell(QWidget* parent, const QString& sentence) = 0;
};

// The services the window is handed. Any left empty gets the real one: the system's
// clock, the toolkit's dialogs and message boxes. ports may hold null players, which
// stay silent, and no fingerboard view, whose calls then draw nothing.
struct WindowServices {
  SoundPorts ports;
  std::shared_ptr<const Clock> clock;
  std::shared_ptr<Confirm> confirm;
  std::shared_ptr<Dialogs> dialogs;
  std::shared_ptr<CloseQuestion> closeQuestion;
  // What starts the volume script and the player scripts.
  std::shared_ptr<ProcessLauncher> launcher;
  // Where notes from MIDI keyboards come from; none: the window listens to none.
  std::shared_ptr<MidiNoteSource> midiNotes;
};

// The real clock: one monotonic clock for ticks and microseconds.
class SteadyClock : public Clock {
 public:
  long long Ticks() const override;
  double Microseconds() const override;
};

// The toolkit's file dialogs (filtered on scores or MIDI files) and message boxes.
class ToolkitDialogs : public Dialogs {
 public:
  std::optional<QString> OpenScorePath(QWidget* parent) override;
  std::optional<QString> SaveScorePath(QWidget* parent, const QString& suggested) override;
  std::optional<QString> SaveMidiPath(QWidget* parent, const QString& suggested) override;
  void Tell(QWidget* parent, const QString& sentence) override;
};

// The toolkit's yes/no question, over a window.
class ToolkitConfirm : public Confirm {
 public:
  explicit ToolkitConfirm(QWidget* parent) : parent_(parent) {}
  bool Ask(const std::string& message, const std::string& explanation, const std::string& action) override;

 private:
  QWidget* parent_;
};

// Fills what services leaves empty with the real ones; parent is where questions appear.
WindowServices WithRealServices(WindowServices services, QWidget* parent);

}  // namespace lirenza::window
