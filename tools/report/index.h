#pragma once

#include <string>
#include <vector>

/// One protein of many, as the list of them needs it.
struct IndexEntry {
  std::string name;    ///< what the user calls it: the name of its file
  std::string page;    ///< where its page is, relative to the list; empty without one
  std::string json;    ///< its report, as `jsonText` makes it; empty without one
  std::string message; ///< why there is no report; may be empty
};

/// A page that lists the entries, with links to theirs: it sorts by any column and filters by what
/// needs a look. One file without network; its script is in it. The same entries give the same
/// bytes.
///
/// Throws nlohmann::json::exception for a text that is no report.
std::string indexPage(const std::vector<IndexEntry>& entries);
