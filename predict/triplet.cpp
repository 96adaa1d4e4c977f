#include "app/citrans.h"
#include "table/number.h"

namespace {

/// A residue with more atoms missing than this has too few shifts.
constexpr int mostMissing = 3;
/// So many residues of a triplet with too few shifts make it useless.
constexpr int tooManyPoorResidues = 2;

std::string place(const char* name, int k) {
  return name + std::to_string(k);
}

const std::string& valueOf(const CITRANS::Triplet& triplet, const std::string& key) {
  static const std::string none;
  const auto found = triplet.find(key);
  return found == triplet.end() ? none : found->second;
}

} // namespace

CITRANS::Triplet CITRANS::getTriplet(int proline) {
  Triplet triplet;
  for (int k = 1; k <= 3; ++k) {
    // Beyond the largest residue number there is none; the number stays apart from all others.
    const long long wide = static_cast<long long>(proline) + k - 2;
    const int residue = static_cast<int>(wide);
    const std::string residueText = std::to_string(wide);
    triplet[place("RESID_R", k)] = residueText;
    triplet[place("RESNAME_R", k)] = residue == wide ? nameOf(residue) : "";
    for (const auto& [index, atom] : atomNames) {
      const std::size_t row = shiftTable.findRow("RESID", residueText, "ATOMNAME", atom);
      // An absent row reads as the shift 0; so does HN where the input calls it "H". Kept.
      float secondary = parseFloat(shiftTable.cell(row, "SHIFT"));
      if (clipOn) {
        secondary = clipSShift(residue, secondary, atom);
      }
      triplet[place((atom + "_R").c_str(), k)] = ftoa(secondary, textBuffer, 'g', 6);
    }
  }
  return triplet;
}

bool CITRANS::testTriplet(const Triplet& triplet) {
  const int before = parseInt(valueOf(triplet, "RESID_R1"));
  const int proline = parseInt(valueOf(triplet, "RESID_R2"));
  const int after = parseInt(valueOf(triplet, "RESID_R3"));
  int poor = 0;
  for (const long long offset : {-1, 0, 1}) {
    poor += missCount[static_cast<int>(proline + offset)] > mostMissing ? 1 : 0;
  }
  return poor < tooManyPoorResidues && before >= 1 && after <= residueCount;
}
