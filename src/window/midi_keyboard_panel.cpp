#include "window/midi_keyboard_panel.h"

#include <QDebug>

#include "window/main_window.h"

namespace lirenza::window {

MidiKeyboardPanel::MidiKeyboardPanel(MainWindow& window) : QObject(&window), window_(window) {
  MidiNoteSource* source = window.Services().midiNotes.get();
  if (!source) return;
  const bool listening = source->Listen([this](const MidiNoteEvent& event) {
    QMetaObject::invokeMethod(this, [this, event] { Play(event); }, Qt::QueuedConnection);
  });
  // Said once on the terminal, not in a dialog at every start: a machine without MIDI
  // is no fault of the user's, and the rest of the program works as ever.
  if (!listening) qWarning().noquote() << QString::fromStdString(source->Problem());
}

MidiKeyboardPanel::~MidiKeyboardPanel() {
  // Nothing more may be queued for this panel once it is gone; what was queued and not
  // yet played dies with it, and whatever still sounds is ended here. The fingerboard
  // may already be gone with the window: only the sound is ended.
  if (MidiNoteSource* source = window_.Services().midiNotes.get()) source->StopListening();
  SoundPorts soundOnly = window_.Services().ports;
  soundOnly.view = nullptr;
  notes_.EndAll(soundOnly);
}

void MidiKeyboardPanel::Play(const MidiNoteEvent& event) {
  const WindowState& state = window_.State();
  notes_.Apply(event, state.tuning, state.handPosition, window_.Services().ports);
}

}  // namespace lirenza::window
