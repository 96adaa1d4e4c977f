#pragma once

#include <string>
#include <vector>

#include "tools/batch/entry.h"
#include "tools/batch/report_pages.h"

/// How every entry of a batch is run.
struct RunSettings {
  std::vector<std::string> predictor; ///< command that predicts the table named after it
  std::string importer;               ///< program that turns depositions into tables
  PageSettings pages;                 ///< a page for each entry, when it has a folder
  unsigned seconds = 300;             ///< longest time of one process; 0 for no limit
};

/// Imports one entry where it is no table already and predicts it, each in a process of its own.
/// Never throws for what the entry holds: that is the result's status.
///
/// \param scratch  an empty folder of this call's own; emptied again
EntryResult runEntry(const Entry& entry, const RunSettings& settings, const std::string& scratch);
