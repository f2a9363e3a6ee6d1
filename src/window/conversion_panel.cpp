#include "window/conversion_panel.h"

#include <QMouseEvent>

#include "window/main_window.h"
#include "window/picture_canvas.h"
#include "window/process_launcher.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

struct ButtonPictures {
  const char* atRest;
  const char* pressed;
};

constexpr ButtonPictures kPictures[ConversionPanel::kButtons] = {
    {"ChangeMidi0", "ChangeMidi1"}, {"PlayMidi0", "PlayMidi1"}, {"MidiToAiff0", "MidiToAiff1"}, {"PlayAiff0", "PlayAiff1"}};

// The script each button after the first starts; the first writes the MIDI file itself.
constexpr const char* kScripts[ConversionPanel::kButtons] = {nullptr, "PlayMidi.command", "MidiToAiff.command",
                                                             "PlayAiff.command"};

}  // namespace

ConversionPanel::ConversionPanel(MainWindow& window) : QObject(&window), window_(window) {
  for (int i = 0; i < kButtons; ++i) {
    buttons_[i] = qobject_cast<PictureCanvas*>(window.Control(ControlId::ConversionButton, i));
    if (buttons_[i]) buttons_[i]->installEventFilter(this);
  }
}

int ConversionPanel::ButtonIndex(QObject* watched) const {
  for (int i = 0; i < kButtons; ++i)
    if (buttons_[i] && buttons_[i] == watched) return i;
  return -1;
}

bool ConversionPanel::eventFilter(QObject* watched, QEvent* event) {
  const int index = ButtonIndex(watched);
  if (index < 0) return QObject::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:  // a quick second press is a press all the same
      if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
      Press(index);
      return true;
    case QEvent::MouseButtonRelease:
      // Whatever the press did or refused, the button is back at rest.
      if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
      ShowPicture(index, false);
      return true;
    default:
      return false;
  }
}

// Playback does not hold these back: a script may start, or the playing score be
// written, while it plays. Only a score still being read is no score to hand over.
void ConversionPanel::Press(int index) {
  if (window_.State().modes.loading) return;
  if (index == 0) {
    SaveMidi();
    return;
  }
  ShowPicture(index, true);
  StartScript(index);
}

void ConversionPanel::ShowPicture(int index, bool pressed) {
  if (!buttons_[index]) return;
  const ButtonPictures& pictures = kPictures[index];
  buttons_[index]->SetPicture(window_.Pictures().Picture(QString::fromLatin1(pressed ? pictures.pressed : pictures.atRest)));
  // Shown before the press goes on: a dialog may open over it.
  buttons_[index]->repaint();
}

// An unchanged score has nothing new to write. The MIDI file does not count as saving
// the score: it stays changed, and the button stays ready for the next change.
void ConversionPanel::SaveMidi() {
  if (!window_.State().staff.hasChanges) return;
  ShowPicture(0, true);
  window_.RunMenuCommand(MenuCommand::SaveMidi);
  // The save dialog took the button's release: the button is back at rest once it is gone.
  ShowPicture(0, false);
}

// A failed start is left unsaid, as the script's own failures are told in its window;
// what the user can put right, a missing script or terminal, is told in one sentence.
void ConversionPanel::StartScript(int index) {
  const QString name = QString::fromLatin1(kScripts[index]);
  switch (StartScriptInTerminal(*window_.Services().launcher, name)) {
    case TerminalStart::Started:
    case TerminalStart::NotStarted:
      return;
    case TerminalStart::NoScript:
      window_.Services().dialogs->Tell(
          &window_, QStringLiteral("スクリプト「%1」がプログラムのフォルダ（%2）に見つかりません。").arg(name, ScriptsFolder()));
      break;
    case TerminalStart::NoTerminal:
      window_.Services().dialogs->Tell(
          &window_, QStringLiteral("「%1」を動かす端末が見つからないため開けません（Debian では sudo apt install xterm で入ります）。")
                        .arg(name));
      break;
  }
  ShowPicture(index, false);
}

}  // namespace lirenza::window
