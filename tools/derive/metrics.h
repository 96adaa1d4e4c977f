#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace derive {

/// A probability of cis and what is true.
struct Call {
  double probability; ///< 0 to 1; not-a-number counts as a trans call of probability 0
  bool cis;
};

constexpr std::size_t calibrationBins = 10;

/// One tenth of the probabilities.
struct CalibrationBin {
  std::size_t count = 0;
  double meanProbability = 0; ///< 0 for an empty bin
  double shareCis = 0;        ///< 0 for an empty bin
};

/// How good a set of calls is; a call is cis above 0.5. Ratios without a denominator are
/// not-a-number.
struct Metrics {
  std::size_t count = 0;
  std::size_t cis = 0;
  std::size_t falseCis = 0;
  std::size_t missedCis = 0;
  double areaUnderCurve = 0; ///< of sensitivity against false-positive rate; ties count half
  double sensitivity = 0;
  double precision = 0;
  double matthews = 0;         ///< correlation of calls and truth; 0 without a denominator
  double logLoss = 0;          ///< mean, in nats; probabilities are bounded by 1e-6
  double calibrationError = 0; ///< mean over calls of a bin's |mean probability - share of cis|
  std::array<CalibrationBin, calibrationBins> bins{};
};

/// Matthews correlation of calls and truth, from counts or their expectations; 0 without a
/// denominator.
double matthews(double hits, double missedCis, double falseCis, double rightTrans);

Metrics measure(const std::vector<Call>& calls);

/// Value below which a share of the values lies; not-a-number for no values.
double quantile(std::vector<double> values, double share);

} // namespace derive
