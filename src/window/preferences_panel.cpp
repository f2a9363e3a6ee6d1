#include "window/preferences_panel.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QSlider>
#include <QStandardPaths>

#include "files/file_io.h"
#include "window/main_window.h"

namespace lirenza::window {
namespace {

using layout::ControlId;

// A saved place is taken only when this much of the window would be on some screen,
// enough to take hold of it and drag it: screens change between runs.
constexpr int kGripOnScreen = 100;

bool ReachableOnAScreen(const QRect& frame) {
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect shown = frame.intersected(screen->availableGeometry());
    if (shown.width() >= kGripOnScreen && shown.height() >= kGripOnScreen) return true;
  }
  return false;
}

QSlider* Slider(const MainWindow& window, ControlId id) { return qobject_cast<QSlider*>(window.Control(id)); }

}  // namespace

PreferencesPanel::PreferencesPanel(MainWindow& window, QString path)
    : QObject(&window), window_(window), path_(std::move(path)) {
  // No file is the first run; a damaged one still gives what it can.
  if (std::optional<std::string> text = ReadWholeFile(path_.toStdString(), nullptr)) Apply(ReadPreferences(*text));
  connect(&window, &MainWindow::Closing, this, [this] { Save(); });
}

QString PreferencesPanel::DefaultPath() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         QStringLiteral("/Lirenza/Lirenza.json");
}

// The sliders are set through their own change, so the volume and the tempo they stand
// for follow as they do when the user moves them.
void PreferencesPanel::Apply(const Preferences& p) {
  kept_ = p;
  if (p.windowPlace) {
    const QPoint place(p.windowPlace->left, p.windowPlace->top);
    if (ReachableOnAScreen(QRect(place, window_.size()))) window_.move(place);
  }
  if (QSlider* volume = Slider(window_, ControlId::VolumeSlider)) volume->setValue(p.volumeSlider);
  if (QSlider* tempo = Slider(window_, ControlId::TempoSlider)) tempo->setValue(p.tempoSlider);
  window_.SetKeyboardLayout(p.keyboardLayout);
  window_.SetBackPicture(p.backPicture);
  window_.SetPrinterSetup(p.printerSetup);
}

Preferences PreferencesPanel::Current() const {
  Preferences p = kept_;
  p.windowPlace = WindowPlace{window_.x(), window_.y()};
  if (const QSlider* volume = Slider(window_, ControlId::VolumeSlider)) p.volumeSlider = volume->value();
  if (const QSlider* tempo = Slider(window_, ControlId::TempoSlider)) p.tempoSlider = tempo->value();
  p.keyboardLayout = window_.KeyboardLayout();
  p.printerSetup = window_.PrinterSetup();
  p.backPicture = window_.BackPicture();
  return p;
}

bool PreferencesPanel::Save() const {
  if (!QDir().mkpath(QFileInfo(path_).absolutePath())) return false;
  std::string error;
  if (WriteFileAtomically(path_.toStdString(), PreferencesText(Current()), &error)) return true;
  qWarning("The settings were not saved: %s", error.c_str());
  return false;
}

}  // namespace lirenza::window
