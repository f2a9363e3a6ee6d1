#include "files/json_text.h"

#include <cstdio>

#include "files/score_file.h"

namespace lirenza {

// The length of the UTF-8 sequence at s[i], or 0 when it is not a valid one.
std::size_t Utf8SequenceLength(std::string_view s, std::size_t i) {
  const unsigned char c = s[i];
  const std::size_t n = c < 0x80 ? 1 : c < 0xC2 ? 0 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : c < 0xF5 ? 4 : 0;
  if (n == 0 || i + n > s.size()) return 0;
  return IsUtf8Text(s.substr(i, n)) ? n : 0;
}

std::string JsonString(std::string_view s) {
  std::string out = "\"";
  for (std::size_t i = 0; i < s.size();) {
    const unsigned char c = s[i];
    const std::size_t n = Utf8SequenceLength(s, i);
    if (n == 0) {
      out += "\\ufffd";  // a byte that is not UTF-8 would make the whole output invalid
      ++i;
      continue;
    }
    if (n > 1) {
      out.append(s.substr(i, n));
      i += n;
      continue;
    }
    ++i;
    switch (c) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (c < 0x20 || c == 0x7F) {
          char buf[8];
          std::snprintf(buf, sizeof buf, "\\u%04x", c);
          out += buf;
        } else {
          out += static_cast<char>(c);
        }
    }
  }
  return out + "\"";
}

}  // namespace lirenza
