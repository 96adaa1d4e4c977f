#include "tools/report/carbons.h"

#include <algorithm>

#include "table/number.h"

namespace {

/// An offset smaller than what the rounding of three columns leaves is none, ppm.
constexpr double smallestOffset = 0.002;

} // namespace

bool offsetWasSubtracted(const Inputs& inputs) {
  const std::vector<std::string>& made = inputs.about.corrections;
  return std::any_of(made.begin(), made.end(), [](const std::string& correction) {
    return correction.find("referencing offset applied") != std::string::npos;
  });
}

Carbons carbonsOf(const Inputs& inputs, const SummaryRow& row) {
  Carbons carbons;
  if (const ShiftRow* const cb = inputs.shiftOf(row.residue, "CB")) {
    carbons.cb = cb->observed;
  }
  if (!(row.cg < shift::missingFrom)) {
    return carbons;
  }
  const bool subtracted = offsetWasSubtracted(inputs);
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
