#include "tools/import/proline_bonds.h"

#include <algorithm>
#include <cmath>

#include "structure/pdb.h"
#include "tools/import/chain_alignment.h"

namespace {

constexpr float largestCisOmega = 90;

CORdata recordOf(const ModelResidue& residue, const char* name) {
  CORdata record;
  const ModelAtom* const atom = residue.atom(name);
  if (atom != nullptr) {
    record.atomName = name;
    record.x = static_cast<float>(atom->x);
    record.y = static_cast<float>(atom->y);
    record.z = static_cast<float>(atom->z);
  }
  return record;
}

/// Degrees; `PDB::noAngle` when an atom is missing.
float omegaBetween(const ModelResidue& before, const ModelResidue& here) {
  return PDB().getDihedralAngle(recordOf(before, "CA"), recordOf(before, "C"), recordOf(here, "N"),
                                recordOf(here, "CA"));
}

const ModelChain* chainIn(const StructureModel& model, const std::string& id) {
  const auto found = std::find_if(model.chains.begin(), model.chains.end(),
                                  [&id](const ModelChain& chain) { return chain.id == id; });
  return found == model.chains.end() ? nullptr : &*found;
}

/// Index of the residue in a chain, most likely `guess`; 0 for none and for the first, before
/// which there is no bond.
std::size_t indexOf(const ModelChain& chain, const ModelResidue& wanted, std::size_t guess) {
  const auto same = [&wanted](const ModelResidue& residue) {
    return residue.number == wanted.number && residue.name == wanted.name;
  };
  if (guess < chain.residues.size() && same(chain.residues[guess])) {
    return guess;
  }
  const auto found = std::find_if(chain.residues.begin(), chain.residues.end(), same);
  return found == chain.residues.end() ? 0
                                       : static_cast<std::size_t>(found - chain.residues.begin());
}

void lookAt(const std::vector<StructureModel>& models, const ModelChain& chosen, std::size_t index,
            ProlineBond& bond) {
  bool apart = false;
  bool bonded = false;
  for (const StructureModel& model : models) {
    const ModelChain* const chain = chainIn(model, chosen.id);
    const std::size_t at = chain == nullptr ? 0 : indexOf(*chain, chosen.residues[index], index);
    if (at == 0) {
      continue;
    }
    const ModelResidue& before = chain->residues[at - 1];
    const ModelResidue& here = chain->residues[at];
    const Bond kind = bondBetween(before, here);
    apart = apart || kind == Bond::no;
    bonded = bonded || kind == Bond::yes;
    const float omega = kind == Bond::yes ? omegaBetween(before, here) : PDB::noAngle;
    if (omega < PDB::noAngle) {
      ++bond.models;
      bond.cis += std::fabs(omega) < largestCisOmega ? 1U : 0U;
    }
  }
  bond.broken = apart && !bonded;
}

} // namespace

std::vector<ProlineBond> prolineBonds(const std::vector<StructureModel>& models,
                                      const ModelChain& chosen, const std::vector<int>& positions,
                                      const std::string& letters) {
  std::vector<std::size_t> indices(letters.size() + 1, positions.size());
  for (std::size_t i = 0; i < positions.size(); ++i) {
    indices[static_cast<std::size_t>(positions[i])] = i;
  }
  std::vector<ProlineBond> bonds;
  for (std::size_t place = 2; place <= letters.size(); ++place) {
    if (letters[place - 1] != 'P') {
      continue;
    }
    ProlineBond bond;
    bond.position = static_cast<int>(place);
    const std::size_t index = indices[place];
    if (index > 0 && index < positions.size() && positions[index - 1] == bond.position - 1) {
      bond.number = chosen.residues[index].number;
      lookAt(models, chosen, index, bond);
    }
    bonds.push_back(bond);
  }
  return bonds;
}

std::string prolineNote(const ProlineBond& bond) {
  const std::string which = "proline " + std::to_string(bond.position);
  if (bond.number.empty()) {
    return which + ": it or the residue before it is not in the structure";
  }
  const std::string found = which + " (" + bond.number + " in the structure): ";
  if (bond.models == 0) {
    return found +
           (bond.broken ? "it is not bonded to the residue before it" : "atoms are missing");
  }
  return found + "cis in " + std::to_string(bond.cis) + " of " + std::to_string(bond.models) +
         (bond.models == 1 ? " model" : " models");
}
