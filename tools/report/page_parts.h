#pragma once

#include <string>

#include "tools/report/report.h"

/// Pieces of the page, as HTML; every text from files is escaped in them.

/// The warnings that concern the whole report, and calls that referencing would change.
std::string warningParts(const Report& report);
/// The table of all prolines.
std::string summaryPart(const Report& report);
/// One proline: call, words, numbers, pictures.
std::string prolinePart(const Report& report, const ProlineReport& proline);
/// The estimated referencing offsets.
std::string referencingPart(const Report& report);
/// The secondary shifts outside the limits.
std::string outlierPart(const Report& report);
