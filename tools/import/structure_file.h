#pragma once

#include <string>
#include <vector>

/// One atom of a structure file, Angstrom.
struct ModelAtom {
  std::string name;
  std::string element;
  double x = 0;
  double y = 0;
  double z = 0;
  double bFactor = 0;
};

/// One residue with the first of its alternate locations.
struct ModelResidue {
  std::string number; ///< the author's, with insertion code
  std::string name;   ///< three letters, "MET" for selenomethionine
  std::vector<ModelAtom> atoms;
};

struct ModelChain {
  std::string id;
  std::vector<ModelResidue> residues; ///< amino acids only
};

struct StructureModel {
  std::string id;
  std::vector<ModelChain> chains;
};

/// Reads an mmCIF or PDB file, gzipped or not. Throws ToolError(inputMissing) when it cannot be
/// read and ToolError(badData) when it holds no atoms of a protein.
std::vector<StructureModel> readStructure(const std::string& path);
