#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/import/structure_models.h"

/// Adds the atoms of a PDB text, with line ends of one character, to the builder.
///
/// Columns count; a line whose columns hold no residue number or coordinates is read by its words
/// where these make sense. Residue names may take four columns. Columns 73 to 76 name the chain
/// where column 22 does not, unless the line is numbered in columns 77 to 80. MODEL, ENDMDL and END
/// part models, TER parts chains.
///
/// \param file  name for messages
/// \param warnings  out: gets a line when HETATM lines had to be left out
/// \return whether the text has any ATOM or HETATM line
/// Throws ToolError(badData), with the line, for an ATOM line that cannot be read or is cut short.
bool readPdbAtoms(std::string_view text, const std::string& file, ModelBuilder& builder,
                  std::vector<std::string>& warnings);
