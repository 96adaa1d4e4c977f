#pragma once

#include <vector>

#include "app/citrans.h"

/// Points of one straight-line fit: x is the CA-minus-CB secondary shift, y that of a nucleus, ppm.
struct PointSet {
  std::vector<float> x;
  std::vector<float> y;
};

/// The points of one nucleus, apart by the sign of x; zero is positive.
struct PointSets {
  PointSet negative;
  PointSet positive;

  void add(float difference, float value);
};

/// What the referencing of one protein is judged from.
struct ReferencingPoints {
  PointSets ca;
  PointSets ha;
  PointSets c;
};

/// The points of one run, from its secondary shifts; prints nothing.
ReferencingPoints gatherReferencingPoints(const CITRANS& run);

/// What the straight-line fits of one nucleus say.
struct OffsetEstimate {
  float offset = 0;       ///< ppm; 0 when neither set has points enough
  float error = 0;        ///< its standard error, ppm
  std::size_t points = 0; ///< in both sets
  bool counts = false;    ///< whether it is recorded: larger than five times its error
};

struct OffsetEstimates {
  OffsetEstimate ca; ///< for CA and CB
  OffsetEstimate ha;
  OffsetEstimate c;
};

/// Fits each nucleus; prints and records nothing.
OffsetEstimates fitOffsets(const CITRANS& run, const ReferencingPoints& points);

/// Fits each nucleus and records in `run.offsets` every offset larger than five times its error;
/// prints those on standard output, and a shortage of points on standard error.
///
/// Secondary CA, HA and C' shifts of well-referenced proteins, drawn against CA minus CB, meet
/// x = 0 at known values; what an intercept misses is a referencing offset.
void estimateOffsets(CITRANS& run, const ReferencingPoints& points);
