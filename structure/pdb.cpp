#include "structure/pdb.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "table/gdb.h"

namespace {
constexpr int beforeAnyFirst = 9999;
constexpr int beforeAnyLast = -9999;
/// Longest S-S distance of a disulfide, Angstrom; a bond is 2.05.
constexpr float longestDisulfide = 2.5F;
/// Cysteines so close in sequence are never paired.
constexpr int closestPartner = 3;

bool isCysteine(const std::string& code) {
  return code == "C" || code == "c";
}

bool arePartners(int residue, int other) {
  return std::llabs(static_cast<long long>(other) - residue) > closestPartner;
}
} // namespace

PDB::PDB() : firstResID(beforeAnyFirst), lastResID(beforeAnyLast) {}

PDB::PDB(const std::string& path) : PDB() {
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
  if (!isCysteine(resCodes[residue])) {
    return false;
  }
  const CORdata sulfur = atom(1, residue, "SG");
  for (const auto& [other, code] : resCodes) {
    if (isCysteine(code) && arePartners(residue, other) &&
        getDist(sulfur.coor, atom(1, other, "SG").coor) <= longestDisulfide) {
      return true;
    }
  }
  return false;
}

void PDB::markDisulfides() {
  // The test of `isSSBonded` for all cysteines at once: their atoms are sought only once each.
  std::vector<std::pair<int, const float*>> sulfurs;
  for (const auto& [residue, code] : resCodes) {
    if (isCysteine(code)) {
      sulfurs.emplace_back(residue, atom(1, residue, "SG").coor);
    }
  }
  for (const auto& [residue, sulfur] : sulfurs) {
    const auto bonded = [this, number = residue, place = sulfur](const auto& other) {
      return arePartners(number, other.first) && getDist(place, other.second) <= longestDisulfide;
    };
    if (resCodes[residue] == "C" && std::any_of(sulfurs.begin(), sulfurs.end(), bonded)) {
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
