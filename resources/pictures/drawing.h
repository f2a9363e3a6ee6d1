#pragma once
// Small drawing tools shared by the painters: crisp lines on whole pixels, glyphs of
// the music font placed by their reference point, and the house colours.
#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <functional>
#include <string>

#include "music_font.h"
#include "picture_list.h"

namespace lirenza::pictures {

// Staff space on screen: one diatonic step is 3 pixels of Top, so lines are 6 apart.
inline constexpr double kStaffSpace = 6.0;

namespace colour {
inline const QColor kPaper{0xf8, 0xf2, 0xe2};
inline const QColor kInk{0x1c, 0x17, 0x12};
inline const QColor kLine{0x38, 0x31, 0x29};
inline const QColor kGuide{0xe2, 0xd8, 0xbf};
inline const QColor kPrintPaper{0xff, 0xff, 0xff};
}  // namespace colour

// The scale this thread draws pictures at: 1 for a screen at 100 %, 2 for one at 200 %.
// A picture of the list keeps its size in the window's pixels and gets scale times as
// many of its own (QImage::devicePixelRatio), so shapes and text come out sharp.
void SetPictureScale(int scale);
int PictureScale();

// A new picture filled with one colour (transparent by default), at the thread's scale.
QImage NewPicture(PictureSize size, QColor fill = Qt::transparent);

// A painter with antialiasing for shapes and glyphs; lines that must stay crisp are
// drawn with HLine and VLine instead.
void BeginSmooth(QPainter& painter);

// One-pixel lines set straight into the pixels, so a staff line is never blurred over
// two rows. Coordinates are inclusive, in the window's pixels: at scale 2 a line is two
// of the picture's own pixels wide. Dot sets one window pixel; ColourAt reads one.
void HLine(QImage& image, int x0, int x1, int y, QColor colour);
void VLine(QImage& image, int x, int y0, int y1, QColor colour);
void FillRect(QImage& image, int x0, int y0, int x1, int y1, QColor colour);
void Dot(QImage& image, int x, int y, QColor colour);
// A picture's width and height in the window's pixels, whatever its scale.
inline int WidthOf(const QImage& image) { return static_cast<int>(image.deviceIndependentSize().width()); }
inline int HeightOf(const QImage& image) { return static_cast<int>(image.deviceIndependentSize().height()); }
QColor ColourAt(const QImage& image, int x, int y);
// The same lines and boxes as shapes, for pictures drawn at any scale: on whole pixels
// at scale 1, as crisp as the ones set into the pixels.
void HLine(QPainter& painter, int x0, int x1, int y, QColor colour);
void VLine(QPainter& painter, int x, int y0, int y1, QColor colour);
void FillRect(QPainter& painter, int x0, int y0, int x1, int y1, QColor colour);

// A picture of this size painted by paint at scale 1, on a transparent or filled ground.
QImage Rasterize(PictureSize size, const std::function<void(QPainter&)>& paint, QColor fill = Qt::transparent);

// Fills a glyph whose reference point lands at (x, y), scaled by sx and sy.
void DrawGlyph(QPainter& painter, const MusicFont& font, const std::string& name, double x,
               double y, QColor colour, double sx = 1.0, double sy = 1.0,
               double staffSpace = kStaffSpace);
QRectF GlyphBox(const MusicFont& font, const std::string& name, double sx = 1.0,
                double sy = 1.0, double staffSpace = kStaffSpace);

// The row of a staff line or space inside a canvas whose Top is canvasTop: a note of
// this pitch entered by hand has its head centred on it.
int StaffRow(int pitch, int canvasTop);

}  // namespace lirenza::pictures
