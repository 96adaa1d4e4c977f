#pragma once

#include <array>
#include <vector>

#include "tools/derive/tables.h"

/// Fit of the proline statistics to the conditional likelihood of the program's own formula.
///
/// The formula multiplies Gaussians without their widths, as if the shifts were independent. With
/// plain means and deviations it is far too sure of itself. Here means and deviations are those
/// that make P_CIS_NORM the probability of the labels, at the formula's 1 cis to 19 trans, with
/// the neighbour frequencies times one common factor. A quadratic penalty holds every mean (in
/// units of its deviation) and the logarithm of every deviation near the plain ones.
///
/// A second penalty draws the two forms together, for every shift but CB and CG of the proline:
/// drawing / 2 times (D squared plus W squared), with D the distance of the cis and trans means in
/// units of the root mean square of their plain deviations, and W the logarithm of the ratio of the
/// deviations in units of 0.5. The shifts of a triplet repeat each other, and a product of
/// Gaussians counts each repetition.
namespace derive {

/// What the fit sees of one proline.
struct TrainingSample {
  std::array<float, statisticCount> shifts; ///< ppm; not-a-number when missing
  double neighbourLogOdds; ///< log of the neighbour frequencies' cis to trans ratio
  bool cis;
  double weight;      ///< from the trust in the label and the size of the cluster
  double mislabelled; ///< probability that the label is wrong
  int cluster;        ///< related proteins share a number
};

struct FittedStatistics {
  ShiftStatistics statistics;
  double cisFactor; ///< on the neighbour frequencies
  double loss;      ///< of the weighted samples and the penalty
  int evaluations;
};

/// Medians, and deviations from the median absolute deviation, of cis and trans samples. Neutral
/// values for indices that never meet a shift, and for those with too few samples of a class.
ShiftStatistics robustStatistics(const std::vector<TrainingSample>& samples);

/// Strength of the second penalty for the tables that ship, in nats. Chosen once, by the folds of
/// the cross-validation; docs/accuracy.md compares it with a choice within each training fold.
constexpr double shippedDrawing = 5;

FittedStatistics fitStatistics(const std::vector<TrainingSample>& samples,
                               const ShiftStatistics& plain, double drawing = shippedDrawing);

/// Loss of the samples under statistics that were fitted to others, without penalties, in nats
/// times weight.
double heldOutLoss(const std::vector<TrainingSample>& samples, const FittedStatistics& fitted);

/// The objective, for tests: parameters are, for every index, cis mean, trans mean, log cis width
/// and log trans width in penalty units, then the log of the common factor.
double statisticsLoss(const std::vector<TrainingSample>& samples, const ShiftStatistics& plain,
                      const std::vector<double>& parameters, double drawing,
                      std::vector<double>& gradient);

} // namespace derive
