#pragma once

#include <string>
#include <vector>

#include "tools/analyse/analyse.h"
#include "tools/batch/entry.h"

/// The pages of a batch, below a folder that the user names: index.html and pages/.

/// The name of a file without its folders.
std::string fileName(const std::string& path);

/// The name of an entry's page below the folder, without its ending: the name of its file, and a
/// number made from its path, so that entries of one name in two folders keep apart and the path
/// itself is not told.
std::string pageName(const std::string& entryPath);

/// Takes the files below the folder, pages of an earlier batch, out of the entries.
void leaveOutPages(const std::string& folder, std::vector<Entry>& entries);

/// Makes the folders. Throws ToolError(cannotWrite).
void makePageFolders(const std::string& folder);

/// Writes the page and the JSON file of one entry, and puts its row of the list into the result; a
/// page that cannot be written is added to its message instead.
void writeEntryPage(const std::string& folder, const analyse::Result& found, EntryResult& result);

/// Writes index.html, the list of all entries. Throws ToolError(cannotWrite).
void writeIndex(const std::string& folder, const std::vector<EntryResult>& results);
