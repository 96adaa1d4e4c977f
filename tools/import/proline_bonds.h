#pragma once

#include <string>
#include <vector>

#include "tools/import/structure_models.h"

/// What a structure says of the bond before one proline of a table.
struct ProlineBond {
  int position = 0;       ///< in the table
  std::string number;     ///< in the structure; empty when the proline or the residue before it
                          ///< is not there
  bool broken = false;    ///< no model has the two bonded, and one shows that they are not
  std::size_t models = 0; ///< in how many the angle omega can be seen
  std::size_t cis = 0;    ///< in how many of these it is nearer to 0 than to 180 degrees
};

/// The bond before each proline of the table but the first residue, in every model.
///
/// Only atoms of residues that are bonded make an angle: across a gap it would mean nothing.
///
/// \param chosen  the chain, from any of the models; the others' chain of that id is looked at
/// \param positions  of the chosen chain's residues in the table, 0 for none
/// \param letters  the table's sequence
std::vector<ProlineBond> prolineBonds(const std::vector<StructureModel>& models,
                                      const ModelChain& chosen, const std::vector<int>& positions,
                                      const std::string& letters);

/// One line about it, for people.
std::string prolineNote(const ProlineBond& bond);
