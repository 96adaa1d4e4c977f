#pragma once

#include <string>
#include <vector>

#include "tools/import/deposition.h"

/// Which residue of a polymer each shift belongs to.
struct Numbering {
  std::vector<int> positions; ///< per shift, 1 to the number of residues; 0 when none
  std::string way;            ///< for people: how the numbers were read
  bool authors = false;       ///< whether the shifts count as the authors do
  std::size_t misfits = 0;    ///< residues whose names differ
  std::size_t fits = 0;       ///< residues whose names agree
};

/// Aligns the residue numbers of some shifts with a polymer by residue names: as the deposition's
/// own count, as authors' numbers, or moved by a constant, whichever fits best.
///
/// One residue in twenty may bear another name. Throws ToolError(badData) when none fits so well;
/// `place` begins the message.
Numbering alignNumbers(const Polymer& polymer, const std::vector<Shift>& shifts,
                       const std::string& place);
