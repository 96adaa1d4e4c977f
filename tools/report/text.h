#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Text and numbers as the report prints them.

/// Text made safe for HTML and XML, as content and between double quotes: the five characters with
/// a meaning become entities; control characters, marks that turn the direction of the text around
/// them, and bytes that are no UTF-8 become U+FFFD.
std::string escaped(std::string_view text);

/// A number with so many decimals and a typographic minus; "n/a" when it is not finite. What
/// rounds to zero has no sign.
std::string decimal(double value, int decimals);

/// The same with a plus before positive values.
std::string signedDecimal(double value, int decimals);

/// Plain "%.*f" with a hyphen, for coordinates and files that programs read.
std::string plainDecimal(double value, int decimals);

/// A number as it was printed, or "n/a" when it is none.
std::string printedText(double value, const std::string& printed);

/// Odds of exp(|logRatio|) to 1 in words: "3.2 to 1", "450 to 1", "4 × 10⁶ to 1"; "n/a" when it is
/// not finite.
std::string oddsText(double logRatio);

/// "Ser" for "S"; "Cys" also for "c", "His" for "h"; "Xaa" for what is no residue.
std::string residueType(const std::string& oneLetterName);

/// A text of at most so many characters (not bytes); a longer one ends in an ellipsis.
std::string shortened(const std::string& text, std::size_t longest);

/// The name of an atom as a reader knows it: C of the tables is C′.
std::string atomLabel(const std::string& atom);

/// "1 proline", "8 prolines".
std::string counted(std::size_t count, const std::string& noun);

/// "a", "a and b", "a, b and c".
std::string joined(const std::vector<std::string>& items);

/// Whether a title is the path of a file, by its beginning or its ending; "apo/holo" is none.
bool isPath(const std::string& text);

/// A path without its folders.
std::string lastPart(const std::string& path);
