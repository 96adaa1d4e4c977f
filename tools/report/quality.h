#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/report/evidence.h"

/// A secondary shift outside the limits of the database.
struct Outlier {
  int residue = 0;
  std::string name, atom;
  double shift = 0, limit = 0; ///< ppm
  bool marked = false;         ///< twice, for HA three times, as far out as the limit
};

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
struct ShiftCheck {
  std::vector<Outlier> outliers;
  std::vector<ReportedOffset> offsets;
  std::vector<std::string> shortages; ///< nuclei without enough points to estimate from
};

/// What a function printed while it ran.
struct Printed {
  std::string standardOutput;
  std::string standardError;
};

/// Runs a function and keeps what it writes to the two standard streams from reaching them.
/// Not for use beside other threads. Throws ToolError(cannotWrite) without room for the text.
Printed capture(const std::function<void()>& function);

/// Runs the shift check, silently; records its offsets in `run.offsets`.
ShiftCheck checkShifts(CITRANS& run);

/// Subtracts `run.offsets` from the shifts of a filled run as citrans does with -offset: a
/// proline's CG loses the offset of each of its shifts.
void subtractOffsets(CITRANS& run);
