#include "tools/derive/clustered.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <random>

namespace derive {
namespace {

constexpr int bootstrapSamples = 2000;
constexpr double lowShare = 0.025;
constexpr double highShare = 0.975;

/// Counts of hits, missed cis, false cis and right trans.
using Counts = std::array<double, 4>;

Counts countsOf(const Call& call) {
  const bool calledCis = call.probability > 0.5;
  return {call.cis && calledCis ? 1.0 : 0, call.cis && !calledCis ? 1.0 : 0,
          !call.cis && calledCis ? 1.0 : 0, !call.cis && !calledCis ? 1.0 : 0};
}

void add(Counts& sum, const Counts& counts) {
  for (std::size_t i = 0; i < sum.size(); ++i) {
    sum[i] += counts[i];
  }
}

double matthewsOf(const Counts& counts) {
  return matthews(counts[0], counts[1], counts[2], counts[3]);
}

} // namespace

double Agreement::deviation() const {
  return found == said ? 0 : (found - said) / standardError;
}

Agreement agreementOf(const std::vector<ClusteredCall>& calls) {
  Agreement agreement;
  agreement.count = calls.size();
  double variance = 0;
  std::map<int, double> excess;
  for (const ClusteredCall& clustered : calls) {
    const double p = std::isnan(clustered.call.probability) ? 0 : clustered.call.probability;
    const double cis = clustered.call.cis ? 1 : 0;
    agreement.said += p;
    agreement.found += cis;
    variance += p * (1 - p);
    excess[clustered.cluster] += cis - p;
  }
  double byCluster = 0;
  for (const auto& [cluster, sum] : excess) {
    byCluster += sum * sum;
  }
  if (!calls.empty()) {
    const auto count = static_cast<double>(calls.size());
    agreement.said /= count;
    agreement.found /= count;
    agreement.standardError = std::sqrt(std::max(variance, byCluster)) / count;
  }
  return agreement;
}

Interval matthewsGain(const std::vector<ClusteredCall>& before,
                      const std::vector<ClusteredCall>& after) {
  struct Pair {
    Counts before{}, after{};
  };
  std::map<int, Pair> byCluster;
  for (std::size_t i = 0; i < before.size(); ++i) {
    add(byCluster[before[i].cluster].before, countsOf(before[i].call));
    add(byCluster[after[i].cluster].after, countsOf(after[i].call));
  }
  std::vector<Pair> clusters;
  clusters.reserve(byCluster.size());
  for (const auto& [cluster, pair] : byCluster) {
    clusters.push_back(pair);
  }
  std::mt19937 random(1);
  std::vector<double> gains;
  for (int sample = 0; sample < bootstrapSamples; ++sample) {
    Pair sum;
    for (std::size_t i = 0; i < clusters.size(); ++i) {
      // Not a distribution of the library, whose numbers differ between implementations.
      const std::size_t drawn = (std::uint64_t(random()) * clusters.size()) >> 32U;
      add(sum.before, clusters[drawn].before);
      add(sum.after, clusters[drawn].after);
    }
    gains.push_back(matthewsOf(sum.after) - matthewsOf(sum.before));
  }
  return {quantile(gains, lowShare), quantile(gains, highShare)};
}

} // namespace derive
