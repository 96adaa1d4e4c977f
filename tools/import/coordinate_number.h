#pragma once

#include <optional>
#include <string_view>

/// A decimal number that takes the whole text, white space at its ends apart; nothing otherwise,
/// for a number beyond the range of `double`, and for the words that stand for no number.
std::optional<double> wholeNumber(std::string_view text);

/// Whether the text is a residue number: a whole number, perhaps negative, perhaps followed by one
/// letter of insertion.
bool isResidueNumber(std::string_view text);
