#include "app/citrans.h"

namespace {

struct ResidueCode {
  const char* three;
  const char* one;
};

constexpr ResidueCode residueCodes[] = {
    {"ALA", "A"}, {"CYS", "C"}, {"cys", "c"},  {"ASP", "D"},  {"GLU", "E"},
    {"PHE", "F"}, {"GLY", "G"}, {"HIS", "H"},  {"HIS+", "H"}, {"his", "h"},
    {"ILE", "I"}, {"LYS", "K"}, {"LYS+", "K"}, {"LEU", "L"},  {"MET", "M"},
    {"ASN", "N"}, {"PRO", "P"}, {"GLN", "Q"},  {"ARG", "R"},  {"ARG+", "R"},
    {"SER", "S"}, {"THR", "T"}, {"VAL", "V"},  {"TRP", "W"},  {"TYR", "Y"},
};

} // namespace

std::string CITRANS::getOneAAName(const std::string& threeLetterName) const {
  for (const ResidueCode& code : residueCodes) {
    if (threeLetterName == code.three) {
      return code.one;
    }
  }
  return "?";
}
