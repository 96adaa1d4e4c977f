#pragma once

#include <functional>
#include <string>
#include <string_view>

/// Takes printed text piece by piece, line ends included.
using TextSink = std::function<void(std::string_view)>;

/// Where the program prints. Standard output is gathered as the C library gathers it; standard
/// error hands over each piece at once.
void toStandardOutput(std::string_view text);
void toStandardError(std::string_view text);
/// Drops the text.
void toNowhere(std::string_view text);

/// What the C library's printf prints for these arguments, with a decimal point in every locale.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);
