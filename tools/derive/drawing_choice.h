#pragma once

#include <array>
#include <vector>

#include "tools/derive/statistics_fit.h"

namespace derive {

/// Strengths of the penalty that draws the two forms together, to choose from.
constexpr std::array<double, 6> drawingCandidates = {0, 1, 2, 5, 10, 20};

/// The candidate with the least loss on samples that the fit did not see: each fold of the clusters
/// that is among the samples is left out in turn. The weaker one of two that tie.
double chooseDrawing(const std::vector<TrainingSample>& samples);

} // namespace derive
