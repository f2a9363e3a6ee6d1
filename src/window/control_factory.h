#pragma once
// One widget from one row of the layout table: the right Qt control for its kind, at
// its place inside its parent, with its caption, tooltip, font, colours, start value
// and start visibility. The window calls this for every row; nothing else places a
// control.
#include <QFont>
#include <QString>

#include "window/layout_table.h"

class QWidget;

namespace lirenza {

class PictureStore;

QString ToQString(std::string_view text);

// The installed face that stands in for the row's font, at the row's size in pixels:
// the places were laid out on a 72 dpi screen, where a point is a pixel.
QFont ControlFont(const layout::Control& control);

// The largest pixel size, not above the font's own, at which text fits in width.
// Our stand-in faces run wider than the ones the places were made for, so a caption
// that would be cut off gets a smaller size; its place never moves.
int FittingPixelSize(const QFont& font, const QString& text, int width);

// The control's widget, made a child of parent. parentPlace is where the parent stands
// in the window (the table's places are all window pixels). The caller keeps the
// widget; AfterStartPause and Hidden rows come out hidden.
QWidget* MakeControl(const layout::Control& control, QWidget* parent, const layout::Place& parentPlace,
                     PictureStore& pictures);

}  // namespace lirenza
