#include "tools/import/structure_file.h"

#include <set>
#include <unistd.h>

#define GEMMI_READ_COOR_IMPLEMENTATION
#include <gemmi/read_coor.hpp>

#include "tools/common/tool.h"
#include "tools/import/deposition.h"

namespace {

/// Selenomethionine counts as methionine, its selenium as sulfur.
ModelAtom convertAtom(const gemmi::Atom& atom, bool selenium) {
  ModelAtom converted;
  const bool isSelenium = selenium && atom.name == "SE";
  converted.name = isSelenium ? "SD" : atom.name;
  converted.element = isSelenium ? "S" : atom.element.uname();
  converted.x = atom.pos.x;
  converted.y = atom.pos.y;
  converted.z = atom.pos.z;
  converted.bFactor = static_cast<double>(atom.b_iso);
  return converted;
}

ModelResidue convertResidue(const gemmi::Residue& residue) {
  const bool selenium = residue.name == "MSE";
  ModelResidue converted;
  converted.number = residue.seqid.str();
  converted.name = selenium ? "MET" : residue.name;
  std::set<std::string> known; // of alternate locations the first stays
  for (const gemmi::Atom& atom : residue.atoms) {
    const ModelAtom added = convertAtom(atom, selenium);
    if (known.insert(added.name).second) {
      converted.atoms.push_back(added);
    }
  }
  return converted;
}

bool hasBackbone(const gemmi::Residue& residue) {
  return residue.find_atom("CA", '*', gemmi::El::C) != nullptr;
}

} // namespace

std::vector<StructureModel> readStructure(const std::string& path) {
  if (access(path.c_str(), R_OK) != 0) {
    throw ToolError(ToolStatus::inputMissing, path + ": cannot read the file");
  }
  gemmi::Structure structure;
  try {
    structure = gemmi::read_structure_gz(path);
  } catch (const std::exception& error) {
    const std::string lines = error.what(); // several for a cut gzip file
    const std::string what = lines.substr(0, lines.find('\n'));
    const bool named = what.compare(0, path.size() + 1, path + ":") == 0;
    throw ToolError(ToolStatus::badData, named ? what : path + ": " + what);
  }
  structure.merge_chain_parts();
  std::vector<StructureModel> models;
  bool any = false;
  for (const gemmi::Model& model : structure.models) {
    models.push_back({model.name, {}});
    for (const gemmi::Chain& chain : model.chains) {
      ModelChain converted{chain.name, {}};
      for (const gemmi::Residue& residue : chain.residues) {
        if (hasBackbone(residue)) {
          converted.residues.push_back(convertResidue(residue));
        }
      }
      if (!converted.residues.empty()) {
        any = true;
        models.back().chains.push_back(std::move(converted));
      }
    }
  }
  if (!any) {
    throw ToolError(ToolStatus::badData, path + ": no protein atoms found");
  }
  return models;
}
