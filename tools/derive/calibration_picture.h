#pragma once

#include <string>

#include "tools/derive/metrics.h"

namespace derive {

/// An SVG picture of a calibration table: share of cis against mean probability, one disc for
/// each tenth of the probabilities, its area by the number of prolines on a log scale, and the
/// diagonal on which a calibrated probability lies.
std::string calibrationPicture(const Metrics& metrics, const std::string& title);

} // namespace derive
