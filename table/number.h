#pragma once

#include <string_view>

/// Text to number, in one place.
///
/// The functions below follow the C library: leading white space and a sign are accepted, the
/// conversion stops at the first foreign character, and text that holds no number is 0. They do
/// not depend on the locale.

/// The text without white space (the blank and the codes 9 to 13) at its ends.
std::string_view trimmed(std::string_view text);

/// Decimal integer; values beyond 32 bits become the nearest limit.
int parseInt(std::string_view text);

/// Double-precision number as `strtod` reads it, hexadecimal, "inf" and "nan" included.
double parseDouble(std::string_view text);

/// `parseDouble` rounded to single precision. Text reaches `float` through `double` everywhere, so
/// that a table gives the same values to every reader.
float parseFloat(std::string_view text);
