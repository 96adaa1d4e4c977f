#pragma once

#include <string>

#include "tools/report/inputs.h"

/// The files of citrans-report: the only part of it that touches any, besides the tables.

/// The bytes of a file, or of standard input for "-". Throws ToolError(inputMissing) when it cannot
/// be opened or is a directory.
NamedText readText(const std::string& path);

/// Makes the folder and those above it, where they are not there. Throws ToolError(cannotWrite).
void makeFolder(const std::string& path);

/// The name of the secondary-shift table that citrans writes beside a summary.
std::string shiftTableName(const std::string& summary);
