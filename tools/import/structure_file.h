#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/import/structure_models.h"

/// What a structure file holds of proteins.
struct Structure {
  std::vector<StructureModel> models;
  std::vector<std::string> warnings; ///< what was left out, one line each
};

/// Reads the bytes of an mmCIF or PDB file, gzipped or not; which it is shows from the content.
///
/// \param name  of the file, for messages
/// Throws ToolError(badData) when it is neither, is damaged or cut short, or holds no atoms of a
/// protein.
Structure readStructure(std::string_view bytes, const std::string& name);
