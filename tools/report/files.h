#pragma once

#include <string>

#include "tools/report/inputs.h"

/// The files of citrans-report: the only part of it that touches any, besides the tables.

/// What the user names on the command line.
struct InputPaths {
  std::string summary;  ///< "-" for standard input
  std::string shifts;   ///< empty: beside the summary, as citrans names it; "-" likewise
  std::string database; ///< folder of the tables; empty: where citrans looks
  std::string map;      ///< author numbers; empty for none
};

/// Reads the files of one protein. Throws ToolError(inputMissing) for one that cannot be read.
Sources readSources(const InputPaths& paths);

/// Reads the tables of a folder. Throws ToolError(inputMissing) for one that is not there.
Database readDatabase(const std::string& folder);

/// The bytes of a file, or of standard input for "-". Throws ToolError(inputMissing) when it cannot
/// be opened or is a directory.
NamedText readText(const std::string& path);

/// Makes the folder and those above it, where they are not there. Throws ToolError(cannotWrite).
void makeFolder(const std::string& path);

/// The name of the secondary-shift table that citrans writes beside a summary.
std::string shiftTableName(const std::string& summary);
