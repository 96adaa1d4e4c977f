#pragma once

#include <string>
#include <vector>

#include "tools/report/inputs.h"

/// The estimated referencing offset of one group of nuclei.
struct ReportedOffset {
  std::string nuclei;             ///< "CA and CB", "HA", "C′"
  std::vector<const char*> atoms; ///< as the tables name them
  double offset = 0, error = 0;   ///< ppm
  std::size_t points = 0;         ///< residues that it was estimated from
};

/// What the secondary shifts of one protein say about its referencing and its outliers.
struct ReferencingCheck {
  std::vector<ReportedOffset> offsets; ///< those that exceed five times their error
  std::vector<std::string> unchecked;  ///< nuclei with too few shifts to tell
  std::vector<Outlier> outliers;       ///< in the order of the table
  std::vector<bool> explained;         ///< of each outlier: within its limits without the offset

  /// "CA and CB by +2.61 ± 0.07 ppm and C′ by ..."
  std::string words() const;
};

/// Nuclei whose offset is estimated.
constexpr std::size_t nucleiChecked = 3;

/// Runs the check of the core on a filled run.
ReferencingCheck checkReferencing(CITRANS& run);

/// Takes the offsets off the secondary shifts, and that of CA and CB once off the CG of prolines,
/// which is a carbon as they are.
void takeOffOnce(CITRANS& run, const ReferencingCheck& check);
