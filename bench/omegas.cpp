/// Reads a structure and takes every omega: bench_omegas FILE

#include <cstdio>

#include "structure/pdb.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    return 2;
  }
  PDB structure(argv[1]);
  int cis = 0;
  int known = 0;
  for (int residue = structure.firstResID; residue <= structure.lastResID; ++residue) {
    const float omega = structure.getOmega(1, residue);
    known += omega < PDB::noAngle ? 1 : 0;
    cis += omega > -90 && omega < 90 ? 1 : 0;
  }
  std::printf("%d known, %d cis\n", known, cis);
  return 0;
}
