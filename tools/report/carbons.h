#pragma once

#include <optional>

#include "tools/report/inputs.h"

/// CB - CG of a proline: it tells cis from trans without the referencing, which moves both alike.
///
/// The bands are those of Schubert et al., J. Biomol. NMR 24 (2002) 149-154, with room between.
namespace carbons {

constexpr double transBelow = 6.5; ///< ppm
constexpr double cisAbove = 8;     ///< ppm

enum class Band { trans, open, cis };

inline Band bandOf(double difference) {
  return difference > cisAbove ? Band::cis : difference < transBelow ? Band::trans : Band::open;
}

} // namespace carbons

/// The telling carbons of one proline as they were observed, ppm, before any offset was taken off.
struct Carbons {
  std::optional<double> cb, cg;
  bool cgSubtracted = false; ///< the summary has CG less an offset that citrans took off
  double cgOffset = 0;       ///< that offset, ppm: the sum over the proline's shifts

  std::optional<double> difference() const {
    return cb && cg ? std::optional<double>(*cb - *cg) : std::nullopt;
  }
};

/// Whether citrans took offsets off the shifts (-offset).
bool offsetWasSubtracted(const Inputs& inputs);

/// The carbons of a predicted proline. With -offset, citrans takes an offset off CG for each of the
/// proline's shifts; the table of shifts tells them, so that they are put back here.
Carbons carbonsOf(const Inputs& inputs, const SummaryRow& row);
