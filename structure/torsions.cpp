#include "structure/pdb.h"

namespace {

/// The atoms of chi1 and chi2 beyond CB; the last row stands for every other residue.
struct SideChain {
  const char* residue;
  const char* chi1End;
  const char* chi2Third;
  const char* chi2End;
};

constexpr SideChain sideChains[] = {
    {"VAL", "CG2", "CG1", "HG11"}, {"ILE", "CG1", "CG1", "CD1"}, {"THR", "OG1", "CG2", "HG21"},
    {"SER", "OG", "OG", "HG"},     {"CYS", "SG", "SG", "HG"},    {"cys", "SG", "SG", "HG"},
    {"ASN", "CG", "CG", "OD1"},    {"ASP", "CG", "CG", "OD1"},   {"HIS", "CG", "CG", "ND1"},
    {"MET", "CG", "CG", "SD"},     {"LEU", "CG", "CG", "CD1"},   {"PHE", "CG", "CG", "CD1"},
    {"TYR", "CG", "CG", "CD1"},    {"TRP", "CG", "CG", "CD1"},   {"", "CG", "CG", "CD"},
};

const SideChain& sideChainOf(const std::string& residue) {
  for (const SideChain& known : sideChains) {
    if (residue == known.residue) {
      return known;
    }
  }
  return sideChains[sizeof sideChains / sizeof sideChains[0] - 1];
}

bool hasNoSideChainTorsion(const std::string& residue) {
  return residue == "GLY" || residue == "ALA";
}

} // namespace

float PDB::getOmega(int conformer, int residue) {
  const long long i = residue;
  const CORdata& ca = atom(conformer, i, "CA");
  const CORdata& n = atom(conformer, i, "N");
  const CORdata& previousC = atom(conformer, i - 1, "C");
  const CORdata& previousCa = atom(conformer, i - 1, "CA");
  return getDihedralAngle(previousCa, previousC, n, ca);
}

float PDB::getPhi(int conformer, int residue) {
  const long long i = residue;
  const CORdata& c = atom(conformer, i, "C");
  const CORdata& ca = atom(conformer, i, "CA");
  const CORdata& n = atom(conformer, i, "N");
  const CORdata& previousC = atom(conformer, i - 1, "C");
  return getDihedralAngle(previousC, n, ca, c);
}

float PDB::getPsi(int conformer, int residue) {
  const long long i = residue;
  const CORdata& nextN = atom(conformer, i + 1, "N");
  const CORdata& c = atom(conformer, i, "C");
  const CORdata& ca = atom(conformer, i, "CA");
  const CORdata& n = atom(conformer, i, "N");
  return getDihedralAngle(n, ca, c, nextN);
}

float PDB::getChi1(int conformer, int residue) {
  const std::string& name = resNames[residue];
  if (hasNoSideChainTorsion(name)) {
    return noAngle;
  }
  return getDihedralAngle(atom(conformer, residue, "N"), atom(conformer, residue, "CA"),
                          atom(conformer, residue, "CB"),
                          atom(conformer, residue, sideChainOf(name).chi1End));
}

float PDB::getChi2(int conformer, int residue) {
  const std::string& name = resNames[residue];
  if (hasNoSideChainTorsion(name)) {
    return noAngle;
  }
  const SideChain& chain = sideChainOf(name);
  return getDihedralAngle(atom(conformer, residue, "CA"), atom(conformer, residue, "CB"),
                          atom(conformer, residue, chain.chi2Third),
                          atom(conformer, residue, chain.chi2End));
}
