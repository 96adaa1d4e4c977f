#include "structure/residue_names.h"

#include "structure/pdb.h"

namespace {

struct ResidueName {
  std::string_view three;
  char one;
};

/// The charged forms come after the plain ones: the way back takes the first.
constexpr ResidueName residueNames[] = {
    {"ALA", 'A'}, {"CYS", 'C'},  {"cys", 'c'},  {"ASP", 'D'},  {"GLU", 'E'},
    {"PHE", 'F'}, {"GLY", 'G'},  {"HIS", 'H'},  {"ILE", 'I'},  {"LYS", 'K'},
    {"LEU", 'L'}, {"MET", 'M'},  {"ASN", 'N'},  {"PRO", 'P'},  {"GLN", 'Q'},
    {"ARG", 'R'}, {"SER", 'S'},  {"THR", 'T'},  {"VAL", 'V'},  {"TRP", 'W'},
    {"TYR", 'Y'}, {"HIS+", 'H'}, {"LYS+", 'K'}, {"ARG+", 'R'}, {"his", 'h'},
};

} // namespace

char residueCode(std::string_view threeLetterName) {
  for (const ResidueName& name : residueNames) {
    if (threeLetterName == name.three) {
      return name.one;
    }
  }
  return '\0';
}

std::string PDB::getOneAAName(const std::string& threeLetterName) {
  const char code = residueCode(threeLetterName);
  return std::string(1, code == '\0' ? 'X' : code);
}

std::string PDB::getThreeAAName(char oneLetterCode) {
  for (const ResidueName& name : residueNames) {
    // Kept: "his" has no way back.
    if (oneLetterCode == name.one && oneLetterCode != 'h') {
      return std::string(name.three);
    }
  }
  return "XXX";
}
