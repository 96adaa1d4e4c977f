#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/import/structure_models.h"

/// Adds the atoms of the first data block of an mmCIF text that has any to the builder.
///
/// The authors' names and numbers count where a row has them, the others elsewhere. Columns for
/// occupancy, B and model may be missing.
///
/// \param file  name for messages
/// \param warnings  out: gets a line for data blocks and for rows that are left out
/// Throws ToolError(badData) for a text that is no CIF file, one without atoms, and an ATOM row
/// whose coordinates are no numbers.
void readMmcifAtoms(std::string_view text, const std::string& file, ModelBuilder& builder,
                    std::vector<std::string>& warnings);
