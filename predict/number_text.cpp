#include <algorithm>
#include <cstring>

#include "app/citrans.h"
#include "table/number.h"
#include "table/text_sink.h"

namespace {

constexpr int largestPrecision = 99;
/// Significant digits of every number that tables store.
constexpr int storedDigits = 6;

char* copyText(std::string_view text, char* buf) {
  buf[text.copy(buf, text.size())] = '\0';
  return buf;
}

} // namespace

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
char* CITRANS::ftoa(float value, char* buf, char format, int precision) {
  if (format == 'g' && precision == storedDigits) {
    GeneralText text;
    return copyText(generalText(static_cast<double>(value), text), buf);
  }
  const bool known = format != '\0' && std::strchr("fFeEgG", format) != nullptr;
  const std::string digits =
      precision < 0 ? "" : "." + std::to_string(std::min(precision, largestPrecision));
  const std::string conversion = "%" + digits + "l" + (known ? format : 'f');
  return copyText(formatted(conversion.c_str(), static_cast<double>(value)), buf);
}
#pragma GCC diagnostic pop

char* CITRANS::itoa(int value, char* buf, int /*base*/) {
  IntText text;
  return copyText(intText(value, text), buf);
}
