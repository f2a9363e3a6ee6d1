#pragma once
// The settings that outlive a run, on the window: read once when the program starts
// and applied to the window (its place, the keyboard layout, the two sliders, the back
// picture, the page setup), written when the window closes.
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
