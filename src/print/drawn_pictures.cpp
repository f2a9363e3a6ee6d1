#include "print/drawn_pictures.h"

#include "painters.h"

namespace lirenza {

void DrawnPagePictures::Draw(QPainter& painter, const QString& name, QPointF at) {
  painter.save();
  painter.translate(at);
  const bool drawn = pictures::PaintPicture(painter, font_, name.toStdString());
  painter.restore();
  if (!drawn) fallback_.Draw(painter, name, at);
}

std::unique_ptr<pictures::MusicFont> LoadMusicFont(QString* error) {
  const QString path = pictures::FindEmmentaler();
  if (path.isEmpty()) {
    if (error) *error = QStringLiteral("the music font of lilypond-fonts is not installed");
    return nullptr;
  }
  auto font = std::make_unique<pictures::MusicFont>();
  if (!font->Load(path)) {
    if (error) *error = font->Error();
    return nullptr;
  }
  return font;
}

}  // namespace lirenza
