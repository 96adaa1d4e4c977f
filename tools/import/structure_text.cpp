#include "tools/import/structure_text.h"

#include <algorithm>
#include <cstdio>

#include "tools/common/tool.h"
#include "tools/import/chain_alignment.h"

namespace {

/// Cells of an alignment, at most: what they take of memory in bytes.
constexpr std::size_t largestAlignment = 400'000'000;
/// What the columns of a PDB file hold.
constexpr int largestNumber = 9999;
constexpr double largestCoordinate = 9999.999;
constexpr double smallestCoordinate = -999.999;
constexpr double largestB = 999.99;

/// "chain A", or what to call one without a letter.
std::string chainWords(const std::string& id) {
  return id.empty() ? "the only chain" : "chain " + id;
}

const StructureModel& chooseModel(const std::vector<StructureModel>& models,
                                  const std::string& wanted, const std::string& file) {
  for (const StructureModel& model : models) {
    if (wanted.empty() || model.id == wanted) {
      return model;
    }
  }
  throw ToolError(ToolStatus::badData, file + ": no model " + wanted);
}

/// What there is, to end the message about a chain that is not.
std::string chainsOf(const StructureModel& model) {
  std::string text;
  for (const ModelChain& chain : model.chains) {
    text += (text.empty() ? "; there is " : ", ") + chainWords(chain.id);
  }
  return text;
}

struct Fit {
  const ModelChain* chain = nullptr;
  std::vector<int> positions;
  std::size_t same = 0;
};

Fit chooseChain(const StructureModel& model, const std::string& letters, const std::string& wanted,
                const std::string& file) {
  Fit best;
  for (const ModelChain& chain : model.chains) {
    if (!wanted.empty() && chain.id != wanted) {
      continue;
    }
    if ((letters.size() + 1) * (chain.residues.size() + 1) > largestAlignment) {
      throw ToolError(ToolStatus::badData,
                      file + ": " + chainWords(chain.id) + " is too long to align");
    }
    std::vector<int> positions = alignChain(letters, chain);
    const std::size_t same = countAgreements(letters, chain, positions);
    if (best.chain == nullptr || same > best.same) {
      best = {&chain, std::move(positions), same};
    }
  }
  if (best.chain == nullptr) {
    throw ToolError(ToolStatus::badData, file + ": no chain " + wanted + chainsOf(model));
  }
  if (best.same * 2 < best.chain->residues.size()) {
    throw ToolError(ToolStatus::badData,
                    file + ": " + chainWords(best.chain->id) +
                        " is another sequence than the table's: " + std::to_string(best.same) +
                        " of " + std::to_string(best.chain->residues.size()) + " residues agree");
  }
  return best;
}

std::string atomLine(int serial, int number, const std::string& residue, const ModelAtom& atom) {
  const bool wide = atom.name.size() >= 4 || atom.element.size() > 1;
  const std::string name = wide ? atom.name : " " + atom.name;
  char line[128];
  std::snprintf(line, sizeof line,
                "ATOM  %5d %-4.4s %3.3s A%4d    %8.3f%8.3f%8.3f%6.2f%6.2f%12.2s\n", serial % 100000,
                name.c_str(), residue.c_str(), number, atom.x, atom.y, atom.z, 1.0,
                std::clamp(atom.bFactor, 0.0, largestB), atom.element.c_str());
  return line;
}

/// Whether the columns of a PDB file have room; not for a coordinate that is no number either.
bool fitsColumns(int number, const ModelAtom& atom) {
  const auto inside = [](double value) {
    return value >= smallestCoordinate && value <= largestCoordinate;
  };
  return number <= largestNumber && inside(atom.x) && inside(atom.y) && inside(atom.z);
}

std::string pdbText(const Fit& fit, const std::string& file) {
  std::string text =
      "REMARK   C" + chainWords(fit.chain->id).substr(1) + " of " + file + ", renumbered\n";
  int serial = 0;
  for (std::size_t i = 0; i < fit.chain->residues.size(); ++i) {
    const ModelResidue& residue = fit.chain->residues[i];
    for (const ModelAtom& atom : residue.atoms) {
      if (fit.positions[i] > 0 && !fitsColumns(fit.positions[i], atom)) {
        throw ToolError(ToolStatus::badData, file + ": atom " + atom.name + " of residue " +
                                                 residue.number +
                                                 " does not fit the columns of a PDB file");
      }
      if (fit.positions[i] > 0) {
        text += atomLine(++serial, fit.positions[i], residue.name, atom);
      }
    }
  }
  return text + "TER\nEND\n";
}

} // namespace

FittedStructure fitStructure(const std::vector<StructureModel>& models, const std::string& letters,
                             const StructureChoice& choice, const std::string& file) {
  const StructureModel& model = chooseModel(models, choice.model, file);
  const Fit fit = chooseChain(model, letters, choice.chain, file);
  FittedStructure fitted;
  fitted.pdb = pdbText(fit, file);
  fitted.model = model.id;
  fitted.chain = fit.chain->id;
  fitted.residues = fit.chain->residues.size();
  fitted.agreements = fit.same;
  fitted.prolines = prolineBonds(models, *fit.chain, fit.positions, letters);
  return fitted;
}

std::vector<std::string> structureNotes(const FittedStructure& fitted) {
  std::vector<std::string> notes = {chainWords(fitted.chain) + " of model " + fitted.model + ": " +
                                    std::to_string(fitted.agreements) + " of " +
                                    std::to_string(fitted.residues) +
                                    " residues agree with the table"};
  for (const ProlineBond& bond : fitted.prolines) {
    notes.push_back(prolineNote(bond));
  }
  return notes;
}

std::vector<std::string> structureWarnings(const FittedStructure& fitted) {
  std::vector<std::string> warnings;
  for (const ProlineBond& bond : fitted.prolines) {
    if (bond.broken) {
      warnings.push_back("proline " + std::to_string(bond.position) +
                         " is not bonded to the residue before it: the angle that citrans -ref "
                         "shows there means nothing");
    }
  }
  return warnings;
}
