#include "review.h"

#include <QDir>
#include <QFont>
#include <QPainter>

#include "picture_list.h"
#include "score/note_tables.h"
#include "violin/fingerboard.h"
#include "violin/tempo_table.h"

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
  QString error;
  auto pic = [&](const std::string& name) { return Load(pictureDir, name, error); };
  QImage window(kBackSize.width, kBackSize.height, QImage::Format_ARGB32_Premultiplied);
  window.fill(QColor(0x19, 0x19, 0x19));
  QPainter p(&window);
  p.drawImage(0, 0, pic("ViolinBack0"));

  // The staff as the window puts it together.
  p.drawImage(51, 60, pic("Sheet"));
  p.drawImage(120, 60, pic("Sheet1"), 0, 0, 868, 140);
  p.drawImage(986, 60, pic("Repeat"));
  p.drawImage(60, 80, pic("Te"));
  p.drawImage(94, 98, pic("S2"));
  p.drawImage(79, 107, pic("T4"));
  QFont label(QStringLiteral("IPAexGothic"));
  label.setPixelSize(12);
  p.setFont(label);
  p.setPen(QColor(0, 0, 0));
  p.drawText(QRect(78, 78, 30, 16), Qt::AlignLeft | Qt::AlignVCenter, QString::number(lirenza::TempoForSlider(lirenza::kTempoSliderStart).number));
  p.drawText(QRect(53, 61, 68, 20), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("Moderato"));

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
      int pitch = lirenza::NaturalPitchOfName(name.substr(0, 2)) + lirenza::AccidentalOfName(name);
      top = lirenza::EntryTopOfPitch(lirenza::NaturalPitchOfName(name.substr(0, 2)));
      picture = lirenza::NotePictureName(lirenza::EntryFamily(top), std::string(1, dr));
      (void)pitch;
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

  // Entry buttons with their icons, fitted to the button's height.
  const int noteLefts[16] = {241, 266, 283, 308, 325, 350, 367, 384, 401, 426, 443, 459, 483, 499, 523, 540};
  const int widths[16] = {24, 16, 24, 16, 24, 16, 16, 16, 24, 16, 16, 24, 16, 24, 16, 24};
  for (int row = 0; row < 2; ++row)
    for (int i = 0; i < 16; ++i) {
      QRect r(noteLefts[i], row ? 268 : 241, widths[i], 26);
      p.fillRect(r, i == 4 && row == 0 ? QColor(0xb8, 0xc8, 0xe8) : QColor(0xe8, 0xe8, 0xe8));
      p.setPen(QColor(0x70, 0x70, 0x70));
      p.drawRect(r.adjusted(0, 0, -1, -1));
      QImage icon = pic(std::string(1, row ? 'r' : 'n') + kDigits[i]);
      QRect target(0, 0, 10, 24);
      target.moveCenter(r.center() + QPoint(1, 1));
      p.setRenderHint(QPainter::SmoothPixmapTransform, true);
      p.drawImage(target, icon);
    }

  // Play and conversion buttons, speaker, panels, window buttons, back button.
  p.drawImage(906, 268, pic("PlayButtonB"));
  p.drawImage(869, 268, pic("StopButton"));
  p.drawImage(832, 268, pic("RepeatButton"));
  p.drawImage(589, 260, pic("ChangeMidi0"));
  p.drawImage(624, 260, pic("PlayMidi1"));
  p.drawImage(659, 260, pic("MidiToAiff0"));
  p.drawImage(694, 260, pic("PlayAiff0"));
  p.drawImage(964, 229, pic("Speaker2"));
  p.drawImage(1013, 163, pic("ListBack"), 0, 0, 164, 154);
  p.drawImage(20, 6, pic("ButtonR"));
  p.drawImage(39, 6, pic("ButtonYI"));
  p.drawImage(58, 6, pic("ButtonG"));
  p.drawImage(1122, 665, pic("musi1"));

  // The violin with a finger on the A string, cell 5, sounding, and the bow shown.
  QImage violin = pic("Violin");
  {
    QPainter v(&violin);
    const lirenza::HandGeometry g = lirenza::HandGeometryAt(2, 5);
    v.drawImage(QRect(g.string.x, g.string.y, g.string.width, g.string.height), pic("GenS"));
    v.drawImage(g.finger.x, g.finger.y, pic("Yubi"));
  }
  p.drawImage(210, 352, violin);
  p.drawImage(844, 431, pic("Bow"));
  p.drawImage(199, 368, pic("Display2"));
  p.drawImage(33, 368, pic("Display2"));

  // Labels in the colours the layout gives them.
  auto text = [&](int x, int y, int w, int h, const QString& s, QColor c, int px) {
    QFont f(QStringLiteral("IPAexGothic"));
    f.setPixelSize(px);
    p.setFont(f);
    p.setPen(c);
    p.drawText(QRect(x, y, w, h), Qt::AlignLeft | Qt::AlignVCenter, s);
  };
  const QColor yellow(0xff, 0xff, 0x00), cyan(0x00, 0xff, 0xff);
  text(540, 6, 120, 22, QStringLiteral("Lirenza"), cyan, 18);
  text(65, 31, 33, 14, QStringLiteral("曲名"), yellow, 12);
  text(100, 30, 275, 15, QStringLiteral("喜びの歌"), QColor(0x00, 0xfc, 0xff), 12);
  text(406, 31, 580, 15, QStringLiteral("ベートーヴェン／交響曲第9番より"), QColor(0x00, 0xfc, 0xff), 12);
  text(1054, 13, 70, 16, QStringLiteral("楽譜集"), yellow, 12);
  text(791, 235, 30, 16, QStringLiteral("音量"), yellow, 12);
  text(789, 252, 30, 16, QStringLiteral("テンポ"), yellow, 12);
  text(958, 247, 35, 22, QStringLiteral("110"), yellow, 14);
  text(87, 243, 50, 19, QStringLiteral("スタカート"), yellow, 10);
  text(86, 260, 50, 19, QStringLiteral("ノーマル"), yellow, 10);
  text(88, 278, 50, 19, QStringLiteral("レガート"), yellow, 10);
  text(603, 236, 115, 17, QStringLiteral("MIDI、AIFに変換再生"), yellow, 12);
  text(295, 305, 620, 19, QStringLiteral("C       C#      D       D#      E       F       F#      G       G#      A       A#      B"), yellow, 12);
  text(212, 323, 50, 14, QStringLiteral("周波数比"), yellow, 12);
  text(206, 339, 65, 14, QStringLiteral("(周波数Hz)"), yellow, 12);
  text(241, 373, 100, 20, QStringLiteral("楽譜　演奏中  ! ! "), QColor(0xff, 0x00, 0x80), 12);
  text(33, 373, 160, 20, QStringLiteral("  ニ長調(D)/ロ短調(Bm)"), QColor(0x20, 0xfe, 0xfe), 12);
  text(42, 472, 40, 18, QStringLiteral("モード"), yellow, 12);
  text(61, 497, 25, 14, QStringLiteral("演奏"), yellow, 12);
  text(61, 519, 25, 14, QStringLiteral("編集"), yellow, 12);
  text(61, 553, 55, 14, QStringLiteral("マニュアル"), yellow, 12);
  text(61, 574, 30, 14, QStringLiteral("ライブ"), yellow, 12);
  text(127, 475, 60, 14, QStringLiteral("ポシション"), yellow, 12);
  text(156, 497, 25, 20, QStringLiteral("1st"), yellow, 14);
  text(157, 519, 25, 20, QStringLiteral("3rd"), yellow, 14);
  text(157, 543, 25, 20, QStringLiteral("5th"), yellow, 14);
  text(41, 673, 50, 16, QStringLiteral("楽器"), yellow, 12);
  text(8, 752, 300, 22, QString::fromUtf8(kPortraitNames[0].data(), int(kPortraitNames[0].size())), cyan, 18);
  text(1132, 726, 41, 12, QStringLiteral("Player"), QColor(0x20, 0xfe, 0xfe), 12);
  for (int i = 0; i < 12; ++i) {
    const int lefts[12] = {273, 326, 379, 432, 484, 536, 588, 641, 694, 747, 800, 853};
    p.fillRect(lefts[i], 323, 50, 16, QColor(0x4c, 0x4c, 0x4c));
    p.fillRect(lefts[i], 342, 50, 16, QColor(0, 0, 0));
  }
  p.end();
  if (!error.isEmpty()) return error;
  return window.save(outPath) ? QString() : QStringLiteral("cannot write %1").arg(outPath);
}

}  // namespace lirenza::pictures
