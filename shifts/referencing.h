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

/// Fits each nucleus; prints and records nothing.
///
/// Secondary CA, HA and C' shifts of well-referenced proteins, drawn against CA minus CB, meet
/// x = 0 at known values; what an intercept misses is a referencing offset.
OffsetEstimates fitOffsets(const CITRANS& run, const ReferencingPoints& points);
