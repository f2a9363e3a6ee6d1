#pragma once
// The painters of the picture families. Each adds its pictures, by name, to the set.
#include <QImage>
#include <map>
#include <string>

#include "music_font.h"

namespace lirenza::pictures {

using PictureSet = std::map<std::string, QImage>;

void DrawNotes(const MusicFont& font, PictureSet& out);       // n, u, r, nOn, Sh, Fl, Nt
void DrawStaff(const MusicFont& font, PictureSet& out);       // Sheet*, PSheet, Repeat, Te
void DrawSignatures(const MusicFont& font, PictureSet& out);  // S0-S7, F1-F7, T1-T9
void DrawViolin(PictureSet& out);                             // Violin, Gen, GenS, Yubi, Bow
void DrawButtons(const MusicFont& font, PictureSet& out);     // buttons, panels, speaker
void DrawBack(int index, PictureSet& out);                    // ViolinBack<index>

}  // namespace lirenza::pictures
