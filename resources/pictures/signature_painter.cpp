// Key signatures (30 by 76) and time signatures (12 by 61). Both canvases
// lie over the staff head, so these pictures are transparent but for their signs,
// which stand on the lines of both staves.
#include <QPainter>
#include <array>

#include "drawing.h"
#include "painters.h"

namespace lirenza::pictures {
namespace {

constexpr int kKeyTop = 98;    // top of the key signature canvas
constexpr int kTimeTop = 107;  // top of the time signature canvas

// Where each sign of a signature stands, in the order signs are added: the customary
// places in the treble and in the bass staff.
constexpr std::array<int, 7> kSharpsTreble = {77, 72, 79, 74, 69, 76, 71};  // F C G D A E B
constexpr std::array<int, 7> kSharpsBass = {53, 48, 55, 50, 45, 52, 47};
constexpr std::array<int, 7> kFlatsTreble = {71, 76, 69, 74, 67, 72, 65};  // B E A D G C F
constexpr std::array<int, 7> kFlatsBass = {47, 52, 45, 50, 43, 48, 41};

// Seven signs have to share 30 pixels: each sign keeps its column whatever the key,
// four pixels after the one before, at four fifths of the head's size.
constexpr double kSignScale = 0.8;
constexpr double kSignStep = 4.0;

void PaintKeySignature(QPainter& p, const MusicFont& font, int count, bool sharps) {
  const char* glyph = sharps ? "accidentals.sharp" : "accidentals.flat";
  QRectF box = GlyphBox(font, glyph, kSignScale, kSignScale);
  for (int i = 0; i < count; ++i) {
    double x = 1.0 + kSignStep * i - box.left();
    for (int pitch : {sharps ? kSharpsTreble[i] : kFlatsTreble[i], sharps ? kSharpsBass[i] : kFlatsBass[i]})
      DrawGlyph(p, font, glyph, x, StaffRow(pitch, kKeyTop) + 0.5, colour::kInk, kSignScale,
                kSignScale);
  }
}

// One number of a time signature, filling the two spaces between a staff's outer
// line and its middle line, squeezed sideways when it has two digits.
void TimeNumber(QPainter& p, const MusicFont& font, int number, double top, double bottom) {
  static const std::array<const char*, 10> kNames = {"zero", "one", "two",   "three", "four",
                                                     "five", "six", "seven", "eight", "nine"};
  std::string digits = std::to_string(number);
  double sy = (bottom - top) / GlyphBox(font, "zero").height();
  double width = 0;
  for (char c : digits) width += GlyphBox(font, kNames[c - '0'], sy, sy).width();
  double sx = std::min(sy, sy * 11.5 / width);
  double x = (kTimeSignatureSize.width - width * sx / sy) / 2;
  for (char c : digits) {
    QRectF box = GlyphBox(font, kNames[c - '0'], sx, sy);
    DrawGlyph(p, font, kNames[c - '0'], x - box.left(), bottom, colour::kInk, sx, sy);
    x += box.width();
  }
}

void PaintTimeSignature(QPainter& p, const MusicFont& font, int upper, int lower) {
  for (auto [outer, middle, inner] : {std::array<int, 3>{77, 71, 64}, std::array<int, 3>{57, 50, 43}}) {
    double top = StaffRow(outer, kTimeTop) + 0.5, mid = StaffRow(middle, kTimeTop) + 0.5,
           bottom = StaffRow(inner, kTimeTop) + 0.5;
    TimeNumber(p, font, upper, top, mid);
    TimeNumber(p, font, lower, mid, bottom);
  }
}

// T1 to T9: 2/2, 2/4, 3/4, 4/4, 5/4, 3/8, 6/8, 9/8, 12/8.
constexpr std::array<std::array<int, 2>, 9> kMetres = {
    {{2, 2}, {2, 4}, {3, 4}, {4, 4}, {5, 4}, {3, 8}, {6, 8}, {9, 8}, {12, 8}}};

// The number after the signature's letter, when it is within [lo, hi].
int Count(const std::string& name, int lo, int hi) {
  if (name.size() != 2 || name[1] < '0' || name[1] > '9') return -1;
  const int n = name[1] - '0';
  return n >= lo && n <= hi ? n : -1;
}

}  // namespace

bool PaintSignaturePicture(QPainter& p, const MusicFont& font, const std::string& name) {
  if (name.empty()) return false;
  if (name[0] == 'S' && Count(name, 0, 7) >= 0) return PaintKeySignature(p, font, Count(name, 0, 7), true), true;
  if (name[0] == 'F' && Count(name, 1, 7) >= 0) return PaintKeySignature(p, font, Count(name, 1, 7), false), true;
  if (name[0] == 'T' && Count(name, 1, 9) >= 0) {
    const auto& metre = kMetres[Count(name, 1, 9) - 1];
    return PaintTimeSignature(p, font, metre[0], metre[1]), true;
  }
  return false;
}

void DrawSignatures(const MusicFont& font, PictureSet& out) {
  auto draw = [&](const std::string& name, PictureSize size) {
    out[name] = Rasterize(size, [&](QPainter& p) { PaintSignaturePicture(p, font, name); });
  };
  for (int n = 0; n <= 7; ++n) draw("S" + std::to_string(n), kKeySignatureSize);
  for (int n = 1; n <= 7; ++n) draw("F" + std::to_string(n), kKeySignatureSize);
  for (int n = 1; n <= 9; ++n) draw("T" + std::to_string(n), kTimeSignatureSize);
}

}  // namespace lirenza::pictures
