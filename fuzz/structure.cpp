#include "fuzz/support.h"

#include <cmath>

#include "structure/pdb.h"

namespace {

using fuzzing::require;

/// Whether reading meets an ATOM line that is too short before the first terminator.
bool hasShortAtomLine(std::string_view text) {
  for (const std::string& line : fuzzing::linesOf(text)) {
    if (line.rfind("ATOM", 0) == 0) {
      if (line.size() < PDB::shortestAtomLine) {
        return true;
      }
    } else if (line.rfind("TER", 0) == 0 || line.rfind("END", 0) == 0) {
      return false;
    }
  }
  return false;
}

void requireAngle(float angle) {
  require(std::isnan(angle) || angle == PDB::noAngle || std::fabs(angle) <= 180.0F,
          "a torsion is within half a turn, none, or not a number");
}

void requireGeometry(PDB& structure, int residue) {
  requireAngle(structure.getOmega(1, residue));
  requireAngle(structure.getPhi(1, residue));
  requireAngle(structure.getPsi(1, residue));
  requireAngle(structure.getChi1(1, residue));
  requireAngle(structure.getChi2(1, residue));
  const CORdata ca = structure.getEntry(1, residue, "CA");
  const CORdata n = structure.getEntry(1, residue, "N");
  const CORdata c = structure.getEntry(1, residue, "C");
  const float bond = structure.getBondAngle(n, ca, c);
  require(std::isnan(bond) || (bond >= 0 && bond <= 180.0F), "a bond angle is half a turn at most");
  const float there = structure.getDist(n, c);
  const float back = structure.getDist(c, n);
  require(std::isnan(there) || there == back, "a distance is the same both ways");
  require(structure.resCodes[residue] != "C" || !structure.isSSBonded(1, residue),
          "a bonded cysteine is marked");
}

} // namespace

/// Any bytes as a coordinate file: read or out of range, and every angle of it sensible.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(fuzzing::textOf(data, size));
  PDB structure;
  const fuzzing::Outcome outcome = fuzzing::run([&] { structure.loadText(text, "any"); });
  require((outcome.end == fuzzing::End::outOfRange) == hasShortAtomLine(text),
          "short ATOM lines, and nothing else, are out of range");
  require(outcome.messages.empty(), "no message");
  if (outcome.end == fuzzing::End::returned && !structure.resCodes.empty()) {
    const std::map<int, std::string> residues = structure.resCodes;
    for (const auto& [residue, code] : residues) {
      requireGeometry(structure, residue);
    }
    requireGeometry(structure, -2147483647 - 1);
    requireGeometry(structure, 2147483647);
  }
  return 0;
}
