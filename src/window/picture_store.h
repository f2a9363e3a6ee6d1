#pragma once
// The window's pictures by name ("Sheet1", "n4", "ViolinBack3"), each read from its
// PNG file once, at first use, and then kept. A missing or unreadable file never
// stops the program: the store says once which file it is and hands out an empty
// picture of the size the layout expects, so the control stays where it belongs.
#include <QHash>
#include <QImage>
#include <QString>
#include <QStringList>
#include <future>

namespace lirenza {

class PictureStore {
 public:
  // Pictures are read from folder; see DefaultFolder for the usual one. At scale 2 the
  // pictures drawn for it (NAME@2x.png) are read where there are any, and every
  // picture keeps its size in the window's pixels (QImage::devicePixelRatio).
  explicit PictureStore(QString folder, int scale = 1);

  // 2 when a screen of the desktop shows more than one pixel to the window's pixel
  // (a HiDPI screen, or QT_SCALE_FACTOR): the pictures drawn at 200 %, which a screen
  // at 150 % shows smaller; else 1.
  static int ScaleForScreens();
  int Scale() const { return scale_; }
  // Waits for the pictures still being read ahead.
  ~PictureStore();
  PictureStore(const PictureStore&) = delete;
  PictureStore& operator=(const PictureStore&) = delete;

  // Starts reading these pictures, in this order, on a thread of their own: the large
  // ones a window needs at once decode while it builds its widgets. Picture waits for
  // one still being read; a file that cannot be read is told when it is asked for.
  void ReadAhead(const QStringList& names);

  // The picture of that name, without ".png". QImage is implicitly shared, so the
  // copy handed out costs no pixels and stays valid however many pictures are
  // loaded after it; every copy of one name shares the pixels read the first time.
  QImage Picture(const QString& name);
  bool IsLoaded(const QString& name) const { return pictures_.contains(name); }

  // One sentence per file that could not be read, in the order they were asked for.
  const QStringList& Problems() const { return problems_; }
  const QString& Folder() const { return folder_; }

  // Where the pictures are: $LIRENZA_PICTURES, the build tree, then the installed
  // share folder beside the program, then the install prefix.
  static QString DefaultFolder();

 private:
  QString FilePath(const QString& name) const;
  QImage AtScale(QImage image, const QString& name) const;

  QString folder_;
  int scale_ = 1;
  QHash<QString, QImage> pictures_;
  QStringList problems_;
  QHash<QString, std::shared_future<QImage>> readingAhead_;
  std::future<void> reader_;
};

}  // namespace lirenza
