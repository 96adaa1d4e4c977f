#include "tools/import/residue_forms.h"

#include <algorithm>
#include <array>

#include "tools/import/amino_acids.h"

namespace {

struct Form {
  const char* name;
  const char* aminoAcid;
};

/// Names that programs give to one state of an amino acid.
constexpr Form forms[] = {
    {"ARN", "ARG"},  {"ARG+", "ARG"}, {"ARGN", "ARG"}, {"ASH", "ASP"},  {"ASPH", "ASP"},
    {"ASPP", "ASP"}, {"ASP-", "ASP"}, {"CYM", "CYS"},  {"CYN", "CYS"},  {"CYX", "CYS"},
    {"CYS2", "CYS"}, {"CYSH", "CYS"}, {"CYSS", "CYS"}, {"CYS-", "CYS"}, {"GLH", "GLU"},
    {"GLUH", "GLU"}, {"GLUP", "GLU"}, {"GLU-", "GLU"}, {"HID", "HIS"},  {"HIE", "HIS"},
    {"HIP", "HIS"},  {"HSD", "HIS"},  {"HSE", "HIS"},  {"HSP", "HIS"},  {"HIS1", "HIS"},
    {"HIS2", "HIS"}, {"HIS+", "HIS"}, {"HISA", "HIS"}, {"HISB", "HIS"}, {"HISD", "HIS"},
    {"HISE", "HIS"}, {"HISH", "HIS"}, {"HISP", "HIS"}, {"HIST", "HIS"}, {"LYN", "LYS"},
    {"LYP", "LYS"},  {"LYSH", "LYS"}, {"LYSN", "LYS"}, {"LYS+", "LYS"}, {"MSE", "MET"},
    {"CPR", "PRO"},  {"CPRO", "PRO"}, {"TYM", "TYR"},  {"TYR-", "TYR"},
};

constexpr std::array<const char*, 9> waterNames = {"HOH", "WAT", "H2O",  "DOD", "SOL",
                                                   "TIP", "SPC", "TIP3", "TIP4"};

} // namespace

std::string aminoAcidNamed(std::string_view name) {
  std::string known = capitals(name);
  for (const Form& form : forms) {
    if (known == form.name) {
      return form.aminoAcid;
    }
  }
  if (known.size() == 3 && oneLetterCode(known) != 'X') {
    return known;
  }
  // "N" and "C" before a name mark the ends of a chain.
  const bool end = known.size() == 4 && (known[0] == 'N' || known[0] == 'C');
  return end ? aminoAcidNamed(known.substr(1)) : "";
}

std::string elementNamed(std::string_view atomName) {
  const std::size_t letter = atomName.find_first_not_of("0123456789");
  return letter == std::string_view::npos ? "" : capitals(atomName.substr(letter, 1));
}

bool isWaterName(std::string_view name) {
  return std::find(waterNames.begin(), waterNames.end(), capitals(name)) != waterNames.end();
}
