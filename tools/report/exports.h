#pragma once

#include <string>

#include "tools/report/report.h"

/// The report for other programs. Numbers have a point and a hyphen; what is missing is empty in
/// TSV and null in JSON.

/// One row for each contribution to each predicted proline; the columns are named in the first
/// line.
std::string tsvText(const Report& report);

/// Everything: prolines with their contributions, offsets, outliers, warnings.
std::string jsonText(const Report& report);
