#pragma once

#include <string>
#include <vector>

#include "tools/batch/entry.h"

/// The entries of a batch in a fixed order: as named, a folder's files by name, subfolders
/// included, names beginning with a dot left out. A path named twice counts once.
///
/// \param paths  files and folders
/// \param listFile  a file with one path a line, empty lines and those beginning with # left out;
///                  "-" for standard input, empty for none
/// \param own  files that the batch itself writes, which are no entries where a folder holds them
/// Throws ToolError(inputMissing) when the list or a folder cannot be read. A named file that does
/// not exist is an entry of its own, which fails when its turn comes.
std::vector<Entry> collectEntries(const std::vector<std::string>& paths,
                                  const std::string& listFile, const std::vector<std::string>& own);
