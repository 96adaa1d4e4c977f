#pragma once

#include "tools/report/picture.h"
#include "tools/report/report.h"

/// The pictures of a report. Bars and curves of cis lie to the right or are drawn through; those of
/// trans lie to the left or are dashed.

/// All prolines at one sight: a row each, a cell for each shift and neighbour, and the sum.
Picture overviewPicture(const Report& report);

/// One proline: a bar for each contribution, on a scale common to the report, with what is missing
/// and what was bounded.
Picture evidencePicture(const Report& report, const ProlineReport& proline);

/// Where the proline's CB or CG lies in the Gaussians of cis and trans. The term is that of the
/// shift, present or not.
Picture positionPicture(const Report& report, const Term& term);

/// The sum of one proline as a small bar for a table cell.
Picture sumPicture(const Report& report, const ProlineReport& proline);

/// Secondary shifts of the residues first to last, a track for each atom; prolines stand out by
/// their call, outliers by an exclamation mark.
Picture sequencePicture(const Report& report, int first, int last);

/// Largest contribution that the bars show in full: that of the report, rounded up, at most 10.
double contributionScale(const Report& report);
