#include "review.h"

#include <QDir>
#include <QFont>
#include <QPainter>

#include "picture_list.h"
#include "score/note_tables.h"
#include "violin/fingerboard.h"
#include "window/layout_table.h"

namespace lirenza::pictures {
namespace {

QImage Load(const QString& dir, const std::string& name, QString& error) {
  QImage image(QDir(dir).filePath(QString::fromStdString(name) + ".png"));
  if (image.isNull() && error.isEmpty())
    error = QStringLiteral("%1.png is missing in %2").arg(QString::fromStdString(name), dir);
  return image;
}

void Checkerboard(QPainter& p, const QRect& r) {
  p.save();
  p.setClipRect(r);
  for (int y = r.top(); y <= r.bottom(); y += 8)
    for (int x = r.left(); x <= r.right(); x += 8)
      p.fillRect(x, y, 8, 8, ((x - r.left()) / 8 + (y - r.top()) / 8) % 2 ? QColor(0x9a, 0x9a, 0x9a) : QColor(0x80, 0x80, 0x80));
  p.restore();
}

}  // namespace

QString MakeContactSheet(const QString& pictureDir, const QString& outPath) {
  const int pageWidth = 1900, gap = 14, caption = 14;
  struct Tile {
    std::string name;
    QImage image;
    double scale;
    QSize shown;
  };
  QString error;
  std::vector<Tile> tiles;
  for (const PictureSpec& spec : AllPictures()) {
    QImage image = Load(pictureDir, spec.name, error);
    if (image.isNull()) continue;
    // Small pictures at three times their size, big ones shrunk to the page; the two
    // long sheets show their first 1600 pixels at full size.
    double scale = 1.0;
    if (image.width() <= 40 && image.height() <= 40) scale = 3.0;
    else if (spec.name == "Sheet1" || spec.name == "Sheet2") image = image.copy(0, 0, 1600, image.height());
    else if (image.height() > 400) scale = std::min(1.0, 400.0 / image.height());
    else if (image.width() > pageWidth - 2 * gap) scale = double(pageWidth - 2 * gap) / image.width();
    if (spec.name == "ListBack") image = image.copy(0, 0, image.width(), 300), scale = 1.0;
    tiles.push_back({spec.name, image, scale, (QSizeF(image.size()) * scale).toSize()});
  }
  // Lay the tiles out in rows.
  std::vector<QPoint> places;
  int x = gap, y = gap, rowHeight = 0;
  for (const Tile& t : tiles) {
    int w = std::max(t.shown.width(), 120);
    if (x + w > pageWidth - gap) x = gap, y += rowHeight + gap + caption, rowHeight = 0;
    places.push_back({x, y});
    x += w + gap;
    rowHeight = std::max(rowHeight, t.shown.height());
  }
  QImage page(pageWidth, y + rowHeight + gap + caption, QImage::Format_RGB32);
  page.fill(QColor(0x2b, 0x2b, 0x2b));
  QPainter p(&page);
  QFont font(QStringLiteral("IPAexGothic"));
  font.setPixelSize(11);
  p.setFont(font);
  for (size_t i = 0; i < tiles.size(); ++i) {
    const Tile& t = tiles[i];
    QRect r(places[i], t.shown);
    Checkerboard(p, r);
    p.setRenderHint(QPainter::SmoothPixmapTransform, t.scale < 1.0);
    p.drawImage(r, t.image);
    p.setPen(QColor(0xf0, 0xe6, 0xa0));
    QString size = QStringLiteral("%1×%2").arg(t.image.width()).arg(t.image.height());
    if (t.name == "Sheet1" || t.name == "Sheet2") size = QStringLiteral("10374×188, first 1600");
    if (t.name == "ListBack") size = QStringLiteral("164×3200, top 300");
    if (t.scale != 1.0) size += QStringLiteral(" @%1%").arg(int(t.scale * 100 + 0.5));
    p.drawText(QPoint(r.left(), r.bottom() + caption), QString::fromStdString(t.name) + " " + size);
  }
  p.end();
  if (!error.isEmpty()) return error;
  return page.save(outPath) ? QString() : QStringLiteral("cannot write %1").arg(outPath);
}

QString MakeStaffPreview(const QString& pictureDir, const QString& outPath) {
  using layout::Control;
  using layout::ControlId;
  QString error;
  auto pic = [&](const std::string& name) { return Load(pictureDir, name, error); };
  QImage window(layout::kWindowWidth, layout::kWindowHeight, QImage::Format_ARGB32_Premultiplied);
  window.fill(QColor::fromRgb(layout::kWindowBackground));
  QPainter p(&window);
  p.drawImage(0, 0, pic("ViolinBack0"));
  auto rect = [](const Control& c) { return QRect(c.place.left, c.place.top, c.place.width, c.place.height); };
  auto fontOf = [](const Control& c) {
    QFont f(QString::fromUtf8(layout::StandInFace(c.font.face).data(), int(layout::StandInFace(c.font.face).size())));
    f.setPixelSize(c.font.points);
    f.setBold(c.font.bold);
    return f;
  };
  auto text = [](std::string_view s) { return QString::fromUtf8(s.data(), int(s.size())); };

  // What this page shows instead of the start state: a score in D major being played,
  // with the play button and one conversion button held and the mouse on minimise.
  const std::string portrait(kPortraitNames[0]);
  auto shownPicture = [](const Control& c) -> std::string {
    if (c.ref.id == ControlId::KeySignature) return "S2";
    if (c.ref == layout::ControlRef{ControlId::TransportButton, 0}) return std::string(c.picture) + "B";
    if (c.ref == layout::ControlRef{ControlId::ConversionButton, 1}) return "PlayMidi1";
    if (c.ref == layout::ControlRef{ControlId::WindowButton, 1}) return "ButtonYI";
    return std::string(c.picture);
  };
  auto shownText = [&](const Control& c) -> QString {
    switch (c.ref.id) {
      case ControlId::TitleField: return QStringLiteral("喜びの歌");
      case ControlId::ComposerField: return QStringLiteral("ベートーヴェン／交響曲第9番より");
      case ControlId::KeyNameLabel: return QStringLiteral("  ニ長調(D)/ロ短調(Bm)");
      case ControlId::PlayerNameLabel: return QString::fromStdString(portrait);
      default: return text(c.caption);
    }
  };
  auto shown = [](const Control& c) {
    return c.visibility != layout::Visibility::Hidden || c.ref.id == ControlId::BowCanvas ||
           c.ref.id == ControlId::ScorePlayingLabel;
  };

  // The staff first, its head under the sheet's left edge.
  const Control& head = layout::ControlAt(ControlId::StaffHead);
  const Control& staff = layout::ControlAt(ControlId::StaffCanvas);
  p.drawImage(rect(head).topLeft(), pic(std::string(head.picture)));
  p.drawImage(rect(staff), pic("Sheet1"), QRect(0, 0, staff.place.width, staff.place.height));

  // A melody in D major with a bass line, placed by the entry rules: Top from the
  // pitch, family by Top, Left stepping by the column step of its length.
  struct Entry {
    const char* token;
    int left;
  };
  const Entry melody[] = {
      {"D498", 136}, {"F4#98", 152}, {"A498", 168}, {"D594", 184}, {"A3B4", 184}, {"C5#96", 216},
      {"B4B9", 232}, {"A492", 264}, {"F394", 264}, {"0004", 312}, {"G4B8", 344}, {"E4B8", 360},
      {"C4#A3", 408}, {"D4A8", 456}, {"E4A8", 472}, {"F4#9B", 488}, {"G4BB", 496}, {"A49D", 504},
      {"B49F", 512}, {"A4F0", 552}, {"D3F0", 552}, {"0002", 696}, {"E5b9C", 744}, {"B5FE", 760},
      {"G2FA", 776}, {"A5F7", 840}, {"A2F5", 872}, {"00F8", 912}, {"D6F6", 936}};
  QFont digit(QStringLiteral("IPAexGothic"));
  digit.setPixelSize(11);
  for (const Entry& e : melody) {
    std::string token = e.token;
    std::string name = token.substr(0, token.size() - 2);
    char ve = token[token.size() - 2], dr = token.back();
    int top;
    std::string picture;
    if (ve == '0') {
      top = 111;
      picture = lirenza::NotePictureName('r', std::string(1, dr));
    } else {
      top = lirenza::EntryTopOfPitch(lirenza::NaturalPitchOfName(name.substr(0, 2)));
      picture = lirenza::NotePictureName(lirenza::EntryFamily(top), std::string(1, dr));
    }
    p.drawImage(e.left, top, pic(picture));
    int sib = ve == '0' ? 0 : lirenza::SignOfName(name);
    if (sib) p.drawImage(e.left, top + 6, pic(sib == 1 ? "Sh" : sib == 2 ? "Fl" : "Nt"));
    if (ve != '0') {
      p.setFont(digit);
      p.setPen(QColor(0, 0, 255));
      p.drawText(e.left + 7, top + 27, QString(QChar(ve)));
    }
    if (std::string(e.token) == "B4B9") p.drawImage(e.left, top, pic("nOn"));
  }

  // The violin with a finger on the A string, cell 5, sounding.
  QImage violin = pic("Violin");
  {
    QPainter v(&violin);
    const lirenza::HandGeometry g = lirenza::HandGeometryAt(2, 5);
    v.drawImage(QRect(g.string.x, g.string.y, g.string.width, g.string.height), pic("GenS"));
    v.drawImage(g.finger.x, g.finger.y, pic("Yubi"));
  }

  // Every other control where the layout puts it, in the order the window makes them.
  for (const Control& c : layout::AllControls()) {
    if (&c == &head || &c == &staff || !shown(c)) continue;
    const QRect r = rect(c);
    const QColor ink = c.textColour ? QColor::fromRgb(*c.textColour) : QColor(0, 0, 0);
    const Qt::Alignment align = (c.alignment == layout::Alignment::Right    ? Qt::AlignRight
                                 : c.alignment == layout::Alignment::Centre ? Qt::AlignHCenter
                                                                            : Qt::AlignLeft) |
                                Qt::AlignVCenter;
    switch (c.kind) {
      case layout::ControlKind::Canvas:
        if (c.ref.id == ControlId::ViolinCanvas) p.drawImage(r.topLeft(), violin);
        else if (!c.picture.empty()) p.drawImage(r.topLeft(), pic(shownPicture(c)));
        break;
      case layout::ControlKind::List:
        p.drawImage(r, pic(std::string(c.icon)), QRect(0, 0, r.width(), r.height()));
        break;
      case layout::ControlKind::BevelButton:
      case layout::ControlKind::MenuButton:
        p.fillRect(r, c.startValue ? QColor(0xb8, 0xc8, 0xe8) : QColor(0xe8, 0xe8, 0xe8));
        p.setPen(QColor(0x70, 0x70, 0x70));
        p.drawRect(r.adjusted(0, 0, -1, -1));
        if (!c.icon.empty()) {
          // The note icons are taller than the buttons: fitted to the button's height.
          QRect target(0, 0, 10, 24);
          target.moveCenter(r.center() + QPoint(1, 1));
          p.setRenderHint(QPainter::SmoothPixmapTransform, true);
          p.drawImage(target, pic(std::string(c.icon)));
        } else {
          p.setFont(fontOf(c));
          p.setPen(ink);
          p.drawText(r, align, text(c.caption));
        }
        break;
      case layout::ControlKind::Label:
      case layout::ControlKind::TextField:
        if (c.backColour) p.fillRect(r, QColor::fromRgb(*c.backColour));
        p.setFont(fontOf(c));
        p.setPen(ink);
        p.drawText(r, align, shownText(c));
        break;
      default:
        break;  // sliders, radio buttons, boxes and the scroll bar are the toolkit's own
    }
  }
  p.end();
  if (!error.isEmpty()) return error;
  return window.save(outPath) ? QString() : QStringLiteral("cannot write %1").arg(outPath);
}

}  // namespace lirenza::pictures
