#pragma once

#include <string>
#include <string_view>

/// One-letter code of an amino acid's three-letter name, capitals or not; 'X' for any other.
char oneLetterCode(std::string_view name);

/// The same, also for the names that programs give to its states (HIE, LYS+, CYSS, cPRO).
char letterOfForm(std::string_view name);

/// Three-letter name of an amino acid's capital letter; "UNK" for any other.
std::string threeLetterName(char letter);

/// Whether a name says that a cysteine is oxidised.
bool isOxidisedCysteine(std::string_view name);

/// The text in capitals, as far as it is ASCII.
std::string capitals(std::string_view text);
