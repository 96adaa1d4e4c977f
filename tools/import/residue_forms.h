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

/// Whether it is a name of water.
bool isWaterName(std::string_view name);
