// The staff: its head with brace and clefs, the two long sheets the view scrolls
// over, the repeat bar at its end, the tempo mark, and the printed page.
#include <QFont>
#include <QPainter>
#include <array>

#include "drawing.h"
#include "painters.h"
#include "score/print_layout.h"

namespace lirenza::pictures {
namespace {

// The lines of the grand staff, top to bottom: F5 D5 B4 G4 E4, then A3 F3 D3 B2 G2.
constexpr std::array<int, 5> kTreblePitches = {77, 74, 71, 67, 64};
constexpr std::array<int, 5> kBassPitches = {57, 53, 50, 47, 43};
constexpr int kMiddleC = 60;
constexpr int kStaffTop = 60;  // top of the staff head, the staff and its narrow end alike

// A note at Left L stands in view bar (L - 120) / 144; the sixteen pixels behind each
// bar's last column hold the bar line, in the middle of the gap.
constexpr int kBarWidth = 144;
constexpr int kBarLineOffset = 139;

// On a picture's pixels or on a painter at any scale alike.
template <typename Surface>
void StaffLines(Surface& surface, int top, int x0, int x1, bool bass = true) {
  for (int pitch : kTreblePitches) HLine(surface, x0, x1, StaffRow(pitch, top), colour::kLine);
  if (bass)
    for (int pitch : kBassPitches) HLine(surface, x0, x1, StaffRow(pitch, top), colour::kLine);
}

template <typename Surface>
void BarLine(Surface& surface, int x, int top, QColor colour, bool bass = true) {
  VLine(surface, x, StaffRow(kTreblePitches.front(), top),
        StaffRow((bass ? kBassPitches : kTreblePitches).back(), top), colour);
}

// A curly brace joining the two staves, as a filled outline that swells in the
// middle of each arm and comes to a point at the centre.
void Brace(QPainter& p, double x, double top, double bottom) {
  double mid = (top + bottom) / 2, h = bottom - top, w = 5.0;
  QPainterPath path;
  path.moveTo(x + w, top);
  path.cubicTo(x + w * 0.05, top + h * 0.08, x + w * 0.95, mid - h * 0.16, x, mid);
  path.cubicTo(x + w * 0.95, mid + h * 0.16, x + w * 0.05, bottom - h * 0.08, x + w, bottom);
  path.cubicTo(x + w * 0.55, bottom - h * 0.08, x + w * 1.75, mid + h * 0.14, x, mid);
  path.cubicTo(x + w * 1.75, mid - h * 0.14, x + w * 0.55, top + h * 0.08, x + w, top);
  p.fillPath(path, colour::kInk);
}

void Clefs(QPainter& p, const MusicFont& font, double x, int top) {
  DrawGlyph(p, font, "clefs.G", x, StaffRow(67, top) + 0.5, colour::kInk);
  DrawGlyph(p, font, "clefs.F", x, StaffRow(53, top) + 0.5, colour::kInk);
}

QImage StaffHead(const MusicFont& font) {
  QImage image = NewPicture(kStaffHeadSize, colour::kPaper);
  const int systemLine = 7;
  StaffLines(image, kStaffTop, systemLine, WidthOf(image) - 1);
  FillRect(image, systemLine, StaffRow(77, kStaffTop), systemLine + 1, StaffRow(43, kStaffTop),
           colour::kInk);
  QPainter p(&image);
  BeginSmooth(p);
  Brace(p, 1.0, StaffRow(77, kStaffTop) - 0.5, StaffRow(43, kStaffTop) + 1.5);
  Clefs(p, font, 10.0, kStaffTop);
  return image;
}

// Faint guides at the beats of a bar, where the kestra line and the crotchet step put
// the notes: four crotchets for duple metres, three groups for triple ones.
void BeatGuides(QImage& image, int barStart, int beats) {
  int step = beats == 4 ? 32 : 48;
  for (int b = 0; b < beats; ++b) {
    int x = barStart + 16 + b * step;
    for (int y = StaffRow(77, kStaffTop) + 2; y < StaffRow(43, kStaffTop); y += 3)
      if (ColourAt(image, x, y) == colour::kPaper) Dot(image, x, y, colour::kGuide);
  }
}

QImage Sheet(int beats) {
  QImage image = NewPicture(kSheetSize, colour::kPaper);
  for (int bar = 0; bar * kBarWidth < WidthOf(image); ++bar) {
    int start = bar * kBarWidth;
    // Middle C's ledger, dotted, so a note between the staves is easy to place.
    for (int x = start + 2; x < start + kBarLineOffset - 2 && x < WidthOf(image); x += 3)
      Dot(image, x, StaffRow(kMiddleC, kStaffTop), colour::kGuide);
  }
  StaffLines(image, kStaffTop, 0, WidthOf(image) - 1);
  QPainter p(&image);
  QFont numbers(QStringLiteral("IPAexGothic"));
  numbers.setPixelSize(9);
  p.setFont(numbers);
  p.setPen(QColor(0x9a, 0x8a, 0x6c));
  for (int bar = 0; bar * kBarWidth < WidthOf(image); ++bar) {
    int start = bar * kBarWidth;
    p.drawText(QPointF(start + 4, StaffRow(77, kStaffTop) - 14), QString::number(bar + 1));
  }
  p.end();
  for (int bar = 0; bar * kBarWidth < WidthOf(image); ++bar) {
    int start = bar * kBarWidth;
    if (start + kBarLineOffset < WidthOf(image))
      BarLine(image, start + kBarLineOffset, kStaffTop, colour::kInk);
    BeatGuides(image, start, beats);
  }
  return image;
}

QImage RepeatBar() {
  QImage image = NewPicture(kRepeatBarSize, colour::kPaper);
  StaffLines(image, kStaffTop, 0, 6);
  BarLine(image, 4, kStaffTop, colour::kInk);
  int top = StaffRow(77, kStaffTop), bottom = StaffRow(43, kStaffTop);
  FillRect(image, 6, top, 8, bottom, colour::kInk);
  QPainter p(&image);
  BeginSmooth(p);
  p.setBrush(colour::kInk);
  // Repeat dots in the two middle spaces of each staff.
  for (int pitch : {72, 69, 52, 48}) p.drawEllipse(QPointF(1.5, StaffRow(pitch, kStaffTop) + 0.5), 1.2, 1.2);
  return image;
}

void PaintTempoMark(QPainter& p, const MusicFont& font) {
  const double ss = 4.2;
  DrawGlyph(p, font, "noteheads.s2", 0.6, 11.6, colour::kInk, 1.0, 1.0, ss);
  VLine(p, 5, 1, 11, colour::kInk);
  HLine(p, 9, 14, 6, colour::kInk);
  HLine(p, 9, 14, 9, colour::kInk);
}

// The printed page: a grand staff every 108 pixels where the print places the
// notes, five bars to a line, as many lines as the print puts on a sheet, each whole.
void PaintPrintSheet(QPainter& p, const MusicFont& font) {
  const QColor ink(0, 0, 0);
  p.fillRect(QRect(0, 0, kPrintSheetSize.width, kPrintSheetSize.height), colour::kPrintPaper);
  // A note of Top T prints at y = T + 108k - 10 with its head 18 lower, at
  // EntryTopOfPitch(p) + 8 + 108k: the rows of a canvas whose Top is 10 - 108k.
  for (int line = 0; line < lirenza::kPrintLinesPerSheet; ++line) {
    const int top = lirenza::kPrintNoteRise - lirenza::kPrintLineStep * line;
    StaffLines(p, top, 12, 790);
    VLine(p, 12, StaffRow(77, top), StaffRow(43, top), ink);
    for (int bar = 0; bar < 5; ++bar) BarLine(p, 75 + kBarLineOffset + bar * kBarWidth, top, ink);
    Brace(p, 5.0, StaffRow(77, top) - 0.5, StaffRow(43, top) + 1.5);
    DrawGlyph(p, font, "clefs.G", 16.0, StaffRow(67, top) + 0.5, ink);
    DrawGlyph(p, font, "clefs.F", 16.0, StaffRow(53, top) + 0.5, ink);
  }
}

}  // namespace

void DrawStaff(const MusicFont& font, PictureSet& out) {
  out["Sheet"] = StaffHead(font);
  out["Sheet1"] = Sheet(4);
  out["Sheet2"] = Sheet(3);
  out["Repeat"] = RepeatBar();
  out["Te"] = Rasterize(kTempoMarkSize, [&](QPainter& p) { PaintTempoMark(p, font); });
  out["PSheet"] = Rasterize(kPrintSheetSize, [&](QPainter& p) { PaintPrintSheet(p, font); });
}

bool PaintStaffPicture(QPainter& p, const MusicFont& font, const std::string& name) {
  if (name == "Te") return PaintTempoMark(p, font), true;
  if (name == "PSheet") return PaintPrintSheet(p, font), true;
  return false;
}

}  // namespace lirenza::pictures
