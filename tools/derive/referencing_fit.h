#pragma once

#include <vector>

#include "tools/derive/tables.h"
#include "tools/referencing/estimate.h"

/// The constants of the companions' estimate of the referencing, from well-referenced proteins.
///
/// Per nucleus, the two lines and an offset for each protein are fitted in turn, by least squares
/// with Tukey's weights, so that neither wild shifts nor badly referenced proteins bend the lines;
/// the median of the offsets is 0. The error is what such offsets scatter by: a variance of the
/// proteins themselves and one that falls with the number of shifts, by quantile regression, so
/// that two thirds of the proteins lie within one error.
namespace derive {

/// Residues of one protein that the estimate looks at.
using ReferencedProtein = std::vector<referencing::ResidueShifts>;

/// All constants but the number of errors from which on a correction is worth it.
referencing::Model fitReferencing(const std::vector<ReferencedProtein>& proteins);

/// Text of reref.tab.
std::string referencingTable(const referencing::Model& model, const Origin& origin);

} // namespace derive
