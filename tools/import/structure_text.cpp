#include "tools/import/structure_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "structure/pdb.h"
#include "tools/common/tool.h"
#include "tools/import/deposition.h"

namespace {

constexpr int matchScore = 3;
constexpr int mismatchScore = -2;
constexpr int gapScore = -2;
/// Omega nearer to 0 than to 180 degrees.
constexpr float largestCisOmega = 90;
/// Cells of an alignment, at most: what they take of memory in bytes.
constexpr std::size_t largestAlignment = 400'000'000;
/// What the columns of a PDB file hold.
constexpr int largestNumber = 9999;
constexpr double largestCoordinate = 9999.999;
constexpr double smallestCoordinate = -999.999;
constexpr double largestB = 999.99;

std::string lettersOf(const ModelChain& chain) {
  std::string letters;
  for (const ModelResidue& residue : chain.residues) {
    letters += oneLetterCode(residue.name);
  }
  return letters;
}

std::size_t agreements(const std::string& letters, const std::string& chain,
                       const std::vector<int>& positions) {
  std::size_t same = 0;
  for (std::size_t i = 0; i < chain.size(); ++i) {
    same += positions[i] > 0 && letters[static_cast<std::size_t>(positions[i]) - 1] == chain[i];
  }
  return same;
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
    const std::string own = lettersOf(chain);
    if ((letters.size() + 1) * (own.size() + 1) > largestAlignment) {
      throw ToolError(ToolStatus::badData, file + ": chain " + chain.id + " is too long to align");
    }
    const std::vector<int> positions = alignLetters(letters, own);
    const std::size_t same = agreements(letters, own, positions);
    if (best.chain == nullptr || same > best.same) {
      best = {&chain, positions, same};
    }
  }
  if (best.chain == nullptr) {
    throw ToolError(ToolStatus::badData, file + ": no chain " + wanted);
  }
  if (best.same * 2 < best.chain->residues.size()) {
    throw ToolError(ToolStatus::badData,
                    file + ": chain " + best.chain->id +
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
  std::string text = "REMARK   Chain " + fit.chain->id + " of " + file + ", renumbered\n";
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

CORdata recordOf(const ModelResidue& residue, const char* name) {
  CORdata record;
  for (const ModelAtom& atom : residue.atoms) {
    if (atom.name == name) {
      record.atomName = name;
      record.x = static_cast<float>(atom.x);
      record.y = static_cast<float>(atom.y);
      record.z = static_cast<float>(atom.z);
    }
  }
  return record;
}

/// Omega of the residue at an index of the chain; `PDB::noAngle` when an atom is missing.
float omegaAt(const ModelChain& chain, std::size_t index) {
  const ModelResidue& before = chain.residues[index - 1];
  const ModelResidue& here = chain.residues[index];
  return PDB().getDihedralAngle(recordOf(before, "CA"), recordOf(before, "C"), recordOf(here, "N"),
                                recordOf(here, "CA"));
}

const ModelChain* chainIn(const StructureModel& model, const std::string& id) {
  for (const ModelChain& chain : model.chains) {
    if (chain.id == id) {
      return &chain;
    }
  }
  return nullptr;
}

std::string prolineNote(const std::vector<StructureModel>& models, const ModelChain& chosen,
                        std::size_t index, int position) {
  const ModelResidue& proline = chosen.residues[index];
  std::size_t cis = 0;
  std::size_t seen = 0;
  for (const StructureModel& model : models) {
    const ModelChain* const chain = chainIn(model, chosen.id);
    // Models of one structure have the same residues; one that has not is not counted.
    if (chain == nullptr || index >= chain->residues.size() ||
        chain->residues[index].number != proline.number) {
      continue;
    }
    const float omega = omegaAt(*chain, index);
    if (omega < PDB::noAngle) {
      ++seen;
      cis += std::fabs(omega) < largestCisOmega ? 1U : 0U;
    }
  }
  const std::string which =
      "proline " + std::to_string(position) + " (" + proline.number + " in the structure): ";
  return which + (seen == 0 ? "atoms are missing"
                            : "cis in " + std::to_string(cis) + " of " + std::to_string(seen) +
                                  (seen == 1 ? " model" : " models"));
}

/// What the structure says of each proline of the table, one line each.
std::vector<std::string> prolineNotes(const std::vector<StructureModel>& models, const Fit& fit,
                                      const std::string& letters) {
  std::vector<std::string> notes;
  for (std::size_t place = 2; place <= letters.size(); ++place) {
    if (letters[place - 1] != 'P') {
      continue;
    }
    const int position = static_cast<int>(place);
    const auto found = std::find(fit.positions.begin(), fit.positions.end(), position);
    const auto index = static_cast<std::size_t>(found - fit.positions.begin());
    // Across a gap the angle would be one of atoms that are not bonded.
    if (found == fit.positions.end() || index == 0 || fit.positions[index - 1] != position - 1) {
      notes.push_back("proline " + std::to_string(position) +
                      ": it or the residue before it is not in the structure");
    } else {
      notes.push_back(prolineNote(models, *fit.chain, index, position));
    }
  }
  return notes;
}

} // namespace

std::vector<int> alignLetters(const std::string& letters, const std::string& chain) {
  enum Step : std::uint8_t { both, skipLetter, skipChain };
  const std::size_t width = chain.size() + 1;
  std::vector<Step> steps((letters.size() + 1) * width, skipLetter);
  std::vector<int> above(width);
  std::vector<int> row(width);
  // Ends may hang over free of charge: a table often has tags that a structure has not.
  for (std::size_t i = 0; i <= letters.size(); ++i) {
    for (std::size_t j = 0; j < width; ++j) {
      if (i == 0 || j == 0) {
        row[j] = 0;
        steps[i * width + j] = i == 0 ? skipChain : skipLetter;
        continue;
      }
      const char letter = letters[i - 1] == 'c' ? 'C' : letters[i - 1];
      const int same = above[j - 1] + (letter == chain[j - 1] ? matchScore : mismatchScore);
      const int down = above[j] + (j == chain.size() ? 0 : gapScore);
      const int right = row[j - 1] + (i == letters.size() ? 0 : gapScore);
      row[j] = std::max({same, down, right});
      steps[i * width + j] = row[j] == same ? both : row[j] == down ? skipLetter : skipChain;
    }
    std::swap(above, row);
  }
  std::vector<int> positions(chain.size(), 0);
  for (std::size_t i = letters.size(), j = chain.size(); i > 0 && j > 0;) {
    const Step step = steps[i * width + j];
    if (step == both) {
      positions[j - 1] = static_cast<int>(i);
    }
    i -= step != skipChain ? 1U : 0U;
    j -= step != skipLetter ? 1U : 0U;
  }
  return positions;
}

FittedStructure fitStructure(const std::vector<StructureModel>& models, const std::string& letters,
                             const StructureChoice& choice, const std::string& file) {
  const StructureModel& model = chooseModel(models, choice.model, file);
  const Fit fit = chooseChain(model, letters, choice.chain, file);
  FittedStructure fitted;
  fitted.pdb = pdbText(fit, file);
  fitted.notes.push_back(
      "chain " + fit.chain->id + " of model " + model.id + ": " + std::to_string(fit.same) +
      " of " + std::to_string(fit.chain->residues.size()) + " residues agree with the table");
  const std::vector<std::string> prolines = prolineNotes(models, fit, letters);
  fitted.notes.insert(fitted.notes.end(), prolines.begin(), prolines.end());
  return fitted;
}
