#pragma once

#include <string>
#include <vector>

#include "tools/import/structure_file.h"

/// What the user chose; empty for the default, the best-fitting chain of the first model.
struct StructureChoice {
  std::string chain;
  std::string model;
};

/// A chain renumbered to a table.
struct FittedStructure {
  std::string pdb; ///< the file that `citrans -ref` reads
  std::vector<std::string>
      notes; ///< what was chosen, and each proline in how many models it is cis
};

/// Renumbers a chain by aligning its sequence with the table's, and looks at every proline's omega
/// in every model.
///
/// \param letters  the table's sequence, residue 1 first; "c" counts as cysteine
/// \param file  for messages
/// Throws ToolError(badData) for a chain or model that is not there, and when fewer than half of
/// the chain's residues agree with the table.
FittedStructure fitStructure(const std::vector<StructureModel>& models, const std::string& letters,
                             const StructureChoice& choice, const std::string& file);

/// Positions (1-based) in `letters` of each of `chain`'s letters by global alignment; 0 for a
/// letter that stands against a gap. Cost and memory grow with the product of the lengths.
std::vector<int> alignLetters(const std::string& letters, const std::string& chain);
