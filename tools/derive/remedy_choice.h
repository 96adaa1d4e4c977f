#pragma once

#include "tools/derive/cross_validation.h"
#include "tools/derive/metrics.h"

namespace derive {

/// Calls by P_CIS_NORM of the prolines with truth *both* and *shifts* that carry one of
/// `carbonErrors`, after a remedy.
std::vector<Call> referencingCalls(const CrossValidation& result, std::size_t error,
                                   std::size_t remedy, bool hideCg);

/// Mean Matthews correlation of those calls over the errors from `first` to before `end`, with CG
/// given and hidden.
double remedyWorth(const CrossValidation& result, std::size_t remedy, std::size_t first,
                   std::size_t end);

/// Among the companions' estimates of each nucleus by itself the one that is worth most over all
/// errors, the strictest of those that are equal. Estimates that carbons share are not worth more
/// over all errors, and less where only some carbons are misreferenced.
std::size_t chooseRemedy(const CrossValidation& result);

} // namespace derive
