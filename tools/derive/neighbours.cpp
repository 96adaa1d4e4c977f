#include <initializer_list>

#include "tools/derive/tables.h"

namespace derive {
namespace {

/// Imagined prolines that are spread over the residue types like all prolines together.
constexpr double imagined = 50;

struct Frequency {
  double cis, trans;
};

Frequency frequency(const NeighbourTable& counts, std::size_t letter) {
  const std::size_t disulfide = letterIndex('c'); // shares the count of all cysteines
  NeighbourCounts all;
  for (std::size_t i = 0; i < letterCount; ++i) {
    if (i != disulfide) {
      all.cis += counts[i].cis;
      all.trans += counts[i].trans;
    }
  }
  const NeighbourCounts mean = {all.cis / (letterCount - 1), all.trans / (letterCount - 1)};
  const NeighbourCounts own = letter < letterCount ? counts[letter] : mean;
  const double prior = letter < letterCount ? (own.cis + own.trans) / (all.cis + all.trans)
                                            : 1.0 / (letterCount - 1);
  return {(own.cis + imagined * prior) / (all.cis + imagined),
          (own.trans + imagined * prior) / (all.trans + imagined)};
}

} // namespace

NeighbourStatistic neighbourStatistic(const Published& published, std::size_t letter) {
  const Frequency previous = frequency(published.before, letter);
  const Frequency next = frequency(published.after, letter);
  return {previous.cis, next.cis, previous.trans, next.trans};
}

} // namespace derive
