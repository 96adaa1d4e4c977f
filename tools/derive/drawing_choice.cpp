#include "tools/derive/drawing_choice.h"

#include <algorithm>
#include <iterator>

#include "tools/derive/cross_validation.h"

namespace derive {

double chooseDrawing(const std::vector<TrainingSample>& samples) {
  std::array<double, drawingCandidates.size()> losses{};
  for (int fold = 0; fold < foldCount; ++fold) {
    std::vector<TrainingSample> fitted;
    std::vector<TrainingSample> heldOut;
    std::partition_copy(
        samples.begin(), samples.end(), std::back_inserter(heldOut), std::back_inserter(fitted),
        [fold](const TrainingSample& sample) { return foldOf(sample.cluster) == fold; });
    if (heldOut.empty() || fitted.empty()) {
      continue;
    }
    const ShiftStatistics plain = robustStatistics(fitted);
    for (std::size_t i = 0; i < drawingCandidates.size(); ++i) {
      losses[i] += heldOutLoss(heldOut, fitStatistics(fitted, plain, drawingCandidates[i]));
    }
  }
  const auto least = std::min_element(losses.begin(), losses.end()) - losses.begin();
  return drawingCandidates[static_cast<std::size_t>(least)];
}

} // namespace derive
