#pragma once
// A score composed on paper: the music sheet, the title and remarks, the tempo, the
// signatures and every note at its place, sheet after sheet. Drawn in the sheet's own
// coordinates (855 by 1210) on any painter, so a printer, a PDF and a picture on
// screen get the same page, each at its own resolution.
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPointF>
#include <QString>
#include <vector>

#include "score/print_layout.h"

namespace lirenza {

struct PrintedScore {
  QString title, comment;
  QString tempoWord, tempoNumber;
  QString keyPicture, timePicture;
  std::vector<NoteOnPaper> notes;
  int sheets = 1;
  int leftOut = 0;  // notes placed past the last sheet
};

// The score as it prints, with the tempo of this slider value.
PrintedScore PrintedScoreOf(const Staff& staff, int tempoSlider);

// How the pictures get onto the page: from the window's picture files, or drawn anew
// at the painter's own resolution.
class PagePictures {
 public:
  virtual ~PagePictures() = default;
  // Draws the picture of that name with its top left corner at `at`.
  virtual void Draw(QPainter& painter, const QString& name, QPointF at) = 0;
};

// Paints sheet `sheet` (from 0) at the painter's origin, 855 by 1210 in its units.
void PaintSheet(QPainter& painter, const PrintedScore& score, int sheet, PagePictures& pictures);

// Every sheet on its own page of the device, scaled to fit the page's printable area
// with its proportions kept and centred across it. False when the device cannot be
// painted on (a printer that failed to start, a file that cannot be written).
bool PrintSheets(QPagedPaintDevice& device, const PrintedScore& score, PagePictures& pictures);

}  // namespace lirenza
