#include "tools/derive/limits.h"

#include <algorithm>
#include <cmath>

namespace derive {
namespace {

constexpr double lowShare = 0.01;
constexpr double highShare = 0.99;
constexpr std::size_t fewestShifts = 50;
/// Above the highest CB of the cis prolines of the training data, ppm.
constexpr double cisCbMargin = 0.3;
/// No shift of a real spectrum lies beyond, and 9999 stays above every reader's threshold.
constexpr Limit unbounded = {-999, 998};

} // namespace

double percentile(std::vector<double>& values, double share) {
  std::sort(values.begin(), values.end());
  const double place = share * static_cast<double>(values.size() - 1);
  const auto low = static_cast<std::size_t>(std::floor(place));
  const std::size_t high = std::min(low + 1, values.size() - 1);
  return values[low] + (place - std::floor(place)) * (values[high] - values[low]);
}

Limits findLimits(ShiftsByType shifts, double highestCisCb, double leastHighestCb) {
  Limits limits{};
  for (std::size_t atom = 0; atom < atomCount; ++atom) {
    Limit widest = {0, 0};
    for (std::size_t letter = 0; letter < letterCount; ++letter) {
      std::vector<double>& values = shifts[letter][atom];
      Limit& limit = limits[letter][atom];
      if (values.size() < fewestShifts) {
        limit = unbounded;
        continue;
      }
      limit.lowest = percentile(values, lowShare);
      limit.highest = percentile(values, highShare);
      if (letter == letterIndex('P') && atom == CB) {
        limit.highest = std::max({limit.highest, highestCisCb + cisCbMargin, leastHighestCb});
      }
      widest.lowest = std::min(widest.lowest, limit.lowest);
      widest.highest = std::max(widest.highest, limit.highest);
    }
    limits[letterCount][atom] = widest;
  }
  return limits;
}

} // namespace derive
