// Notes and rests, one picture per duration digit, 15 by 35 pixels with the head
// centred on row 18, so a note whose Top is a staff line's Top sits on that line.
#include <QPainter>
#include <map>

#include "drawing.h"
#include "painters.h"

namespace lirenza::pictures {
namespace {

// The head's centre. Columns 0 to 4 are left to the accidental drawn over the note.
constexpr double kHeadX = 8.0;
constexpr double kHeadY = 18.5;
constexpr int kStemUpColumn = 11;   // right edge of the head
constexpr int kStemDownColumn = 4;  // left edge of the head
// Flags are narrowed a little so an up-stem flag stays inside the 15 pixels.
constexpr double kFlagWidth = 0.75;

struct NoteValue {
  int base;      // 0 whole, 1 half, 2 crotchet, 3 quaver ... 6 hemidemisemiquaver
  int dots;      // 0, 1 or 2
  bool triplet;  // played in two thirds of its written length
};

// The sixteen duration digits: 1920, 1440, 960, 720, 480, 420, 360, 320, 240, 180,
// 160, 120, 80, 60, 40 and 30 ticks of 480 to the crotchet.
constexpr NoteValue kValues[16] = {
    {0, 0, false}, {1, 1, false}, {1, 0, false}, {2, 1, false}, {2, 0, false}, {3, 2, false},
    {3, 1, false}, {2, 0, true},  {3, 0, false}, {4, 1, false}, {3, 0, true},  {4, 0, false},
    {4, 0, true},  {5, 0, false}, {5, 0, true},  {6, 0, false}};

void DrawDots(QPainter& p, const MusicFont& font, int dots, double x, double y) {
  if (dots == 1) {
    DrawGlyph(p, font, "dots.dot", x, y, colour::kInk, 0.9, 0.9);
  } else if (dots == 2) {
    // Two small dots side by side: the second one is what tells 420 ticks from 360.
    DrawGlyph(p, font, "dots.dot", x - 0.4, y, colour::kInk, 0.62, 0.62);
    DrawGlyph(p, font, "dots.dot", x + 1.5, y, colour::kInk, 0.62, 0.62);
  }
}

void DrawTripletMark(QPainter& p, const MusicFont& font, double x, double top) {
  // A small engraved 3, six pixels high.
  const double s = 6.0 / 11.03;
  DrawGlyph(p, font, "three", x, top + 6.0, colour::kInk, s, s);
}

void PaintNote(QPainter& p, const MusicFont& font, const NoteValue& v, bool stemUp) {
  const char* head = v.base == 0 ? "noteheads.s0" : v.base == 1 ? "noteheads.s1" : "noteheads.s2";
  QRectF box = GlyphBox(font, head);
  DrawGlyph(p, font, head, kHeadX - box.width() / 2 - box.left(), kHeadY, colour::kInk);
  if (v.base >= 1) {
    // Stems are whole-pixel columns: from the head's middle to the picture's edge.
    if (stemUp)
      VLine(p, kStemUpColumn, 0, 18, colour::kInk);
    else
      VLine(p, kStemDownColumn, 18, 34, colour::kInk);
  }
  if (v.base >= 3) {
    std::string flag = std::string(stemUp ? "flags.u" : "flags.d") + std::to_string(v.base);
    QRectF f = GlyphBox(font, flag);
    // An up flag ends above the head's dot; a down flag above the digit's baseline.
    double room = stemUp ? 12.5 : 11.5;
    double sy = std::min(1.0, room / f.height());
    if (stemUp)
      DrawGlyph(p, font, flag, kStemUpColumn + 0.5, 0.0, colour::kInk, kFlagWidth, sy);
    else
      DrawGlyph(p, font, flag, kStemDownColumn + 0.5, 35.0, colour::kInk, kFlagWidth, sy);
  }
  DrawDots(p, font, v.dots, 12.4, kHeadY);
  if (v.triplet) DrawTripletMark(p, font, stemUp ? 3.5 : 6.0, stemUp ? 1.0 : 7.5);
}

void PaintRest(QPainter& p, const MusicFont& font, const NoteValue& v) {
  std::string rest = "rests." + std::to_string(v.base);
  QRectF box = GlyphBox(font, rest);
  // A whole rest hangs from the line above the centre, a half rest sits on the line
  // below it; the others stand on the centre, the longest tails kept inside.
  double y = v.base == 0 ? kHeadY - 3.0 : v.base == 1 ? kHeadY + 3.0 : kHeadY;
  if (v.base == 6) y -= 1.0;
  double x = 7.0 - box.width() / 2 - box.left();
  DrawGlyph(p, font, rest, x, y, colour::kInk);
  DrawDots(p, font, v.dots, x + box.right() + 1.3, kHeadY - 3.0);
  if (v.triplet) DrawTripletMark(p, font, 4.5, 0.5);
}

// The accidental drawn over a note at (0, 6): its reference point on row 12 of the
// sign picture is the note's row 18. A little smaller than the head's size, so it
// fits the five columns left of the head.
void PaintSign(QPainter& p, const MusicFont& font, const std::string& glyph) {
  const double s = 0.72;
  QRectF box = GlyphBox(font, glyph, s, s);
  DrawGlyph(p, font, glyph, 2.5 - box.width() / 2 - box.left(), 12.5, colour::kInk, s, s);
}

const std::map<std::string, std::string> kSignGlyphs = {
    {"Sh", "accidentals.sharp"}, {"Fl", "accidentals.flat"}, {"Nt", "accidentals.natural"}};

// Drawn over a note while it sounds: a warm glow round the head that leaves the note
// itself readable.
QImage SoundingMark() {
  QImage image = NewPicture(kNoteSize);
  QPainter p(&image);
  BeginSmooth(p);
  QRadialGradient glow(QPointF(kHeadX, kHeadY), 7.5);
  glow.setColorAt(0.0, QColor(255, 60, 120, 150));
  glow.setColorAt(0.6, QColor(255, 80, 140, 90));
  glow.setColorAt(1.0, QColor(255, 80, 140, 0));
  p.setBrush(glow);
  p.drawEllipse(QPointF(kHeadX, kHeadY), 7.5, 7.5);
  p.setBrush(Qt::NoBrush);
  p.setPen(QPen(QColor(230, 0, 100, 220), 1.2));
  p.drawEllipse(QPointF(kHeadX, kHeadY), 6.2, 5.2);
  return image;
}

}  // namespace

bool PaintNotePicture(QPainter& p, const MusicFont& font, const std::string& name) {
  if (auto sign = kSignGlyphs.find(name); sign != kSignGlyphs.end()) return PaintSign(p, font, sign->second), true;
  if (name.size() != 2) return false;
  const auto digit = kDigits.find(name[1]);
  if (digit == std::string_view::npos) return false;
  const NoteValue& value = kValues[digit];
  switch (name[0]) {
    case 'n': return PaintNote(p, font, value, true), true;
    case 'u': return PaintNote(p, font, value, false), true;
    case 'r': return PaintRest(p, font, value), true;
    default: return false;
  }
}

void DrawNotes(const MusicFont& font, PictureSet& out) {
  for (char family : {'n', 'u', 'r'})
    for (char digit : kDigits) {
      const std::string name{family, digit};
      out[name] = Rasterize(kNoteSize, [&](QPainter& p) { PaintNotePicture(p, font, name); });
    }
  out["nOn"] = SoundingMark();
  for (const auto& [name, glyph] : kSignGlyphs)
    out[name] = Rasterize(kSignSize, [&](QPainter& p) { PaintSign(p, font, glyph); });
}

}  // namespace lirenza::pictures
