#pragma once

#include <string>
#include <string_view>

/// One-letter code of the amino acid that a residue name stands for, capitals or not; 'X' when it
/// is none.
///
/// Names of protonation, bonding and chain-end states count as their amino acid: "HIE", "CYX",
/// "ASH", "LYS+", "CYSS", "cPRO", "NALA". Selenomethionine is methionine.
char oneLetterCode(std::string_view name);

/// Three-letter name of an amino acid's capital letter; "UNK" for any other.
std::string threeLetterName(char letter);

/// The same without copying; empty for any other.
std::string_view nameOfLetter(char letter);

/// Three-letter name of the amino acid that a residue name stands for; empty when it is none.
std::string aminoAcidNamed(std::string_view name);

/// Whether a name says that a cysteine is oxidised.
bool isOxidisedCysteine(std::string_view name);

/// The text in capitals, as far as it is ASCII.
std::string capitals(std::string_view text);
