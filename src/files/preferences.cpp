#include "files/preferences.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "files/json_text.h"

namespace lirenza {
namespace {

constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Keys of the file, in the order they are written.
constexpr std::string_view kLeftKey = "MWLeft";
constexpr std::string_view kTopKey = "MWTop";
constexpr std::string_view kKeyboardKey = "keyboardFlag";
constexpr std::string_view kVolumeKey = "Sl0Value";
constexpr std::string_view kTempoKey = "Sl1Value";
constexpr std::string_view kBackKey = "backFlag";
constexpr std::string_view kPrinterKey = "printerSetupStr";

// Arrays and objects under unknown keys are skipped; this bounds how deep, so a file of
// brackets cannot exhaust the stack.
constexpr int kMaxNesting = 64;

void AppendMember(std::string& out, std::string_view key, int value) {
  if (out.size() > 1) out += ',';
  out += JsonString(key);
  out += ':';
  out += std::to_string(value);
}

void AppendUtf8(std::string& out, std::uint32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

// One member's value as far as the settings care: a whole number that fits an int, a
// string, or anything else (which no setting takes).
struct Value {
  enum class Kind { Integer, String, Other } kind = Kind::Other;
  int integer = 0;
  std::string text;
};

// A strict reader of one JSON object that hands over each member as soon as it is read,
// so the members before a break in the text still count.
class ObjectReader {
 public:
  explicit ObjectReader(std::string_view text) : text_(text) {}

  template <typename Take>
  void Read(Take take) {
    if (text_.substr(0, 3) == "\xEF\xBB\xBF") at_ = 3;  // a byte order mark from an editor
    SkipSpace();
    if (!Skip('{')) return;
    SkipSpace();
    if (Skip('}')) return;
    while (true) {
      SkipSpace();
      std::string key;
      if (!Skip('"') || !String(key)) return;
      SkipSpace();
      if (!Skip(':')) return;
      SkipSpace();
      Value value;
      if (!Member(value)) return;
      take(key, value);
      SkipSpace();
      if (Skip(',')) continue;
      return;  // '}' or a break: either way nothing more to take
    }
  }

 private:
  bool AtEnd() const { return at_ >= text_.size(); }
  char Peek() const { return AtEnd() ? '\0' : text_[at_]; }
  bool Skip(char c) {
    if (Peek() != c || AtEnd()) return false;
    ++at_;
    return true;
  }
  bool Word(std::string_view word) {
    if (text_.substr(at_, word.size()) != word) return false;
    at_ += word.size();
    return true;
  }
  void SkipSpace() {
    while (!AtEnd() && (Peek() == ' ' || Peek() == '\t' || Peek() == '\n' || Peek() == '\r')) ++at_;
  }
  bool Digits() {
    const std::size_t start = at_;
    while (!AtEnd() && Peek() >= '0' && Peek() <= '9') ++at_;
    return at_ > start;
  }

  bool Member(Value& value) {
    if (Peek() == '"') {
      ++at_;
      value.kind = Value::Kind::String;
      return String(value.text);
    }
    if (Peek() == '-' || (Peek() >= '0' && Peek() <= '9')) return Number(value);
    return Skipped(0);
  }

  bool Number(Value& value) {
    const std::size_t start = at_;
    Skip('-');
    if (Peek() == '0') {
      ++at_;
    } else if (!Digits()) {
      return false;
    }
    bool whole = true;
    if (Skip('.')) {
      whole = false;
      if (!Digits()) return false;
    }
    if (Peek() == 'e' || Peek() == 'E') {
      ++at_;
      whole = false;
      if (!Skip('+')) Skip('-');
      if (!Digits()) return false;
    }
    if (!whole) return true;
    const std::string_view digits = text_.substr(start, at_ - start);
    long long n = 0;
    for (char c : digits) {
      if (c == '-') continue;
      n = n * 10 + (c - '0');
      if (n > std::numeric_limits<int>::max() + 1LL) return true;  // too large for any setting
    }
    if (digits.front() == '-') n = -n;
    if (n < std::numeric_limits<int>::min() || n > std::numeric_limits<int>::max()) return true;
    value.kind = Value::Kind::Integer;
    value.integer = static_cast<int>(n);
    return true;
  }

  std::optional<std::uint32_t> Hex4() {
    if (at_ + 4 > text_.size()) return std::nullopt;
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i) {
      const char c = text_[at_++];
      code <<= 4;
      if (c >= '0' && c <= '9') code |= c - '0';
      else if (c >= 'a' && c <= 'f') code |= c - 'a' + 10;
      else if (c >= 'A' && c <= 'F') code |= c - 'A' + 10;
      else return std::nullopt;
    }
    return code;
  }

  // The rest of a string whose opening quote is read.
  bool String(std::string& out) {
    while (!AtEnd()) {
      const unsigned char c = text_[at_++];
      if (c == '"') return true;
      if (c < 0x20) return false;
      if (c != '\\') {
        out += static_cast<char>(c);
        continue;
      }
      if (AtEnd()) return false;
      switch (text_[at_++]) {
        case '"': out += '"'; break;
        case '\\': out += '\\'; break;
        case '/': out += '/'; break;
        case 'b': out += '\b'; break;
        case 'f': out += '\f'; break;
        case 'n': out += '\n'; break;
        case 'r': out += '\r'; break;
        case 't': out += '\t'; break;
        case 'u': {
          std::optional<std::uint32_t> code = Hex4();
          if (!code || (*code >= 0xDC00 && *code < 0xE000)) return false;
          if (*code >= 0xD800 && *code < 0xDC00) {
            if (!Word("\\u")) return false;
            const std::optional<std::uint32_t> low = Hex4();
            if (!low || *low < 0xDC00 || *low >= 0xE000) return false;
            code = 0x10000 + ((*code - 0xD800) << 10) + (*low - 0xDC00);
          }
          AppendUtf8(out, *code);
          break;
        }
        default: return false;
      }
    }
    return false;
  }

  // A value no setting takes: checked for form and passed over.
  bool Skipped(int depth) {
    if (depth > kMaxNesting) return false;
    std::string ignored;
    Value number;
    switch (Peek()) {
      case '"': ++at_; return String(ignored);
      case 't': return Word("true");
      case 'f': return Word("false");
      case 'n': return Word("null");
      case '[': return Sequence(']', depth, false);
      case '{': return Sequence('}', depth, true);
      default:
        if (Peek() == '-' || (Peek() >= '0' && Peek() <= '9')) return Number(number);
        return false;
    }
  }

  bool Sequence(char close, int depth, bool keyed) {
    ++at_;
    SkipSpace();
    if (Skip(close)) return true;
    while (true) {
      SkipSpace();
      if (keyed) {
        std::string key;
        if (!Skip('"') || !String(key)) return false;
        SkipSpace();
        if (!Skip(':')) return false;
        SkipSpace();
      }
      if (!Skipped(depth + 1)) return false;
      SkipSpace();
      if (Skip(close)) return true;
      if (!Skip(',')) return false;
    }
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

// A setting that takes whole numbers from first to last; another value keeps the start.
void TakeInRange(const Value& value, int first, int last, int& setting) {
  if (value.kind == Value::Kind::Integer && value.integer >= first && value.integer <= last)
    setting = value.integer;
}

}  // namespace

std::string PreferencesText(const Preferences& p) {
  std::string out = "{";
  if (p.windowPlace) {
    AppendMember(out, kLeftKey, p.windowPlace->left);
    AppendMember(out, kTopKey, p.windowPlace->top);
  }
  AppendMember(out, kKeyboardKey, p.keyboardLayout);
  AppendMember(out, kVolumeKey, p.volumeSlider);
  AppendMember(out, kTempoKey, p.tempoSlider);
  AppendMember(out, kBackKey, p.backPicture);
  out += ',';
  out += JsonString(kPrinterKey);
  out += ':';
  out += JsonString(EncodeBase64Lines(p.printerSetup));
  out += '}';
  return out;
}

Preferences ReadPreferences(std::string_view text) {
  Preferences p;
  std::optional<int> left, top;
  ObjectReader(text).Read([&](const std::string& key, const Value& value) {
    const bool integer = value.kind == Value::Kind::Integer;
    if (key == kLeftKey) {
      left = integer ? std::optional(value.integer) : std::nullopt;
    } else if (key == kTopKey) {
      top = integer ? std::optional(value.integer) : std::nullopt;
    } else if (key == kKeyboardKey) {
      TakeInRange(value, 0, kKeyboardLayouts - 1, p.keyboardLayout);
    } else if (key == kVolumeKey) {
      TakeInRange(value, 0, kVolumeSliderMax, p.volumeSlider);
    } else if (key == kTempoKey) {
      TakeInRange(value, 0, kTempoSliderMax, p.tempoSlider);
    } else if (key == kBackKey) {
      TakeInRange(value, 0, kBackPictures - 1, p.backPicture);
    } else if (key == kPrinterKey && value.kind == Value::Kind::String) {
      if (std::optional<std::string> bytes = DecodeBase64(value.text)) p.printerSetup = std::move(*bytes);
    }
  });
  if (left && top) p.windowPlace = WindowPlace{*left, *top};
  return p;
}

std::string EncodeBase64Lines(std::string_view bytes, int lineLength) {
  std::string digits;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t n = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k)
      group = (group << 8) | (k < n ? static_cast<unsigned char>(bytes[i + k]) : 0u);
    for (std::size_t k = 0; k < 4; ++k)
      digits += k <= n ? kBase64Digits[(group >> (18 - 6 * k)) & 63] : '=';
  }
  if (lineLength <= 0) return digits;
  std::string out;
  for (std::size_t i = 0; i < digits.size(); i += lineLength) {
    if (i > 0) out += "\r\n";
    out += digits.substr(i, lineLength);
  }
  return out;
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  std::string out;
  std::uint32_t group = 0;
  int held = 0;     // digits in group
  int padding = 0;  // '=' seen; only more '=' and blanks may follow
  for (char c : text) {
    if (c == '\r' || c == '\n' || c == ' ' || c == '\t') continue;
    if (c == '=') {
      ++padding;
      continue;
    }
    const std::size_t digit = kBase64Digits.find(c);
    if (digit == std::string_view::npos || padding > 0) return std::nullopt;
    group = (group << 6) | static_cast<std::uint32_t>(digit);
    if (++held == 4) {
      out += static_cast<char>(group >> 16);
      out += static_cast<char>((group >> 8) & 0xFF);
      out += static_cast<char>(group & 0xFF);
      group = 0;
      held = 0;
    }
  }
  // A last group of two or three digits holds one or two bytes, with or without its '='.
  if (held == 1 || (padding > 0 && (held < 2 || held + padding != 4))) return std::nullopt;
  if (held == 2) out += static_cast<char>(group >> 4);
  if (held == 3) {
    out += static_cast<char>(group >> 10);
    out += static_cast<char>((group >> 2) & 0xFF);
  }
  return out;
}

}  // namespace lirenza
