#pragma once

#include <string>
#include <vector>

#include "tools/report/evidence.h"

/// An estimated referencing offset that exceeds five times its error.
struct ReportedOffset {
  std::string nuclei;           ///< "CA and CB", "HA", "C'"
  double offset = 0, error = 0; ///< ppm
  int points = 0;
};

/// A proline whose call would be another one with the offsets subtracted.
struct ChangedCall {
  int residue = 0;
  double before = 0, after = 0; ///< P_CIS_NORM
};

/// What the shift check of citrans says of a filled run.
struct ReportedCheck {
  std::vector<Outlier> outliers;
  std::vector<ReportedOffset> offsets;
  std::vector<std::string> shortages; ///< nuclei without enough points to estimate from
};

/// Runs the shift check, silently; records its offsets in `run.offsets`.
ReportedCheck checkShifts(CITRANS& run);

/// Subtracts `run.offsets` from the shifts of a filled run as citrans does with -offset: a
/// proline's CG loses the offset of each of its shifts.
void subtractOffsets(CITRANS& run);
