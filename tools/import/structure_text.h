#pragma once

#include <string>
#include <vector>

#include "tools/import/proline_bonds.h"
#include "tools/import/structure_models.h"

/// What the user chose; empty for the default, the best-fitting chain of the first model.
struct StructureChoice {
  std::string chain;
  std::string model;
};

/// A chain renumbered to a table.
struct FittedStructure {
  std::string pdb;                   ///< the file that `citrans -ref` reads
  std::string model;                 ///< id of the model
  std::string chain;                 ///< id of the chain; may be empty
  std::size_t residues = 0;          ///< of the chain
  std::size_t agreements = 0;        ///< of these, how many are the table's
  std::vector<ProlineBond> prolines; ///< of the table, in its order
};

/// Renumbers a chain by aligning its sequence with the table's, and looks at the bond before every
/// proline in every model.
///
/// \param letters  the table's sequence, residue 1 first; "c" counts as cysteine
/// \param file  for messages
/// Throws ToolError(badData) for a chain or model that is not there, and when fewer than half of
/// the chain's residues agree with the table.
FittedStructure fitStructure(const std::vector<StructureModel>& models, const std::string& letters,
                             const StructureChoice& choice, const std::string& file);

/// What was chosen and found, for people: a line about the chain, then one for each proline.
std::vector<std::string> structureNotes(const FittedStructure& fitted);

/// Where `citrans -ref` will show an angle that means nothing, one line each: at prolines that the
/// structure does not have bonded to the residue before them.
std::vector<std::string> structureWarnings(const FittedStructure& fitted);
