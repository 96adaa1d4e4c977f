#include "structure/pdb.h"

#include <algorithm>
#include <cmath>
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

bool isCysteine(const std::string& code) {
  return code == "C" || code == "c";
}

bool arePartners(int residue, int other) {
  return std::llabs(static_cast<long long>(other) - residue) > closestPartner;
}

struct Sulfur {
  int residue;
  float place[3];
};

/// Whether `bonded` holds for one of the sulfurs and another. They are in order of x, so that only
/// those near in x are asked: further along, a difference in x alone is too long for a bond.
template <class Bonded>
bool hasPartner(const std::vector<Sulfur>& sulfurs, std::size_t at, const Bonded& bonded) {
  const auto isFar = [&](std::size_t other) {
    return std::fabs(sulfurs[other].place[0] - sulfurs[at].place[0]) > longestDisulfide;
  };
  for (std::size_t other = at; other-- > 0 && !isFar(other);) {
    if (bonded(sulfurs[at], sulfurs[other])) {
      return true;
    }
  }
  for (std::size_t other = at + 1; other < sulfurs.size() && !isFar(other); ++other) {
    if (bonded(sulfurs[at], sulfurs[other])) {
      return true;
    }
  }
  return false;
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
  return conformer == 1 ? atoms_.find(serial) : CORdata();
}

CORdata PDB::atom(int conformer, long long residue, std::string_view atomName) const {
  // A neighbour of the largest or smallest number wraps to a residue that no file can hold.
  return conformer == 1 ? atoms_.find(static_cast<int>(residue), atomName) : CORdata();
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
  // The test of `isSSBonded` for all cysteines at once. A place that is no number has no partner.
  std::vector<Sulfur> sulfurs;
  for (const auto& [residue, code] : resCodes) {
    if (!isCysteine(code)) {
      continue;
    }
    const CORdata sulfur = atom(1, residue, "SG");
    if (std::isfinite(sulfur.x)) {
      sulfurs.push_back({residue, {sulfur.x, sulfur.y, sulfur.z}});
    }
  }
  std::sort(sulfurs.begin(), sulfurs.end(),
            [](const Sulfur& a, const Sulfur& b) { return a.place[0] < b.place[0]; });
  const auto bonded = [this](const Sulfur& a, const Sulfur& b) {
    return arePartners(a.residue, b.residue) && getDist(a.place, b.place) <= longestDisulfide;
  };
  for (std::size_t at = 0; at < sulfurs.size(); ++at) {
    if (resCodes[sulfurs[at].residue] == "C" && hasPartner(sulfurs, at, bonded)) {
      resCodes[sulfurs[at].residue] = "c";
      resNames[sulfurs[at].residue] = "cys";
    }
  }
}

std::string PDB::simplifyWhiteSpace(const std::string& text) {
  return GDB::simplifyWhiteSpace(text);
}

bool PDB::isSpace(char c) {
  return GDB::isSpace(c);
}
