#pragma once
// The painters of the picture families. Each adds its pictures, by name, to the set.
#include <QImage>
#include <QString>
#include <array>
#include <map>
#include <string>

#include "music_font.h"

class QPainter;

namespace lirenza::pictures {

using PictureSet = std::map<std::string, QImage>;

void DrawNotes(const MusicFont& font, PictureSet& out);       // n, u, r, nOn, Sh, Fl, Nt
void DrawStaff(const MusicFont& font, PictureSet& out);       // Sheet*, PSheet, Repeat, Te
void DrawSignatures(const MusicFont& font, PictureSet& out);  // S0-S7, F1-F7, T1-T9
void DrawViolin(PictureSet& out);                             // Violin, Gen, GenS, Yubi, Bow
void DrawButtons(const MusicFont& font, PictureSet& out);     // buttons, panels, speaker
void DrawBack(int index, PictureSet& out);                    // ViolinBack<index>

// The pictures that print, painted as shapes in their own box at whatever scale the
// painter has: a printer or a PDF gets them at its own resolution. PaintPicture takes
// the notes, rests and signs, the signatures, the tempo mark and the print sheet, and
// is false for any other name; the families' own painters answer for theirs.
bool PaintPicture(QPainter& painter, const MusicFont& font, const std::string& name);
bool PaintNotePicture(QPainter& painter, const MusicFont& font, const std::string& name);
bool PaintSignaturePicture(QPainter& painter, const MusicFont& font, const std::string& name);
bool PaintStaffPicture(QPainter& painter, const MusicFont& font, const std::string& name);

// The program's icon, painted on a 256 x 256 canvas (scale the painter for other sizes).
void PaintIcon(QPainter& painter, const MusicFont& font);
// The sizes the desktop's icon theme looks for, each drawn from the same paths.
inline constexpr std::array<int, 9> kIconSizes = {16, 22, 24, 32, 48, 64, 128, 256, 512};
// Writes the icon as an icon theme's folders under outDir: scalable/apps/<name>.svg
// and <n>x<n>/apps/<name>.png. Returns an error message, empty on success.
QString DrawIcons(const MusicFont& font, const QString& outDir, const QString& name);

}  // namespace lirenza::pictures
