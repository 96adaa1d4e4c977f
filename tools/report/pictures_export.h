#pragma once

#include <string>

#include "tools/report/report.h"

/// Writes pictures as SVG files.
///
/// \param target  a name that ends in ".svg", or "-": the overview alone; any other: a folder,
///                made when needed, that gets overview.svg, for each predicted proline PN.svg,
///                PN-CB.svg and PN-CG.svg (N being the number of the table), and
///                secondary-shifts-N.svg for each stretch of 80 residues from N on
/// Throws ToolError(cannotWrite).
void writePictures(const Report& report, const std::string& target);

/// Whether the target means one file.
bool isPictureFile(const std::string& target);
