#pragma once

#include <cstddef>
#include <vector>

#include "tools/derive/metrics.h"

/// Measures with their errors. Prolines of related proteins resemble each other: what varies
/// independently is the cluster.
namespace derive {

struct ClusteredCall {
  Call call;
  int cluster;
};

/// Mean probability of cis beside the share of cis; all 0 without calls.
struct Agreement {
  std::size_t count = 0;
  double said = 0;
  double found = 0;
  /// Of the difference: the larger of what the probabilities imply, were they right and the
  /// prolines independent, and of what the sums over clusters show.
  double standardError = 0;

  /// Found minus said in standard errors; 0 when the two are the same.
  double deviation() const;
};

Agreement agreementOf(const std::vector<ClusteredCall>& calls);

struct Interval {
  double low, high;
};

/// The 95 % interval of the MCC of `after` less that of `before`, by paired bootstrap over
/// clusters; the same in every run. Both hold the same prolines in the same order.
Interval matthewsGain(const std::vector<ClusteredCall>& before,
                      const std::vector<ClusteredCall>& after);

} // namespace derive
