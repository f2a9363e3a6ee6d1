#pragma once
// The score library beside the staff: ten genre buttons over one list of the genre's
// scores. The library is nothing but folders of score files in the user's data folder;
// the list is a view of one folder, rebuilt whenever the folder changes, by this
// program or any other. Opening, throwing away, taking in and giving out act directly
// on the files, and no move ever replaces a file that is already there.
#include <QFileSystemWatcher>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QTimer>

class QTreeWidget;
class QTreeWidgetItem;

namespace lirenza {
class MainWindow;
namespace window {

class LibraryPanel : public QObject {
  Q_OBJECT

 public:
  explicit LibraryPanel(MainWindow& window);

  // ~/.local/share/Lirenza/ScoreBox, or wherever the XDG data folder lies.
  static QString LibraryFolder();
  // The scores installed with the program: $LIRENZA_SCORES, the source tree's in a build
  // tree, else the installed ones.
  static QString InstalledScoresFolder();
  // Makes the ten genre folders and copies in each installed score the library has never
  // received, keeping the record of what it received. Returns the number copied.
  static int FillLibrary(const QString& installed, const QString& library);

  int Genre() const { return genre_; }
  void SelectGenre(int genre);
  // The file of the selected row; empty when no row is selected.
  QString SelectedPath() const;
  // Rebuilds the list from the folder; the selected score stays selected while it is
  // there, else the first row is.
  void Rebuild(bool keepSelection = true);
  void FitTitle(QTreeWidgetItem& item, const QString& title) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QString GenreFolder() const;
  void OpenOrThrowAway();
  void LoadSelected();
  // Moves the file out of the library to the desktop folder, or to the trash where the
  // desktop has no folder.
  void GiveOut(const QString& path);
  void TakeIn(const QString& path);
  // Moves a file; refused and told when the target name is taken. Whether it moved.
  bool MoveRefusingClash(const QString& from, const QString& to);
  void DragRow();
  void Watch();

  MainWindow& window_;
  QTreeWidget* list_;
  int genre_ = 0;
  bool deleteHeld_ = false;
  QPoint pressAt_;
  bool pressed_ = false;
  QFileSystemWatcher watcher_;
  QTimer rebuildSoon_;  // a burst of changes to the folder makes one rebuild
};

}  // namespace window
}  // namespace lirenza
