/// Reads the same structure with gemmi and counts its atoms: bench_read_atoms FILE

#include <cstdio>

#include <gemmi/pdb.hpp>

int main(int argc, char** argv) {
  if (argc != 2) {
    return 2;
  }
  const gemmi::Structure structure = gemmi::read_pdb_file(argv[1]);
  std::size_t atoms = 0;
  for (const gemmi::Chain& chain : structure.models.at(0).chains) {
    for (const gemmi::Residue& residue : chain.residues) {
      atoms += residue.atoms.size();
    }
  }
  std::printf("%zu atoms\n", atoms);
  return 0;
}
