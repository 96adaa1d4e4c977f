#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "app/citrans.h"

namespace {

constexpr char knownFormats[] = "fFeEgG";
constexpr int largestPrecision = 99;
/// Significant digits of every number that tables store.
constexpr int storedDigits = 6;
constexpr long storedLimit = 1000000; // 10 to the power of storedDigits
constexpr double leastScaled = 1e5;   // with all those digits before the point

/// Trailing zeros of a fraction, and a point left alone, are not printed by 'g'.
char* withoutTrailingZeros(char* buf, char* end) {
  while (end[-1] == '0') {
    --end;
  }
  if (end[-1] == '.') {
    --end;
  }
  *end = '\0';
  return buf;
}

/// What "%.6g" prints, for sizes from 0.0001 up to a million, which need no exponent.
///
/// A float has 24 significant bits and the power of ten at most 21 besides its factors of two, so
/// their product is exact in double precision, and rounding it to the nearest integer, ties to
/// even, is what printf does. Returns false for other sizes.
bool writeSixDigits(float value, char* buf) {
  const double size = std::fabs(static_cast<double>(value));
  if (!(size >= 1e-4 && size < 1e6)) {
    return false;
  }
  int decimals = 0;
  double scaled = size;
  double scale = 1;
  while (scaled < leastScaled) {
    scale *= 10;
    scaled = size * scale;
    ++decimals;
  }
  long digits = std::lrint(scaled);
  if (digits >= storedLimit) {
    return false;
  }
  char* end = buf;
  if (std::signbit(value)) {
    *end++ = '-';
  }
  char reversed[16];
  int count = 0;
  for (; digits > 0 || count <= decimals; digits /= 10) {
    reversed[count++] = static_cast<char>('0' + digits % 10);
  }
  while (count > 0) {
    *end++ = reversed[--count];
    if (count == decimals && decimals > 0) {
      *end++ = '.';
    }
  }
  *end = '\0';
  return decimals > 0 ? withoutTrailingZeros(buf, end) != nullptr : true;
}

} // namespace

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
char* CITRANS::ftoa(float value, char* buf, char format, int precision) {
  if (format == 'g' && precision == storedDigits && writeSixDigits(value, buf)) {
    return buf;
  }
  const bool known = format != '\0' && std::strchr(knownFormats, format) != nullptr;
  char conversion[16] = "%";
  char* end = conversion + 1;
  if (precision >= 0) {
    const int digits = precision > largestPrecision ? largestPrecision : precision;
    end += std::snprintf(end, 8, ".%d", digits);
  }
  *end++ = 'l';
  *end++ = known ? format : 'f';
  *end = '\0';
  std::sprintf(buf, conversion, static_cast<double>(value));
  return buf;
}
#pragma GCC diagnostic pop

char* CITRANS::itoa(int value, char* buf, int /*base*/) {
  constexpr std::ptrdiff_t longest = 11; // "-2147483648"
  *std::to_chars(buf, buf + longest, value).ptr = '\0';
  return buf;
}
