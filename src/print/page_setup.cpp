#include "print/page_setup.h"

#include <QMarginsF>
#include <QPageSize>
#include <QStringList>

namespace lirenza {
namespace {

constexpr double kDefaultMarginMm = 10.0;
constexpr double kMostMarginMm = 100.0;

QPageSize PageSizeFromKey(const QString& key) {
  for (int id = 0; id <= QPageSize::LastPageSize; ++id) {
    const auto sizeId = static_cast<QPageSize::PageSizeId>(id);
    if (sizeId != QPageSize::Custom && QPageSize::key(sizeId).compare(key, Qt::CaseInsensitive) == 0)
      return QPageSize(sizeId);
  }
  return QPageSize(QPageSize::A4);
}

}  // namespace

QPageLayout DefaultPageLayout() {
  const double m = kDefaultMarginMm;
  return QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(m, m, m, m), QPageLayout::Millimeter);
}

std::string PageSetupText(const QPageLayout& layout) {
  const QMarginsF m = layout.margins(QPageLayout::Millimeter);
  const QString text = QStringLiteral("page=%1;orientation=%2;margins=%3,%4,%5,%6")
                           .arg(layout.pageSize().key(),
                                layout.orientation() == QPageLayout::Landscape ? QStringLiteral("landscape")
                                                                                : QStringLiteral("portrait"))
                           .arg(m.left())
                           .arg(m.top())
                           .arg(m.right())
                           .arg(m.bottom());
  return text.toStdString();
}

QPageLayout PageLayoutFromText(const std::string& text) {
  QPageLayout layout = DefaultPageLayout();
  for (const QString& field : QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).split(';')) {
    const QString key = field.section('=', 0, 0).trimmed(), value = field.section('=', 1).trimmed();
    if (key == QLatin1String("page")) {
      layout.setPageSize(PageSizeFromKey(value));
    } else if (key == QLatin1String("orientation")) {
      layout.setOrientation(value == QLatin1String("landscape") ? QPageLayout::Landscape : QPageLayout::Portrait);
    } else if (key == QLatin1String("margins")) {
      const QStringList parts = value.split(',');
      double mm[4];
      bool good = parts.size() == 4;
      for (int i = 0; good && i < 4; ++i) {
        mm[i] = parts[i].toDouble(&good);
        good = good && mm[i] >= 0 && mm[i] <= kMostMarginMm;
      }
      if (good) layout.setMargins(QMarginsF(mm[0], mm[1], mm[2], mm[3]));
    }
  }
  return layout;
}

}  // namespace lirenza
