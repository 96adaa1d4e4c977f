#include "tools/import/amino_acids.h"

#include <algorithm>

#include "tools/import/star_tokens.h"

namespace {

struct ResidueName {
  std::string_view name;
  char letter;
};

/// The amino acids, then the names that programs give to one state of them.
constexpr ResidueName residueNames[] = {
    {"ALA", 'A'},  {"ARG", 'R'},  {"ASN", 'N'},  {"ASP", 'D'},  {"CYS", 'C'},  {"GLN", 'Q'},
    {"GLU", 'E'},  {"GLY", 'G'},  {"HIS", 'H'},  {"ILE", 'I'},  {"LEU", 'L'},  {"LYS", 'K'},
    {"MET", 'M'},  {"PHE", 'F'},  {"PRO", 'P'},  {"SER", 'S'},  {"THR", 'T'},  {"TRP", 'W'},
    {"TYR", 'Y'},  {"VAL", 'V'},  {"ARN", 'R'},  {"ARG+", 'R'}, {"ARGN", 'R'}, {"ASH", 'D'},
    {"ASPH", 'D'}, {"ASPP", 'D'}, {"ASP-", 'D'}, {"CYM", 'C'},  {"CYN", 'C'},  {"CYX", 'C'},
    {"CYS2", 'C'}, {"CYSH", 'C'}, {"CYSS", 'C'}, {"CYS-", 'C'}, {"GLH", 'E'},  {"GLUH", 'E'},
    {"GLUP", 'E'}, {"GLU-", 'E'}, {"HID", 'H'},  {"HIE", 'H'},  {"HIP", 'H'},  {"HSD", 'H'},
    {"HSE", 'H'},  {"HSP", 'H'},  {"HIS1", 'H'}, {"HIS2", 'H'}, {"HIS+", 'H'}, {"HISA", 'H'},
    {"HISB", 'H'}, {"HISD", 'H'}, {"HISE", 'H'}, {"HISH", 'H'}, {"HISP", 'H'}, {"HIST", 'H'},
    {"LYN", 'K'},  {"LYP", 'K'},  {"LYSH", 'K'}, {"LYSN", 'K'}, {"LYS+", 'K'}, {"MSE", 'M'},
    {"CPR", 'P'},  {"CPRO", 'P'}, {"TYM", 'Y'},  {"TYR-", 'Y'},
};

constexpr char unknownLetter = 'X';
constexpr char unknownName[] = "UNK";

} // namespace

char oneLetterCode(std::string_view name) {
  for (const ResidueName& known : residueNames) {
    if (equalWithoutCase(name, known.name)) {
      return known.letter;
    }
  }
  // "N" and "C" before a name mark the ends of a chain.
  const bool end =
      name.size() == 4 && std::string_view("NnCc").find(name[0]) != std::string_view::npos;
  return end ? oneLetterCode(name.substr(1)) : unknownLetter;
}

std::string_view nameOfLetter(char letter) {
  const auto* const found =
      std::find_if(std::begin(residueNames), std::end(residueNames),
                   [letter](const ResidueName& known) { return known.letter == letter; });
  return found == std::end(residueNames) ? std::string_view() : found->name;
}

std::string threeLetterName(char letter) {
  const std::string_view name = nameOfLetter(letter);
  return std::string(name.empty() ? unknownName : name);
}

std::string aminoAcidNamed(std::string_view name) {
  const char letter = oneLetterCode(name);
  return letter == unknownLetter ? "" : threeLetterName(letter);
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
