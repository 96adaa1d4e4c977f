#include "shifts/referencing.h"

#include <cmath>
#include <cstdio>

namespace {

/// A set with fewer points is not fitted, and no more points in all than this are not enough.
constexpr std::size_t fewestPoints = 10;
/// An offset counts when it exceeds so many times its error.
constexpr float significantErrors = 5;

/// Intercepts that well-referenced shifts give, and the words of one nucleus.
struct Nucleus {
  double negativeIntercept;
  double positiveIntercept;
  const char* shortage;
  const char* estimate;
};

constexpr Nucleus alphaBetaCarbon = {
    0.094, 0.459, "  Not enough CA shifts to check CA/CB chemical shift referencing offset ...\n",
    " Estimated Referencing Offset for CA/CB: %6.3f +/- %6.3fppm Size: %3d\n"};
constexpr Nucleus alphaProton = {
    0.089, -0.008, "  Not enough HA shifts to check HA chemical shift referencing offset ...\n",
    " Estimated Referencing Offset for HA:\n     %6.3f +/- %6.3fppm size: %3d\n"};
constexpr Nucleus carbonyl = {
    -0.272, 0.226, "  Not enough C' shifts to check C' chemical shift referencing offset ...\n",
    " Estimated Referencing Offset for C':    %6.3f +/- %6.3fppm Size: %3d\n"};

OffsetEstimate fitSet(const CITRANS& run, const PointSet& set, double intercept) {
  float slope = 0;
  float fitted = 0;
  OffsetEstimate estimate;
  run.LinearLeastSquareFitting(set.x, set.y, slope, fitted, estimate.error);
  estimate.offset = static_cast<float>(static_cast<double>(fitted) - intercept);
  return estimate;
}

/// Means of both sets, weighted by their numbers of points.
OffsetEstimate combine(const OffsetEstimate& negative, float negatives,
                       const OffsetEstimate& positive, float positives) {
  const float all = negatives + positives;
  OffsetEstimate both;
  both.offset = (positive.offset * positives + negative.offset * negatives) / all;
  both.error = std::sqrt((positive.error * positive.error * positives * positives +
                          negative.error * negative.error * negatives * negatives) /
                         (all * all));
  return both;
}

bool hasShortage(const PointSets& points) {
  const std::size_t negatives = points.negative.x.size();
  const std::size_t positives = points.positive.x.size();
  return negatives < fewestPoints && positives < fewestPoints && negatives + positives > 0;
}

/// Offset and error only; both 0 when neither set has points enough.
OffsetEstimate fitSets(const CITRANS& run, const Nucleus& nucleus, const PointSets& points) {
  const OffsetEstimate negative = fitSet(run, points.negative, nucleus.negativeIntercept);
  const OffsetEstimate positive = fitSet(run, points.positive, nucleus.positiveIntercept);
  const std::size_t negatives = points.negative.x.size();
  const std::size_t positives = points.positive.x.size();
  if (positives >= fewestPoints && negatives >= fewestPoints) {
    return combine(negative, static_cast<float>(negatives), positive,
                   static_cast<float>(positives));
  }
  if (positives >= fewestPoints) {
    return positive;
  }
  if (negatives >= fewestPoints) {
    return negative;
  }
  return {};
}

OffsetEstimate fitNucleus(const CITRANS& run, const Nucleus& nucleus, const PointSets& points) {
  OffsetEstimate estimate = fitSets(run, nucleus, points);
  estimate.points = points.negative.x.size() + points.positive.x.size();
  estimate.counts = std::fabs(estimate.offset) > significantErrors * estimate.error &&
                    estimate.error > 0 && estimate.points > fewestPoints;
  return estimate;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void printEstimate(const char* format, const OffsetEstimate& estimate) {
  std::printf(format, static_cast<double>(estimate.offset), static_cast<double>(estimate.error),
              static_cast<int>(estimate.points));
}
#pragma GCC diagnostic pop

/// Estimates, and prints and records an offset that counts under each key.
void recordOffset(CITRANS& run, const Nucleus& nucleus, const PointSets& points,
                  std::initializer_list<const char*> keys) {
  if (hasShortage(points)) {
    std::fputs(nucleus.shortage, stderr);
  }
  const OffsetEstimate estimate = fitNucleus(run, nucleus, points);
  if (!estimate.counts) {
    return;
  }
  printEstimate(nucleus.estimate, estimate);
  for (const char* key : keys) {
    run.offsets[key] = estimate.offset;
  }
}

} // namespace

void PointSets::add(float difference, float value) {
  PointSet& set = difference < 0 ? negative : positive;
  set.x.push_back(difference);
  set.y.push_back(value);
}

OffsetEstimates fitOffsets(const CITRANS& run, const ReferencingPoints& points) {
  return {fitNucleus(run, alphaBetaCarbon, points.ca), fitNucleus(run, alphaProton, points.ha),
          fitNucleus(run, carbonyl, points.c)};
}

void estimateOffsets(CITRANS& run, const ReferencingPoints& points) {
  recordOffset(run, alphaBetaCarbon, points.ca, {"CA", "CB"});
  recordOffset(run, alphaProton, points.ha, {"HA"});
  recordOffset(run, carbonyl, points.c, {"C"});
}
