#pragma once
// The settings that outlive a run, on the window: read once when the program starts
// and applied to the window (its place, the keyboard layout, the two sliders, the back
// picture), written when the window closes. The printer setup is kept as read for
// whoever uses it, and written back as it is.
#include <QObject>
#include <QString>

#include "files/preferences.h"

namespace lirenza {
class MainWindow;
namespace window {

class PreferencesPanel : public QObject {
  Q_OBJECT

 public:
  // Reads the settings at path now, applies them, and writes them there when the window
  // closes. A missing or unreadable file leaves the window as it started.
  PreferencesPanel(MainWindow& window, QString path);

  // ~/.config/Lirenza/Lirenza.json, or wherever the XDG configuration folder lies.
  static QString DefaultPath();

  const std::string& PrinterSetup() const { return kept_.printerSetup; }
  void SetPrinterSetup(std::string setup) { kept_.printerSetup = std::move(setup); }

  // The window's settings as they stand now.
  Preferences Current() const;
  // Writes Current() to the file, making its folder when needed. False when it could
  // not be written; the program goes on either way.
  bool Save() const;

 private:
  void Apply(const Preferences& preferences);

  MainWindow& window_;
  QString path_;
  Preferences kept_;
};

}  // namespace window
}  // namespace lirenza
