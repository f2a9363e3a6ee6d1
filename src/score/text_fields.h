#pragma once
// Lenient text helpers shared by every table and reader. Tables are comma-separated
// literals read by field number counted from 1, and numbers are read the forgiving
// way users' files need: anything unreadable is 0, never an error.
#include <climits>
#include <string>
#include <string_view>
#include <vector>

namespace lirenza {

// Field n (from 1) of text cut at sep; the empty string when there is no such field.
std::string Field(std::string_view text, std::string_view sep, int n);
inline std::string Field(std::string_view text, int n) { return Field(text, ",", n); }

// Every field of text cut at sep. An empty text has one empty field.
std::vector<std::string> SplitFields(std::string_view text, std::string_view sep);

// Leading hexadecimal digits of text as a number; 0 when there are none.
long long HexVal(std::string_view text);

// Leading decimal number of text (sign, digits, fraction, exponent), truncated toward
// zero and kept within the range of int; 0 when the text does not start with a number.
int IntVal(std::string_view text);

// The same number as a double, not truncated.
double DoubleVal(std::string_view text);

// Upper-case hexadecimal text of v without leading zeros ("0" for 0).
std::string Hex(long long v);

// The last n characters of text, padded on the left with '0' when shorter.
std::string RightDigits(const std::string& text, std::size_t n);

bool EqualsIgnoreCase(std::string_view a, std::string_view b);

// v held to the range of int. Sums of note fields go through here: a damaged file can
// hold any int in any field, and a sum of two of them must not overflow.
inline int ClampToInt(long long v) { return v > INT_MAX ? INT_MAX : v < INT_MIN ? INT_MIN : static_cast<int>(v); }

}  // namespace lirenza
