#pragma once

#include <string>
#include <string_view>

/// Text and numbers as the report prints them.

/// Text made safe for HTML and XML, as content and between double quotes: the five characters with
/// a meaning become entities; control characters and bytes that are no UTF-8 become U+FFFD.
std::string escaped(std::string_view text);

/// A number with so many decimals and a typographic minus; "n/a" when it is not finite. What
/// rounds to zero has no sign.
std::string decimal(double value, int decimals);

/// The same with a plus before positive values.
std::string signedDecimal(double value, int decimals);

/// Plain "%.*f" with a hyphen, for coordinates and files that programs read.
std::string plainDecimal(double value, int decimals);

/// Odds of exp(|logRatio|) to 1 in words: "3.2 to 1", "450 to 1", "4 × 10⁶ to 1"; "n/a" when it is
/// not finite.
std::string oddsText(double logRatio);

/// "Ser" for "S"; "Cys" also for "c", "His" for "h"; "Xaa" for what is no residue.
std::string residueType(const std::string& oneLetterName);

/// A path without its folders; other text as it is.
std::string lastPart(const std::string& path);
