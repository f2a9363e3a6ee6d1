#pragma once
// The page's pictures drawn anew as shapes at the page's own resolution: notes, signs,
// signatures, the tempo mark and the sheet come out as sharp on a 1200-dpi printer as
// the music font itself. Anything the painters do not draw comes from the fallback.
#include <memory>

#include "music_font.h"
#include "print/score_sheets.h"

namespace lirenza {

class DrawnPagePictures : public PagePictures {
 public:
  DrawnPagePictures(const pictures::MusicFont& font, PagePictures& fallback) : font_(font), fallback_(fallback) {}
  void Draw(QPainter& painter, const QString& name, QPointF at) override;

 private:
  const pictures::MusicFont& font_;
  PagePictures& fallback_;
};

// The music font the pictures are drawn with, from the installed lilypond-fonts; null,
// with the reason in *error, when it cannot be loaded (the pages then use the window's
// picture files).
std::unique_ptr<pictures::MusicFont> LoadMusicFont(QString* error);

}  // namespace lirenza
