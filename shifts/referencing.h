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

/// Fits each nucleus and records in `run.offsets` every offset larger than five times its error;
/// prints those on standard output, and a shortage of points on standard error.
///
/// Secondary CA, HA and C' shifts of well-referenced proteins, drawn against CA minus CB, meet
/// x = 0 at known values; what an intercept misses is a referencing offset.
void estimateOffsets(CITRANS& run, const ReferencingPoints& points);
