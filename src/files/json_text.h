#pragma once
// Text as JSON holds it: one quoted string, always valid UTF-8.
#include <cstddef>
#include <string>
#include <string_view>

namespace lirenza {

// The length of the UTF-8 sequence at s[i], or 0 when it is not a valid one.
std::size_t Utf8SequenceLength(std::string_view s, std::size_t i);

// s as a quoted JSON string; a byte that is not UTF-8 becomes U+FFFD.
std::string JsonString(std::string_view s);

}  // namespace lirenza
