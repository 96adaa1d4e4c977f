#pragma once

#include "tools/derive/adjustments.h"

namespace derive {

/// What one protein adds to the objective of the adjustments (see adjustments.h).
///
/// \param gradient  when not null, the derivative by each adjustment is added to it
double offsetLoss(const ReferencePoints& points, const Adjustments& adjustments,
                  Adjustments* gradient);

} // namespace derive
