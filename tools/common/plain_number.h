#pragma once

#include <optional>
#include <string_view>

#include "table/number.h"

/// The value of a text that is a plain decimal number and nothing else: a sign or none, digits with
/// one point or none. Nothing for any other text; where a cell or an option must not be misread.
inline std::optional<double> plainNumber(std::string_view text) {
  bool digits = false;
  bool point = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool sign = i == 0 && (c == '-' || c == '+');
    if (c == '.' && !point) {
      point = true;
    } else if (c >= '0' && c <= '9') {
      digits = true;
    } else if (!sign) {
      return {};
    }
  }
  return digits ? std::optional<double>(parseDouble(text)) : std::nullopt;
}
