#include "window/picture_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QtGlobal>
#include <utility>
#include <vector>

#include "picture_list.h"
#include "window/resource_folder.h"

namespace lirenza {
namespace {

// The size the layout gives a picture, or an empty size for a name outside the list.
QSize ExpectedSize(const QString& name) {
  static const QHash<QString, QSize> sizes = [] {
    QHash<QString, QSize> table;
    for (const auto& spec : pictures::AllPictures())
      table.insert(QString::fromStdString(spec.name), QSize(spec.size.width, spec.size.height));
    return table;
  }();
  return sizes.value(name);
}

bool HasPictures(const QString& folder) {
  return !folder.isEmpty() && QFileInfo::exists(QDir(folder).filePath(QStringLiteral("Sheet1.png")));
}

}  // namespace

PictureStore::PictureStore(QString folder, int scale) : folder_(std::move(folder)), scale_(scale > 1 ? 2 : 1) {}

int PictureStore::ScaleForScreens() {
  return qGuiApp && qGuiApp->devicePixelRatio() > 1.0 ? 2 : 1;
}

PictureStore::~PictureStore() {
  if (reader_.valid()) reader_.wait();
}

QString PictureStore::FilePath(const QString& name) const {
  if (scale_ > 1) {
    const QString scaled = QDir(folder_).filePath(name + QStringLiteral("@%1x.png").arg(scale_));
    if (QFileInfo::exists(scaled)) return scaled;
  }
  return QDir(folder_).filePath(name + QStringLiteral(".png"));
}

// A picture read is as many times larger than its place in the window as it was drawn
// for; a picture of a name outside the list is taken as it is.
QImage PictureStore::AtScale(QImage image, const QString& name) const {
  const QSize expected = ExpectedSize(name);
  if (!image.isNull() && !expected.isEmpty() && image.width() > expected.width())
    image.setDevicePixelRatio(double(image.width()) / expected.width());
  return image;
}

void PictureStore::ReadAhead(const QStringList& names) {
  if (reader_.valid()) reader_.wait();  // one reader at a time
  std::vector<std::pair<QString, std::promise<QImage>>> work;
  for (const QString& name : names) {
    if (pictures_.contains(name) || readingAhead_.contains(name)) continue;
    work.emplace_back(FilePath(name), std::promise<QImage>());
    readingAhead_.insert(name, work.back().second.get_future().share());
  }
  if (work.empty()) return;
  reader_ = std::async(std::launch::async, [work = std::move(work)]() mutable {
    for (auto& [path, picture] : work) picture.set_value(QImage(path));
  });
}

QImage PictureStore::Picture(const QString& name) {
  auto it = pictures_.find(name);
  if (it != pictures_.end()) return it.value();
  QString path = FilePath(name);
  auto ahead = readingAhead_.find(name);
  QImage image = AtScale(ahead == readingAhead_.end() ? QImage(path) : ahead.value().get(), name);
  if (ahead != readingAhead_.end()) readingAhead_.erase(ahead);
  if (image.isNull()) {
    QString problem = QFileInfo::exists(path)
                          ? QStringLiteral("The picture file %1 cannot be read.").arg(path)
                          : QStringLiteral("The picture file %1 is missing.").arg(path);
    problems_ << problem;
    qWarning("%s", qPrintable(problem));
    // Keep the control's size: a transparent stand-in of the size the layout expects.
    QSize size = ExpectedSize(name);
    image = size.isEmpty() ? QImage() : QImage(size * scale_, QImage::Format_ARGB32_Premultiplied);
    if (!image.isNull()) {
      image.setDevicePixelRatio(scale_);
      image.fill(Qt::transparent);
    }
  }
  pictures_.insert(name, image);
  return image;
}

QString PictureStore::DefaultFolder() {
#ifdef LIRENZA_BUILD_PICTURES_DIR
  const QString built = QStringLiteral(LIRENZA_BUILD_PICTURES_DIR);
#else
  const QString built;
#endif
  return FindResourceFolder({"LIRENZA_PICTURES", built, QStringLiteral("pictures"),
                             QStringLiteral(LIRENZA_INSTALLED_PICTURES_DIR)},
                            HasPictures);
}

}  // namespace lirenza
