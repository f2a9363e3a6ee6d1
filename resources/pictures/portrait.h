#pragma once
// Portraits of the twelve violinists as silhouettes in profile, told apart by what a
// silhouette shows: hair, beard, collar, nose and chin.
#include <QPainter>

namespace lirenza::pictures {

// Draws portrait index (0 to 11) facing right, centred at the painter's origin, in a
// box of about 120 by 140 pixels.
void DrawPortrait(QPainter& p, int index, QColor ink);

}  // namespace lirenza::pictures
