#include "structure/pdb.h"

#include <cstdlib>
#include <vector>

#include "table/gdb.h"

namespace {
constexpr int beforeAnyFirst = 9999;
constexpr int beforeAnyLast = -9999;
/// Longest S-S distance of a disulfide, Angstrom; a bond is 2.05.
constexpr float longestDisulfide = 2.5F;
/// Cysteines so close in sequence are never paired.
constexpr int closestPartner = 3;
} // namespace

PDB::PDB() : firstResID(beforeAnyFirst), lastResID(beforeAnyLast) {}

PDB::PDB(const std::string& path) : PDB() {
  fileName = path;
  loadPDB(path);
}

PDB::~PDB() = default;

CORdata PDB::getEntry(int conformer, int residue, const std::string& atomName) {
  return atom(conformer, residue, atomName);
}

CORdata PDB::getEntry(int conformer, int serial) {
  return atomsBySerial[conformer][serial];
}

CORdata& PDB::atom(int conformer, long long residue, std::string_view atomName) {
  // A neighbour of the largest or smallest number wraps to a residue that no file can hold.
  Residue& named = atoms[conformer][static_cast<int>(residue)];
  const auto found = named.find(atomName);
  return found != named.end() ? found->second : named[std::string(atomName)];
}

bool PDB::isSSBonded(int /*conformer*/, int residue) {
  const auto isCysteine = [](const std::string& code) { return code == "C" || code == "c"; };
  if (!isCysteine(resCodes[residue])) {
    return false;
  }
  const CORdata sulfur = atom(1, residue, "SG");
  for (const auto& [other, code] : resCodes) {
    if (isCysteine(code) && std::llabs(static_cast<long long>(other) - residue) > closestPartner &&
        getDist(sulfur.coor, atom(1, other, "SG").coor) <= longestDisulfide) {
      return true;
    }
  }
  return false;
}

void PDB::markDisulfides() {
  std::vector<int> cysteines;
  for (const auto& [residue, code] : resCodes) {
    if (code == "C") {
      cysteines.push_back(residue);
    }
  }
  for (const int residue : cysteines) {
    if (isSSBonded(1, residue)) {
      resCodes[residue] = "c";
      resNames[residue] = "cys";
    }
  }
}

std::string PDB::simplifyWhiteSpace(const std::string& text) {
  return GDB::simplifyWhiteSpace(text);
}

bool PDB::isSpace(char c) {
  return GDB::isSpace(c);
}
