#include "table/number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string>
#include <system_error>

#include "table/plain_locale.h"

namespace {

constexpr bool isWhiteSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool isDecimalDigit(char c) {
  return c >= '0' && c <= '9';
}

/// A plain decimal such as -12.345 of at most 15 digits: an exact integer over an exact power of
/// ten is one correctly rounded division, hence the very value of `strtod`. Nearly every number of
/// a run is one, and this takes half the time of the library's way. False for anything else.
bool parseShortDecimal(std::string_view text, double& value) {
  constexpr std::size_t mostDigits = 15;
  constexpr double powersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                    1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const bool negative = text.substr(0, 1) == "-";
  const std::string_view digits = text.substr(negative ? 1 : 0);
  const std::size_t point = std::min(digits.find('.'), digits.size());
  const std::size_t decimals = digits.size() - std::min(point + 1, digits.size());
  if (point + decimals == 0 || point + decimals > mostDigits) {
    return false;
  }
  std::int64_t mantissa = 0;
  for (std::size_t at = 0; at < digits.size(); ++at) {
    if (at != point) {
      if (!isDecimalDigit(digits[at])) {
        return false;
      }
      mantissa = mantissa * 10 + (digits[at] - '0');
    }
  }
  value = static_cast<double>(negative ? -mantissa : mantissa) / powersOfTen[decimals];
  value = negative && mantissa == 0 ? -0.0 : value;
  return true;
}

// Where the library cannot convert floating point without a locale, the C library does the same
// more slowly, with a point for this thread.
#if defined(__cpp_lib_to_chars) && __cpp_lib_to_chars >= 201611L

/// False for what the two libraries may read differently, text after a number for instance.
bool parseWhole(std::string_view text, double& value) {
  const char* const end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stopped == end;
}

std::size_t print(double value, bool fixed, int precision, char* room, std::size_t size) {
  const auto format = fixed ? std::chars_format::fixed : std::chars_format::general;
  const auto [end, error] = std::to_chars(room, room + size, value, format, precision);
  return error == std::errc() ? static_cast<std::size_t>(end - room) : 0;
}

#else

bool parseWhole(std::string_view /*text*/, double& /*value*/) {
  return false;
}

std::size_t print(double value, bool fixed, int precision, char* room, std::size_t size) {
  const PlainLocale point;
  const int length = std::snprintf(room, size, fixed ? "%.*f" : "%.*g", precision, value);
  return length > 0 && static_cast<std::size_t>(length) < size ? static_cast<std::size_t>(length)
                                                               : 0;
}

#endif

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
  if (text.empty() || parseShortDecimal(text, value) || parseWhole(text, value)) {
    return value;
  }
  const PlainLocale point;
  value = std::strtod(std::string(text).c_str(), nullptr);
  // Not every C library keeps the sign of "-nan".
  return std::isnan(value) && text.front() == '-' ? std::copysign(value, -1.0) : value;
}

float parseFloat(std::string_view text) {
  return static_cast<float>(parseDouble(text));
}

std::string_view intText(int value, IntText& room) {
  const std::to_chars_result end = std::to_chars(room.data(), room.data() + room.size(), value);
  return {room.data(), static_cast<std::size_t>(end.ptr - room.data())};
}

std::string_view fixedText(double value, int precision, FixedText& room) {
  return {room.data(), print(value, true, precision, room.data(), room.size())};
}

std::string_view generalText(double value, GeneralText& room) {
  constexpr int digits = 6;
  constexpr double limits[] = {1e5, 1e4, 1e3, 1e2, 1e1, 1e0, 1e-1, 1e-2, 1e-3, 1e-4};
  const double size = std::fabs(value);
  if (!(size >= 1e-4 && size < 999999)) {
    return {room.data(), print(value, false, digits, room.data(), room.size())};
  }
  // The fixed form, without the zeros at its end, takes the library a third of the time.
  const double* const limit =
      std::find_if(std::begin(limits), std::end(limits), [size](double l) { return size >= l; });
  const int decimals = static_cast<int>(limit - limits);
  std::size_t length = print(value, true, decimals, room.data(), room.size());
  if (decimals > 0) {
    while (room[length - 1] == '0') {
      --length;
    }
    length -= room[length - 1] == '.' ? 1U : 0U;
  }
  return {room.data(), length};
}
