#pragma once

#include <array>
#include <string_view>

/// Text to number and number to text, in one place.
///
/// Nothing here depends on the locale, not even in a program that has set one with a decimal
/// comma. Text to number follows the C library in the locale "C": leading white space and a sign
/// are accepted, the conversion stops at the first foreign character, and text that holds no number
/// is 0.

/// The text without white space (the blank and the codes 9 to 13) at its ends.
std::string_view trimmed(std::string_view text);

/// Decimal integer; values beyond 32 bits become the nearest limit.
int parseInt(std::string_view text);

/// Double-precision number as `strtod` reads it, hexadecimal, "inf" and "nan" included.
double parseDouble(std::string_view text);

/// `parseDouble` rounded to single precision. Text reaches `float` through `double` everywhere, so
/// that a table gives the same values to every reader.
float parseFloat(std::string_view text);

/// Room for the texts below.
using IntText = std::array<char, 12>;
using FixedText = std::array<char, 64>;
using GeneralText = std::array<char, 32>;

/// What printf prints for "%d".
std::string_view intText(int value, IntText& room);
/// What printf prints for "%.*f"; empty when that needs more than the room.
std::string_view fixedText(double value, int precision, FixedText& room);
/// What printf prints for "%.6g".
std::string_view generalText(double value, GeneralText& room);
