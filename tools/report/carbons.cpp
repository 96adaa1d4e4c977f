#include "tools/report/carbons.h"

#include "table/number.h"

namespace {

/// An offset smaller than what the rounding of three columns leaves is none, ppm.
constexpr double smallestOffset = 0.002;

} // namespace

Carbons carbonsOf(const Inputs& inputs, const SummaryRow& row) {
  Carbons carbons;
  if (const ShiftRow* const cb = inputs.shiftOf(row.residue, "CB")) {
    carbons.cb = cb->observed;
  }
  if (!(row.cg < shift::missingFrom)) {
    return carbons;
  }
  bool subtracted = false;
  for (const std::string& correction : inputs.about.corrections) {
    subtracted = subtracted || correction.find("referencing offset applied") != std::string::npos;
  }
  for (const char* atom : {"HA", "C", "CA", "CB"}) {
    const ShiftRow* const shift = inputs.shiftOf(row.residue, atom);
    if (subtracted && shift != nullptr) {
      carbons.cgOffset += shift->observed - shift->adjustment - parseDouble(shift->shiftText);
    }
  }
  carbons.cgSubtracted = std::fabs(carbons.cgOffset) > smallestOffset;
  carbons.cg = row.cg + (carbons.cgSubtracted ? carbons.cgOffset : 0);
  return carbons;
}
