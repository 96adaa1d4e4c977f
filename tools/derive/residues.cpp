#include "tools/derive/residues.h"

#include <cstring>

namespace derive {
namespace {

struct ThreeLetterName {
  const char* name;
  char code;
};

constexpr ThreeLetterName threeLetterNames[] = {
    {"ALA", 'A'}, {"CYS", 'C'}, {"cys", 'c'},  {"ASP", 'D'},  {"GLU", 'E'},
    {"PHE", 'F'}, {"GLY", 'G'}, {"HIS", 'H'},  {"HIS+", 'H'}, {"his", 'h'},
    {"ILE", 'I'}, {"LYS", 'K'}, {"LYS+", 'K'}, {"LEU", 'L'},  {"MET", 'M'},
    {"ASN", 'N'}, {"PRO", 'P'}, {"GLN", 'Q'},  {"ARG", 'R'},  {"ARG+", 'R'},
    {"SER", 'S'}, {"THR", 'T'}, {"VAL", 'V'},  {"TRP", 'W'},  {"TYR", 'Y'}};

void addCodes(std::vector<ResidueRow>& rows, const char* codes) {
  for (const char* code = codes; *code != '\0'; ++code) {
    rows.push_back({std::string(1, *code), letterIndex(*code)});
  }
}

std::vector<ResidueRow> makeResidueRows() {
  std::vector<ResidueRow> rows;
  addCodes(rows, "ACcDEFGHhIKLMNPpQRSTVWY");
  for (const ThreeLetterName& row : threeLetterNames) {
    rows.push_back({row.name, letterIndex(row.code)});
  }
  return rows;
}

std::vector<ResidueRow> makeSequenceRows() {
  std::vector<ResidueRow> rows;
  addCodes(rows, "ABCcDEFGHhIJKLMNOPpQRSTUVWY");
  return rows;
}

} // namespace

std::size_t letterIndex(char code) {
  const char known = code == 'h' ? 'H' : code == 'p' ? 'P' : code;
  const char* found = known == '\0' ? nullptr : std::strchr(letters, known);
  return found == nullptr ? letterCount : static_cast<std::size_t>(found - letters);
}

const std::vector<ResidueRow>& residueRows() {
  static const std::vector<ResidueRow> rows = makeResidueRows();
  return rows;
}

const std::vector<ResidueRow>& sequenceRows() {
  static const std::vector<ResidueRow> rows = makeSequenceRows();
  return rows;
}

} // namespace derive
