#include "score/text_fields.h"

#include <cctype>
#include <charconv>
#include <climits>
#include <cmath>

namespace lirenza {

std::vector<std::string> SplitFields(std::string_view text, std::string_view sep) {
  std::vector<std::string> out;
  std::size_t start = 0;
  while (true) {
    std::size_t at = text.find(sep, start);
    if (at == std::string_view::npos) {
      out.emplace_back(text.substr(start));
      return out;
    }
    out.emplace_back(text.substr(start, at - start));
    start = at + sep.size();
  }
}

std::string Field(std::string_view text, std::string_view sep, int n) {
  if (n < 1) return {};
  std::size_t start = 0;
  for (int i = 1; i < n; ++i) {
    std::size_t at = text.find(sep, start);
    if (at == std::string_view::npos) return {};
    start = at + sep.size();
  }
  std::size_t end = text.find(sep, start);
  return std::string(text.substr(start, end == std::string_view::npos ? end : end - start));
}

long long HexVal(std::string_view text) {
  long long v = 0;
  for (char c : text) {
    int d;
    if (c >= '0' && c <= '9') d = c - '0';
    else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
    else break;
    if (v > (LLONG_MAX >> 4)) break;
    v = v * 16 + d;
  }
  return v;
}

double DoubleVal(std::string_view t) {
  // Find the longest prefix that reads as a number, then convert it exactly and
  // independently of the locale.
  std::size_t i = 0;
  while (i < t.size() && (t[i] == ' ' || t[i] == '\t')) ++i;
  const std::size_t begin = i;
  if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
  const std::size_t digitsBegin = i;
  auto isDigit = [&](std::size_t k) { return k < t.size() && std::isdigit(static_cast<unsigned char>(t[k])); };
  bool any = false;
  while (isDigit(i)) ++i, any = true;
  if (i < t.size() && t[i] == '.') {
    ++i;
    while (isDigit(i)) ++i, any = true;
  }
  if (!any) return 0;
  std::size_t end = i;
  if (i < t.size() && (t[i] == 'e' || t[i] == 'E')) {
    std::size_t j = i + 1;
    if (j < t.size() && (t[j] == '+' || t[j] == '-')) ++j;
    if (isDigit(j)) {
      while (isDigit(j)) ++j;
      end = j;
    }
  }
  double v = 0;
  std::from_chars(t.data() + digitsBegin, t.data() + end, v, std::chars_format::general);
  return (begin < t.size() && t[begin] == '-') ? -v : v;
}

int IntVal(std::string_view text) {
  double v = std::trunc(DoubleVal(text));
  if (!(v == v)) return 0;
  if (v > INT_MAX) return INT_MAX;
  if (v < INT_MIN) return INT_MIN;
  return static_cast<int>(v);
}

std::string Hex(long long v) {
  static const char digits[] = "0123456789ABCDEF";
  if (v == 0) return "0";
  unsigned long long u = static_cast<unsigned long long>(v);
  std::string out;
  while (u) {
    out.insert(out.begin(), digits[u & 15]);
    u >>= 4;
  }
  return out;
}

std::string RightDigits(const std::string& text, std::size_t n) {
  if (text.size() >= n) return text.substr(text.size() - n);
  return std::string(n - text.size(), '0') + text;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (std::toupper(static_cast<unsigned char>(a[i])) != std::toupper(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

}  // namespace lirenza
