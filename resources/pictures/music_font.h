#pragma once
// The engraving font the staff symbols come from. Glyphs are looked up by their
// PostScript names ("clefs.G", "noteheads.s2"), which the font keeps in its CFF
// charset; Qt exposes no glyph names, so the charset is read here.
#include <QPainterPath>
#include <QRawFont>
#include <QString>
#include <map>
#include <string>

class QByteArray;

namespace lirenza::pictures {

// Glyph names of a CFF-flavoured OpenType font, by glyph index. Empty when the data
// is no such font. Kept apart from MusicFont so it can be tested on bytes alone.
std::map<std::string, int> ReadCffGlyphNames(const QByteArray& font);

class MusicFont {
 public:
  // Loads the font; false (and the reason in Error()) when it cannot be used.
  bool Load(const QString& path);
  const QString& Error() const { return error_; }

  // Outline of a glyph for a staff whose space between lines is staffSpace pixels,
  // origin at the glyph's reference point (the staff position it stands for), y down.
  QPainterPath Glyph(const std::string& name, double staffSpace) const;
  bool Has(const std::string& name) const { return names_.count(name) != 0; }

 private:
  QRawFont font_;
  std::map<std::string, int> names_;
  double unitsPerStaffSpace_ = 250.0;
  QString error_;
};

// The font file of the lilypond-fonts package, whatever its version directory.
QString FindEmmentaler();

}  // namespace lirenza::pictures
