#include "music_font.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <array>
#include <cstdint>

namespace lirenza::pictures {
namespace {

// The first 92 of the CFF standard strings: every name below "a" to "z" that a
// music font can take from the standard set (the time signature digits among them).
constexpr std::array<const char*, 92> kStandardStrings = {
    ".notdef", "space", "exclam", "quotedbl", "numbersign", "dollar", "percent", "ampersand",
    "quoteright", "parenleft", "parenright", "asterisk", "plus", "comma", "hyphen", "period",
    "slash", "zero", "one", "two", "three", "four", "five", "six", "seven", "eight", "nine",
    "colon", "semicolon", "less", "equal", "greater", "question", "at", "A", "B", "C", "D", "E",
    "F", "G", "H", "I", "J", "K", "L", "M", "N", "O", "P", "Q", "R", "S", "T", "U", "V", "W",
    "X", "Y", "Z", "bracketleft", "backslash", "bracketright", "asciicircum", "underscore",
    "quoteleft", "a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n", "o",
    "p", "q", "r", "s", "t", "u", "v", "w", "x", "y", "z"};
constexpr int kStandardStringCount = 391;

class Reader {
 public:
  explicit Reader(const QByteArray& data) : data_(data) {}
  bool Has(qsizetype at, qsizetype n) const { return at >= 0 && n >= 0 && at + n <= data_.size(); }
  uint32_t U(qsizetype at, int bytes) const {
    if (!Has(at, bytes)) {
      ok_ = false;
      return 0;
    }
    uint32_t v = 0;
    for (int i = 0; i < bytes; ++i) v = (v << 8) | static_cast<uint8_t>(data_[at + i]);
    return v;
  }
  bool Ok() const { return ok_; }
  const QByteArray& Data() const { return data_; }

 private:
  const QByteArray& data_;
  mutable bool ok_ = true;
};

// A CFF INDEX: count, offset size, offsets, data. Returns the items' spans and the
// place just behind the index.
struct Index {
  std::vector<std::pair<qsizetype, qsizetype>> items;  // start, length
  qsizetype end = 0;
};

Index ReadIndex(const Reader& r, qsizetype at) {
  Index index;
  uint32_t count = r.U(at, 2);
  if (count == 0) {
    index.end = at + 2;
    return index;
  }
  int offSize = static_cast<int>(r.U(at + 2, 1));
  if (offSize < 1 || offSize > 4) return index;
  qsizetype offsets = at + 3;
  qsizetype dataStart = offsets + qsizetype(count + 1) * offSize - 1;
  for (uint32_t i = 0; i < count && r.Ok(); ++i) {
    qsizetype a = r.U(offsets + qsizetype(i) * offSize, offSize);
    qsizetype b = r.U(offsets + qsizetype(i + 1) * offSize, offSize);
    index.items.push_back({dataStart + a, b - a});
  }
  index.end = dataStart + r.U(offsets + qsizetype(count) * offSize, offSize);
  return index;
}

// Reads the integer operands of a Top DICT and keeps those of charset (15) and
// CharStrings (17).
void ReadTopDict(const Reader& r, qsizetype at, qsizetype length, long& charset,
                 long& charStrings) {
  std::vector<long> operands;
  qsizetype p = at, end = at + length;
  while (p < end && r.Ok()) {
    int b0 = static_cast<int>(r.U(p, 1));
    if (b0 <= 21) {
      int op = b0;
      ++p;
      if (b0 == 12) op = 1200 + static_cast<int>(r.U(p++, 1));
      if (op == 15 && !operands.empty()) charset = operands.back();
      if (op == 17 && !operands.empty()) charStrings = operands.back();
      operands.clear();
    } else if (b0 == 28) {
      operands.push_back(static_cast<int16_t>(r.U(p + 1, 2)));
      p += 3;
    } else if (b0 == 29) {
      operands.push_back(static_cast<int32_t>(r.U(p + 1, 4)));
      p += 5;
    } else if (b0 == 30) {  // a real: nibbles up to an 0xf; its value is never needed
      ++p;
      while (p < end) {
        int b = static_cast<int>(r.U(p++, 1));
        if ((b & 0x0f) == 0x0f || (b >> 4) == 0x0f) break;
      }
      operands.push_back(0);
    } else if (b0 >= 32 && b0 <= 246) {
      operands.push_back(b0 - 139);
      ++p;
    } else if (b0 >= 247 && b0 <= 250) {
      operands.push_back((b0 - 247) * 256 + static_cast<int>(r.U(p + 1, 1)) + 108);
      p += 2;
    } else if (b0 >= 251 && b0 <= 254) {
      operands.push_back(-(b0 - 251) * 256 - static_cast<int>(r.U(p + 1, 1)) - 108);
      p += 2;
    } else {
      ++p;
    }
  }
}

}  // namespace

std::map<std::string, int> ReadCffGlyphNames(const QByteArray& font) {
  std::map<std::string, int> names;
  Reader r(font);
  if (r.U(0, 4) != 0x4F54544F) return names;  // "OTTO": CFF outlines
  uint32_t tables = r.U(4, 2);
  qsizetype cff = -1;
  for (uint32_t i = 0; i < tables; ++i) {
    qsizetype rec = 12 + qsizetype(i) * 16;
    if (r.U(rec, 4) == 0x43464620) cff = r.U(rec + 8, 4);  // "CFF "
  }
  if (cff < 0 || !r.Ok()) return names;
  Index nameIndex = ReadIndex(r, cff + r.U(cff + 2, 1));
  Index topDicts = ReadIndex(r, nameIndex.end);
  Index strings = ReadIndex(r, topDicts.end);
  if (topDicts.items.empty() || !r.Ok()) return names;
  long charset = -1, charStrings = -1;
  ReadTopDict(r, topDicts.items[0].first, topDicts.items[0].second, charset, charStrings);
  if (charset <= 2 || charStrings <= 0) return names;  // predefined charsets name no music
  int glyphs = static_cast<int>(ReadIndex(r, cff + charStrings).items.size());

  auto nameOf = [&](uint32_t sid) -> std::string {
    if (sid < kStandardStrings.size()) return kStandardStrings[sid];
    if (sid < kStandardStringCount) return {};
    uint32_t i = sid - kStandardStringCount;
    if (i >= strings.items.size()) return {};
    auto [start, length] = strings.items[i];
    if (!r.Has(start, length)) return {};
    return std::string(font.constData() + start, static_cast<size_t>(length));
  };
  qsizetype p = cff + charset;
  int format = static_cast<int>(r.U(p++, 1));
  int glyph = 1;
  while (glyph < glyphs && r.Ok()) {
    if (format == 0) {
      names[nameOf(r.U(p, 2))] = glyph++;
      p += 2;
    } else if (format == 1 || format == 2) {
      uint32_t first = r.U(p, 2);
      uint32_t left = r.U(p + 2, format == 1 ? 1 : 2);
      p += format == 1 ? 3 : 4;
      for (uint32_t k = 0; k <= left && glyph < glyphs; ++k) names[nameOf(first + k)] = glyph++;
    } else {
      break;
    }
  }
  names.erase(std::string{});
  return names;
}

bool MusicFont::Load(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    error_ = QStringLiteral("cannot read the music font %1").arg(path);
    return false;
  }
  QByteArray data = file.readAll();
  names_ = ReadCffGlyphNames(data);
  font_.loadFromData(data, 100.0, QFont::PreferNoHinting);
  if (!font_.isValid() || !Has("noteheads.s2")) {
    error_ = QStringLiteral("%1 is not the Emmentaler music font").arg(path);
    return false;
  }
  // Emmentaler draws a black note head exactly one staff space high; that fixes the
  // scale of every other glyph.
  QRectF head = font_.pathForGlyph(names_.at("noteheads.s2")).boundingRect();
  unitsPerStaffSpace_ = head.height();
  return true;
}

QPainterPath MusicFont::Glyph(const std::string& name, double staffSpace) const {
  auto it = names_.find(name);
  if (it == names_.end()) return {};
  QPainterPath path = font_.pathForGlyph(static_cast<quint32>(it->second));
  QTransform scale = QTransform::fromScale(staffSpace / unitsPerStaffSpace_,
                                           staffSpace / unitsPerStaffSpace_);
  return scale.map(path);
}

QStringList MusicFontFolders() {
  const QString fromEnvironment = qEnvironmentVariable("LIRENZA_FONTS_DIR");
  if (!fromEnvironment.isEmpty()) return {fromEnvironment};
  QStringList folders;
#ifdef LIRENZA_BUILD_FONTS_DIR
  folders << QStringLiteral(LIRENZA_BUILD_FONTS_DIR);
#endif
  if (QCoreApplication::instance())
    folders << QDir::cleanPath(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../share/lirenza/fonts")));
#ifdef LIRENZA_INSTALLED_FONTS_DIR
  folders << QStringLiteral(LIRENZA_INSTALLED_FONTS_DIR);
#endif
  // Newest LilyPond first: its folder name carries the version.
  QDir lilypond(QStringLiteral("/usr/share/lilypond"));
  for (const QString& version : lilypond.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::Reversed))
    folders << lilypond.filePath(version + QStringLiteral("/fonts/otf"));
  return folders;
}

QString FirstMusicFontIn(const QStringList& folders) {
  for (const QString& folder : folders) {
    const QString path = QDir(folder).filePath(QString::fromLatin1(kMusicFontFile));
    if (QFileInfo(path).isFile()) return path;
  }
  return {};
}

QString FindEmmentaler() { return FirstMusicFontIn(MusicFontFolders()); }

std::unique_ptr<MusicFont> LoadRunTimeMusicFont(QString* error) {
  const QString path = FindEmmentaler();
  if (path.isEmpty()) {
    if (error)
      *error = QStringLiteral("the music font %1 is in none of %2")
                   .arg(QString::fromLatin1(kMusicFontFile), MusicFontFolders().join(QStringLiteral(", ")));
    return nullptr;
  }
  auto font = std::make_unique<MusicFont>();
  if (!font->Load(path)) {
    if (error) *error = font->Error();
    return nullptr;
  }
  return font;
}

const MusicFont* RunTimeMusicFont(QString* error) {
  struct Loaded {
    std::unique_ptr<MusicFont> font;
    QString error;
  };
  // A function's static is built once even when threads race for it.
  static const Loaded loaded = [] {
    Loaded result;
    result.font = LoadRunTimeMusicFont(&result.error);
    return result;
  }();
  if (!loaded.font && error) *error = loaded.error;
  return loaded.font.get();
}

}  // namespace lirenza::pictures
