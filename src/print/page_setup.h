#pragma once
// The page setup kept between runs: paper, orientation and margins, written as a short
// line of text ("page=A4;orientation=portrait;margins=10,10,10,10", margins in
// millimetres) so the settings file can hold it. Reading takes what it understands
// and keeps the defaults (A4, portrait, 10 mm) for the rest.
#include <QPageLayout>
#include <string>

namespace lirenza {

QPageLayout DefaultPageLayout();
std::string PageSetupText(const QPageLayout& layout);
QPageLayout PageLayoutFromText(const std::string& text);

}  // namespace lirenza
