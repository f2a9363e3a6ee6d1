#include "print/score_sheets.h"

#include <QFont>
#include <algorithm>

#include "violin/tempo_table.h"

namespace lirenza {
namespace {

struct TextPlace {
  int x, y;  // the baseline's start
};
constexpr TextPlace kTitle{135, 27};
constexpr TextPlace kComment{560, 35};
constexpr TextPlace kTempoWord{15, 62};
constexpr TextPlace kTempoNumber{32, 81};
constexpr QPointF kTempoMark{15, 67};
constexpr QPointF kTimeSignature{40, 97};
// Beside the time signature as on screen (15 to its right): at 10 its first sign would
// touch the figures.
constexpr QPointF kKeySignature{55, 88};
constexpr QPointF kSignOverNote{0, 8};
constexpr int kTextPixels = 14;

QString FromUtf8(const std::string& text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

PrintedScore PrintedScoreOf(const Staff& staff, int tempoSlider) {
  PrintedScore score;
  score.title = FromUtf8(staff.title);
  score.comment = FromUtf8(staff.comment);
  const TempoRow tempo = TempoForSlider(tempoSlider);
  score.tempoWord = FromUtf8(tempo.term);
  score.tempoNumber = QString::number(tempo.number);
  score.keyPicture = FromUtf8(staff.keySignaturePicture);
  score.timePicture = FromUtf8(staff.timeSignaturePicture);
  score.notes = NotesOnPaper(staff, &score.leftOut);
  score.sheets = SheetCount(score.notes);
  return score;
}

void PaintSheet(QPainter& painter, const PrintedScore& score, int sheet, PagePictures& pictures) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.setClipRect(QRect(0, 0, kPrintSheetWidth, kPrintSheetHeight));
  pictures.Draw(painter, QStringLiteral("PSheet"), {0, 0});

  QFont font(QStringLiteral("IPAexGothic"));
  font.setPixelSize(kTextPixels);
  font.setItalic(true);
  painter.setFont(font);
  painter.setPen(Qt::black);
  // Later sheets name the score and their place in it, and open with the signatures
  // again; the tempo is said once, on the first.
  const QString title = sheet == 0 ? score.title : QStringLiteral("%1 (%2/%3)").arg(score.title).arg(sheet + 1).arg(score.sheets);
  painter.drawText(kTitle.x, kTitle.y, title);
  if (sheet == 0) {
    painter.drawText(kComment.x, kComment.y, score.comment);
    painter.drawText(kTempoWord.x, kTempoWord.y, score.tempoWord);
    pictures.Draw(painter, QStringLiteral("Te"), kTempoMark);
    painter.drawText(kTempoNumber.x, kTempoNumber.y, score.tempoNumber);
  }
  pictures.Draw(painter, score.timePicture, kTimeSignature);
  pictures.Draw(painter, score.keyPicture, kKeySignature);

  // No velocity digit on paper: it is the screen's aid for editing.
  for (const NoteOnPaper& note : score.notes) {
    if (note.place.sheet != sheet) continue;
    const QPointF at(note.place.x, note.place.y);
    if (!note.picture.empty()) pictures.Draw(painter, FromUtf8(note.picture), at);
    if (!note.signPicture.empty()) pictures.Draw(painter, FromUtf8(note.signPicture), at + kSignOverNote);
  }
  painter.restore();
}

bool PrintSheets(QPagedPaintDevice& device, const PrintedScore& score, PagePictures& pictures) {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  // The device's size is its printable area, in its own pixels.
  const QSizeF page(device.width(), device.height());
  const double scale = std::min(page.width() / kPrintSheetWidth, page.height() / kPrintSheetHeight);
  // The painter's origin is already the printable area's corner.
  const QPointF corner((page.width() - kPrintSheetWidth * scale) / 2, (page.height() - kPrintSheetHeight * scale) / 2);
  for (int sheet = 0; sheet < score.sheets; ++sheet) {
    if (sheet > 0 && !device.newPage()) return false;
    painter.save();
    painter.translate(corner);
    painter.scale(scale, scale);
    PaintSheet(painter, score, sheet, pictures);
    painter.restore();
  }
  return painter.end();
}

}  // namespace lirenza
