#pragma once

#include <string>
#include <vector>

#include "tools/batch/entry.h"

/// Where and how a batch makes a page for each entry.
struct PageSettings {
  std::string folder;               ///< empty: no pages
  std::string citrans;              ///< program that predicts
  std::string report;               ///< program that makes the page
  std::vector<std::string> options; ///< further options of citrans, such as "-offset"
  unsigned seconds = 300;           ///< longest time of one process; 0 for no limit
};

/// The name of an entry's page below the folder, without its ending: the name of its file, and a
/// number made from its path, so that entries of one name in two folders keep apart and the path
/// itself is not told.
std::string pageName(const std::string& entryPath);

/// Takes the files below the folder, pages of an earlier batch, out of the entries.
void leaveOutPages(const PageSettings& settings, std::vector<Entry>& entries);

/// Makes the folders. Throws ToolError(cannotWrite).
void makePageFolders(const PageSettings& settings);

/// Writes the page and the JSON file of one entry from its table, in processes of their own.
///
/// \param table, map  the entry's table, and author numbers; the map need not be there
/// \param scratch  folder for files in between
/// \param result  the entry's; a page that could not be made is added to its message
void writeEntryPage(const PageSettings& settings, const std::string& table, const std::string& map,
                    const std::string& scratch, EntryResult& result);

/// Writes index.html, the list of all entries. Throws ToolError(cannotWrite).
void writeIndex(const PageSettings& settings, const std::vector<EntryResult>& results);
