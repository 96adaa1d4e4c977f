#pragma once

#include <string>
#include <vector>

#include "tools/referencing/correction.h"
#include "tools/report/inputs.h"

/// The estimated referencing offset of one group of nuclei.
struct ReportedOffset {
  std::string nuclei;             ///< "CA and CB", "HA", "C′"
  std::vector<const char*> atoms; ///< as the tables name them
  double offset = 0;              ///< ppm
  double error = 0;               ///< ppm: two thirds of such estimates miss by less
  int points = 0;                 ///< residues that it was estimated from
  bool applies = false;           ///< whether correcting by it is worth it
};

/// What the secondary shifts of one protein say about its referencing and its outliers. The offsets
/// are those that the importer and the batch would take off.
struct ReferencingCheck {
  std::vector<ReportedOffset> estimates; ///< of all nuclei with shifts enough
  referencing::Offsets offsets{};        ///< what is worth taking off, ppm; 0 for the others
  double fewestErrors = 0;               ///< an offset is worth it from so many errors on
  bool subtracted = false;               ///< the run had -offset; the estimates are from before it
  std::vector<ReportedOffset> unchecked; ///< nuclei with too few shifts to tell, and their points
  std::vector<Outlier> outliers;         ///< in the order of the table
  std::vector<bool> explained;           ///< of each outlier: within its limits without the offset

  /// Whether any offset is worth taking off.
  bool found() const { return offsets != referencing::Offsets{}; }
  /// Those that are: "CA and CB by +2.59 ± 0.13 ppm and C′ by ..."
  std::string words() const;
};

/// Checks a filled run. What -offset took off it is put back before the estimate, so that the run
/// then has the shifts as they were given.
ReferencingCheck checkReferencing(CITRANS& run, const Inputs& inputs,
                                  const referencing::Model& model);

/// Takes offsets once off the secondary shifts, and that of the carbons off the CG of prolines.
void takeOffOnce(CITRANS& run, const referencing::Offsets& offsets);
