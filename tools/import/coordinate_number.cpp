#include "tools/import/coordinate_number.h"

#include <algorithm>
#include <cmath>

#include "table/number.h"

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

void skipSign(std::string_view& text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    text.remove_prefix(1);
  }
}

std::size_t skipDigits(std::string_view& text) {
  const auto* const end = std::find_if_not(text.begin(), text.end(), isDigit);
  const auto count = static_cast<std::size_t>(end - text.begin());
  text.remove_prefix(count);
  return count;
}

} // namespace

std::optional<double> wholeNumber(std::string_view text) {
  text = trimmed(text);
  std::string_view rest = text;
  skipSign(rest);
  std::size_t digits = skipDigits(rest);
  if (!rest.empty() && rest.front() == '.') {
    rest.remove_prefix(1);
    digits += skipDigits(rest);
  }
  if (digits > 0 && !rest.empty() && (rest.front() == 'e' || rest.front() == 'E')) {
    rest.remove_prefix(1);
    skipSign(rest);
    digits = skipDigits(rest);
  }
  if (digits == 0 || !rest.empty()) {
    return std::nullopt;
  }
  const double value = parseDouble(text);
  return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

bool isResidueNumber(std::string_view text) {
  if (!text.empty() && text.front() == '-') {
    text.remove_prefix(1);
  }
  return skipDigits(text) > 0 && (text.empty() || (text.size() == 1 && isLetter(text.front())));
}
