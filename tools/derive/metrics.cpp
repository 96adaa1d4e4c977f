#include "tools/derive/metrics.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/derive/limits.h"

namespace derive {
namespace {

constexpr double leastProbability = 1e-6;

double probabilityOf(const Call& call) {
  return std::isnan(call.probability) ? 0 : call.probability;
}

/// Share of pairs of a cis and a trans proline that are in order.
double areaUnderCurve(std::vector<Call> calls, std::size_t cis) {
  std::sort(calls.begin(), calls.end(),
            [](const Call& a, const Call& b) { return probabilityOf(a) < probabilityOf(b); });
  double pairs = 0;
  std::size_t transBelow = 0;
  for (std::size_t i = 0; i < calls.size();) {
    std::size_t end = i;
    std::size_t tiedCis = 0;
    while (end < calls.size() && probabilityOf(calls[end]) == probabilityOf(calls[i])) {
      tiedCis += calls[end++].cis ? 1U : 0U;
    }
    const std::size_t tiedTrans = end - i - tiedCis;
    pairs += static_cast<double>(tiedCis) *
             (static_cast<double>(transBelow) + 0.5 * static_cast<double>(tiedTrans));
    transBelow += tiedTrans;
    i = end;
  }
  return pairs / (static_cast<double>(cis) * static_cast<double>(calls.size() - cis));
}

void addToBin(Metrics& metrics, double probability, bool cis) {
  const auto bin = static_cast<std::size_t>(probability * calibrationBins);
  CalibrationBin& into = metrics.bins[std::min(bin, calibrationBins - 1)];
  ++into.count;
  into.meanProbability += probability;
  into.shareCis += cis ? 1 : 0;
}

void finishBins(Metrics& metrics) {
  for (CalibrationBin& bin : metrics.bins) {
    if (bin.count > 0) {
      const auto count = static_cast<double>(bin.count);
      metrics.calibrationError += std::fabs(bin.meanProbability - bin.shareCis);
      bin.meanProbability /= count;
      bin.shareCis /= count;
    }
  }
  metrics.calibrationError /= static_cast<double>(metrics.count);
}

void finishRates(Metrics& metrics, double hits) {
  const double missed = static_cast<double>(metrics.missedCis);
  const double wrong = static_cast<double>(metrics.falseCis);
  const double right = static_cast<double>(metrics.count) - hits - missed - wrong;
  metrics.sensitivity = hits / (hits + missed);
  metrics.precision = hits / (hits + wrong);
  metrics.matthews = matthews(hits, missed, wrong, right);
}

} // namespace

double matthews(double hits, double missedCis, double falseCis, double rightTrans) {
  const double denominator = std::sqrt((hits + falseCis) * (hits + missedCis) *
                                       (rightTrans + falseCis) * (rightTrans + missedCis));
  return denominator > 0 ? (hits * rightTrans - falseCis * missedCis) / denominator : 0;
}

Metrics measure(const std::vector<Call>& calls) {
  Metrics metrics;
  metrics.count = calls.size();
  double hits = 0;
  for (const Call& call : calls) {
    const double probability = probabilityOf(call);
    const bool calledCis = probability > 0.5;
    metrics.cis += call.cis ? 1U : 0U;
    metrics.falseCis += calledCis && !call.cis ? 1U : 0U;
    metrics.missedCis += !calledCis && call.cis ? 1U : 0U;
    hits += calledCis && call.cis ? 1 : 0;
    const double bounded = std::clamp(probability, leastProbability, 1 - leastProbability);
    metrics.logLoss -= std::log(call.cis ? bounded : 1 - bounded);
    addToBin(metrics, probability, call.cis);
  }
  metrics.logLoss /= static_cast<double>(metrics.count);
  finishBins(metrics);
  finishRates(metrics, hits);
  metrics.areaUnderCurve = areaUnderCurve(calls, metrics.cis);
  return metrics;
}

double quantile(std::vector<double> values, double share) {
  return values.empty() ? std::numeric_limits<double>::quiet_NaN() : percentile(values, share);
}

} // namespace derive
