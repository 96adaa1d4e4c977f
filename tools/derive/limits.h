#pragma once

#include <vector>

#include "tools/derive/core_run.h"
#include "tools/derive/tables.h"

namespace derive {

/// All secondary shifts of one letter and atom.
using ShiftsByType = std::array<std::array<std::vector<double>, atomCount>, letterCount>;

/// Of the tables that ship. What lies above the cis prolines is mostly wrong, and trans: bounded
/// just above them, it would bend the CB curves against the cis prolines at 4 to 5 ppm.
constexpr double shippedHighestCb = 8;

/// The 1st and 99th percentile by letter and atom.
///
/// CB of proline reaches a margin above `highestCisCb`, so that no cis proline is bounded, and
/// `leastHighestCb` at least, ppm. Types with too few shifts for percentiles, and atoms that do not
/// exist, get limits that bound nothing; the last row the widest of all types.
Limits findLimits(ShiftsByType shifts, double highestCisCb, double leastHighestCb);

/// Value below which a share of the values lies, linear between neighbours; sorts the values.
double percentile(std::vector<double>& values, double share);

} // namespace derive
