#include "tools/import/amino_acids.h"

#include <algorithm>

#include "tools/import/residue_forms.h"
#include "tools/import/star_tokens.h"

namespace {

struct AminoAcid {
  const char* name;
  char letter;
};

constexpr AminoAcid aminoAcids[] = {
    {"ALA", 'A'}, {"ARG", 'R'}, {"ASN", 'N'}, {"ASP", 'D'}, {"CYS", 'C'}, {"GLN", 'Q'},
    {"GLU", 'E'}, {"GLY", 'G'}, {"HIS", 'H'}, {"ILE", 'I'}, {"LEU", 'L'}, {"LYS", 'K'},
    {"MET", 'M'}, {"MSE", 'M'}, {"PHE", 'F'}, {"PRO", 'P'}, {"SER", 'S'}, {"THR", 'T'},
    {"TRP", 'W'}, {"TYR", 'Y'}, {"VAL", 'V'},
};

} // namespace

char oneLetterCode(std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(aminoAcids), std::end(aminoAcids),
                   [name](const AminoAcid& acid) { return equalWithoutCase(name, acid.name); });
  return found == std::end(aminoAcids) ? 'X' : found->letter;
}

char letterOfForm(std::string_view name) {
  const char letter = oneLetterCode(name);
  return letter == 'X' ? oneLetterCode(aminoAcidNamed(name)) : letter;
}

std::string threeLetterName(char letter) {
  const auto* const found =
      std::find_if(std::begin(aminoAcids), std::end(aminoAcids),
                   [letter](const AminoAcid& acid) { return acid.letter == letter; });
  return found == std::end(aminoAcids) ? "UNK" : found->name;
}

bool isOxidisedCysteine(std::string_view name) {
  return equalWithoutCase(name, "CYX") || equalWithoutCase(name, "CYSS");
}

std::string capitals(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
  }
  return upper;
}
