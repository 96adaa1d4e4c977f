#pragma once

#include <string>
#include <vector>

#include "tools/common/output.h"
#include "tools/report/report.h"

/// The pictures as SVG files, by name.
///
/// \param target  a name that ends in ".svg", or "-": the overview alone; any other: a folder
///                that gets overview.svg, for each predicted proline PN.svg,
///                PN-CB.svg,
///                PN-CG.svg and, with both carbons, PN-CB-CG.svg (N being the number of the table),
///                and secondary-shifts-N.svg for each stretch of 80 residues from N on
std::vector<Output> pictureFiles(const Report& report, const std::string& target);

/// Whether the target means one file.
bool isPictureFile(const std::string& target);
