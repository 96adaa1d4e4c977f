#pragma once

#include <vector>

#include "app/citrans.h"
#include "tools/referencing/model.h"

namespace referencing {

/// Secondary shifts of one residue that the estimate looks at, ppm; not-a-number where missing.
struct ResidueShifts {
  double ca, cb, ha, c;
};

/// What the secondary shifts of one protein say about one nucleus.
struct Estimate {
  double offset = 0;    ///< ppm, to take off the shifts; 0 without points enough
  double error = 0;     ///< ppm: two thirds of such estimates miss by less; 0 without points enough
  int points = 0;       ///< residues that the estimate rests on
  bool applies = false; ///< whether correcting by it is worth it
};
using Estimates = std::array<Estimate, nucleusCount>;

/// No offset is estimated from fewer residues.
constexpr int fewestPoints = 10;

/// The secondary shifts that tell about the referencing, residues with CA and CB that are neither
/// proline nor cysteine; from a run whose `shiftTable` and `sequence` are filled and not corrected.
std::vector<ResidueShifts> residuesOf(const CITRANS& run);

/// Estimates each nucleus by itself. The order of the residues does not matter, and an offset added
/// to all shifts of a nucleus adds itself to the estimate: once is enough.
Estimates estimate(const Model& model, const std::vector<ResidueShifts>& residues);

/// The middle of values that lie about it with a width, by Tukey's biweight: values beyond 4.685
/// widths do not count. Not-a-number for no values.
double robustMiddle(std::vector<double> values, double width);

} // namespace referencing
