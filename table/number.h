#pragma once

#include <string_view>

/// Text to number, in one place.
///
/// Both functions follow the C library: leading white space and a sign are accepted, the
/// conversion stops at the first foreign character, and text that holds no number is 0. They do
/// not depend on the locale.

/// Decimal integer; values beyond 32 bits become the nearest limit.
int parseInt(std::string_view text);

/// Double-precision number as `strtod` reads it, hexadecimal, "inf" and "nan" included.
double parseDouble(std::string_view text);

/// `parseDouble` rounded to single precision. Text reaches `float` through `double` everywhere, so
/// that a table gives the same values to every reader.
float parseFloat(std::string_view text);
