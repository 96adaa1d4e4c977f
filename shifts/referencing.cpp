#include "shifts/referencing.h"

#include <cmath>

namespace {

/// A set with fewer points is not fitted, and no more points in all than this are not enough.
constexpr std::size_t fewestPoints = 10;
/// An offset counts when it exceeds so many times its error.
constexpr float significantErrors = 5;

/// Intercepts that well-referenced shifts give.
struct Nucleus {
  double negativeIntercept;
  double positiveIntercept;
};

constexpr Nucleus alphaBetaCarbon = {0.094, 0.459};
constexpr Nucleus alphaProton = {0.089, -0.008};
constexpr Nucleus carbonyl = {-0.272, 0.226};

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
  estimate.shortage = hasShortage(points);
  estimate.counts = std::fabs(estimate.offset) > significantErrors * estimate.error &&
                    estimate.error > 0 && estimate.points > fewestPoints;
  return estimate;
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
