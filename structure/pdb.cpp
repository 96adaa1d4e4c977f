#include "structure/pdb.h"

#include <cmath>
#include <cstdlib>

#include "table/gdb.h"

namespace {

constexpr int beforeAnyFirst = 9999;
constexpr int beforeAnyLast = -9999;
/// Longest S-S distance of a disulfide, Angstrom; a bond is 2.05.
constexpr float longestDisulfide = 2.5F;
/// Cysteines so close in sequence are never paired.
constexpr int closestPartner = 3;

const CORdata& noAtom() {
  static const CORdata none;
  return none;
}

bool isCysteine(const std::string& code) {
  return code == "C" || code == "c";
}

} // namespace

PDB::PDB() : firstResID(beforeAnyFirst), lastResID(beforeAnyLast) {}

PDB::PDB(const std::string& path) : PDB() {
  loadPDB(path);
}

CORdata PDB::getEntry(int conformer, int residue, const std::string& atomName) {
  return atom(conformer, residue, atomName);
}

CORdata PDB::getEntry(int conformer, int serial) {
  if (atomOfSerial_.empty()) {
    for (std::size_t at = 0; at < atoms_.size(); ++at) {
      atomOfSerial_[atoms_[at].atomNumber] = at;
    }
  }
  const auto known = atomOfSerial_.find(serial);
  return conformer == 1 && known != atomOfSerial_.end() ? atoms_[known->second] : noAtom();
}

const CORdata& PDB::atom(int conformer, long long residue, std::string_view atomName) const {
  const auto known = runsOfResidue_.find(residue);
  const CORdata* last = &noAtom();
  if (conformer != 1 || known == runsOfResidue_.end()) {
    return *last;
  }
  for (const std::size_t begin : known->second) {
    for (std::size_t at = begin; at < atoms_.size() && atoms_[at].resNumber == residue; ++at) {
      if (atoms_[at].atomName == atomName) {
        last = &atoms_[at];
      }
    }
  }
  return *last;
}

bool PDB::isSSBonded(int /*conformer*/, int residue) {
  return isCysteine(resCodes[residue]) && hasPartner(sulfurOf(residue), sulfurs());
}

PDB::Sulfur PDB::sulfurOf(int residue) const {
  const CORdata& found = atom(1, residue, "SG");
  return {residue, {found.x, found.y, found.z}};
}

std::vector<PDB::Sulfur> PDB::sulfurs() const {
  std::vector<Sulfur> found;
  for (const auto& [residue, code] : resCodes) {
    if (isCysteine(code)) {
      found.push_back(sulfurOf(residue));
    }
  }
  return found;
}

bool PDB::hasPartner(const Sulfur& sulfur, const std::vector<Sulfur>& others) {
  for (const Sulfur& other : others) {
    // Most are too far apart in x alone; to ask that first saves most of the time of all pairs.
    if (std::fabs(other.place[0] - sulfur.place[0]) <= longestDisulfide &&
        std::abs(static_cast<long long>(other.residue) - sulfur.residue) > closestPartner &&
        getDist(sulfur.place, other.place) <= longestDisulfide) {
      return true;
    }
  }
  return false;
}

void PDB::markDisulfides() {
  const std::vector<Sulfur> all = sulfurs();
  for (const Sulfur& sulfur : all) {
    if (resCodes[sulfur.residue] == "C" && hasPartner(sulfur, all)) {
      resCodes[sulfur.residue] = "c";
      resNames[sulfur.residue] = "cys";
    }
  }
}

std::string PDB::simplifyWhiteSpace(const std::string& text) {
  return GDB::simplifyWhiteSpace(text);
}

bool PDB::isSpace(char c) {
  return GDB::isSpace(c);
}
