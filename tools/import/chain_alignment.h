#pragma once

#include <string>
#include <vector>

#include "tools/import/structure_models.h"

/// Letters of a chain's residues, 'X' for those that are no amino acids of the twenty.
std::string lettersOf(const ModelChain& chain);

/// Positions (1-based) of a chain's residues in a table's sequence by global alignment; 0 for a
/// residue that stands against a gap.
///
/// Ends may hang over. Residues of the chain may be missing where it is broken, at no cost. Among
/// places that suit the letters alike, the one wins that is as far from the structure's number as
/// most are.
///
/// \param letters  the table's sequence, residue 1 first; small letters count as capitals
/// Cost and memory grow with the product of the lengths.
std::vector<int> alignChain(const std::string& letters, const ModelChain& chain);

/// How many residues of the chain have the table's letter at their position.
std::size_t countAgreements(const std::string& letters, const ModelChain& chain,
                            const std::vector<int>& positions);
