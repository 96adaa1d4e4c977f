#include "tools/import/table_atoms.h"

#include "tools/import/star_tokens.h"

std::uint8_t tableAtom(char letter, std::string_view name) {
  const auto is = [name](const char* known) { return equalWithoutCase(name, known); };
  if (is("H")) {
    return atomHn;
  }
  if (is("C'") || is("CO")) {
    return atomC;
  }
  if (letter == 'G') {
    if (is("HA") || is("HA%") || is("HA*") || is("HA#") || is("QA")) {
      return alphaAtom;
    }
    if (is("HA1") || is("1HA")) {
      return alphaOneAtom;
    }
    if (is("HAX") || is("HAA") || is("HA'") || is("2HA")) {
      return atomHa2;
    }
    if (is("HAY") || is("HAB") || is("HA''") || is("HA\"")) {
      return atomHa3;
    }
  }
  for (std::uint8_t atom = atomN; atom <= atomCg; ++atom) {
    if (is(tableAtoms[atom])) {
      return letter == 'G' || (atom != atomHa2 && atom != atomHa3) ? atom : otherAtom;
    }
  }
  return otherAtom;
}
