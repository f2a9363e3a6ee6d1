#pragma once
// Review pages for people: every picture laid out with its name and size, and the
// window's staff and violin put together from the pictures at real scale.
#include <QString>

namespace lirenza::pictures {

// Each returns an empty string on success, or a message naming what went wrong.
QString MakeContactSheet(const QString& pictureDir, const QString& outPath);
QString MakeStaffPreview(const QString& pictureDir, const QString& outPath);

}  // namespace lirenza::pictures
