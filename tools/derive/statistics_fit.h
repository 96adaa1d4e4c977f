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
namespace derive {

/// What the fit sees of one proline.
struct TrainingSample {
  std::array<float, statisticCount> shifts; ///< ppm; not-a-number when missing
  double neighbourLogOdds; ///< log of the neighbour frequencies' cis to trans ratio
  bool cis;
  double weight;      ///< from the trust in the label and the size of the cluster
  double mislabelled; ///< probability that the label is wrong
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

FittedStatistics fitStatistics(const std::vector<TrainingSample>& samples,
                               const ShiftStatistics& plain);

/// The objective, for tests: parameters are, for every index, cis mean, trans mean, log cis width
/// and log trans width in penalty units, then the log of the common factor.
double statisticsLoss(const std::vector<TrainingSample>& samples, const ShiftStatistics& plain,
                      const std::vector<double>& parameters, std::vector<double>& gradient);

} // namespace derive
