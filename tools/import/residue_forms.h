#pragma once

#include <string>
#include <string_view>

/// The amino acid that a residue name of a coordinate file stands for.
///
/// Names of protonation, bonding and chain-end states count as their amino acid, in capitals or
/// not: "HIE", "CYX", "ASH", "LYS+", "CYSS", "cPRO", "NALA". Selenomethionine is methionine.
///
/// \return three letters in capitals; empty when it is no such name
std::string aminoAcidNamed(std::string_view name);

/// The element of an atom of a protein by its name, of which old files put a digit first: its
/// first other character, as a capital; empty for a name without one.
std::string elementNamed(std::string_view atomName);

/// Whether it is a name of water.
bool isWaterName(std::string_view name);
