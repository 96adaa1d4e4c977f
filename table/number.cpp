#include "table/number.h"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

namespace {

constexpr bool isWhiteSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool isDecimalDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Up to 15 digits fit a double exactly, and so do the powers of ten that they need.
constexpr int maxExactDigits = 15;
constexpr double powersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// Plain decimals such as -12.345: an exact integer over an exact power of ten is one correctly
/// rounded division, hence the very value of `strtod`. Returns false for anything else.
bool parsePlainDecimal(std::string_view text, double& value) {
  std::size_t at = 0;
  const bool negative = !text.empty() && text[0] == '-';
  if (negative) {
    at = 1;
  }
  std::int64_t mantissa = 0;
  int digits = 0;
  int decimals = 0;
  bool pointSeen = false;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (isDecimalDigit(c)) {
      if (++digits > maxExactDigits) {
        return false;
      }
      mantissa = mantissa * 10 + (c - '0');
      decimals += pointSeen ? 1 : 0;
    } else if (c == '.' && !pointSeen) {
      pointSeen = true;
    } else {
      return false;
    }
  }
  if (digits == 0) {
    return false;
  }
  const double size = static_cast<double>(mantissa) / powersOfTen[decimals];
  value = negative ? -size : size;
  return true;
}

} // namespace

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isWhiteSpace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isWhiteSpace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

int parseInt(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && isWhiteSpace(text[at])) {
    ++at;
  }
  bool negative = false;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
    negative = text[at] == '-';
    ++at;
  }
  constexpr std::int64_t beyondInt = std::int64_t{1} << 32;
  std::int64_t size = 0;
  for (; at < text.size() && isDecimalDigit(text[at]); ++at) {
    if (size < beyondInt) {
      size = size * 10 + (text[at] - '0');
    }
  }
  const std::int64_t value = negative ? -size : size;
  if (value > std::numeric_limits<int>::max()) {
    return std::numeric_limits<int>::max();
  }
  if (value < std::numeric_limits<int>::min()) {
    return std::numeric_limits<int>::min();
  }
  return static_cast<int>(value);
}

double parseDouble(std::string_view text) {
  double value = 0.0;
  text = trimmed(text);
  if (text.empty() || parsePlainDecimal(text, value)) {
    return value;
  }
  return std::strtod(std::string(text).c_str(), nullptr);
}

float parseFloat(std::string_view text) {
  return static_cast<float>(parseDouble(text));
}
