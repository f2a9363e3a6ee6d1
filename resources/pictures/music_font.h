#pragma once
// The engraving font the staff symbols come from. Glyphs are looked up by their
// PostScript names ("clefs.G", "noteheads.s2"), which the font keeps in its CFF
// charset; Qt exposes no glyph names, so the charset is read here.
#include <QPainterPath>
#include <QRawFont>
#include <QString>
#include <QStringList>
#include <map>
#include <memory>
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

// The music font's file name in a folder of the program's own fonts.
inline constexpr const char* kMusicFontFile = "emmentaler-20.otf";

// The folders that may hold the music font, in the order they are asked: the one
// LIRENZA_FONTS_DIR names (alone, when set: a test or a user means exactly that one),
// else the build tree's, the one beside the installed program, the install prefix's,
// and last the lilypond-fonts package's own, whatever its version directory.
QStringList MusicFontFolders();
// The first of the folders that holds the font file; empty when none does.
QString FirstMusicFontIn(const QStringList& folders);
// The font file the program and the picture generator use; empty when there is none.
QString FindEmmentaler();

// Finds and loads the music font afresh; null, with the reason in *error, when it
// cannot be had.
std::unique_ptr<MusicFont> LoadRunTimeMusicFont(QString* error);
// The music font of the running program, loaded on first use, once, from whichever
// thread asks first. Null when it cannot be had (the reason in *error, the same on
// every call): the caller falls back, never crashes.
const MusicFont* RunTimeMusicFont(QString* error = nullptr);

}  // namespace lirenza::pictures
