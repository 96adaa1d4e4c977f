#pragma once

#include <string>
#include <vector>

#include "tools/batch/entry.h"
#include "tools/batch/prediction.h"
#include "tools/batch/report_pages.h"

/// How every entry of a batch is run.
struct RunSettings {
  PredictionSettings prediction;
  std::string importer;   ///< program that turns depositions into tables; empty for the importer's
                          ///< library in the same process
  PageSettings pages;     ///< a page for each entry, when it has a folder
  unsigned seconds = 300; ///< longest time of one step of an entry; 0 for no limit
};

/// Imports one entry where it is no table already, and predicts it. Never throws for what the entry
/// holds: that is the result's status. A step that takes too long ends the process with SIGALRM.
///
/// \param scratch  an empty folder of this call's own; emptied again
EntryResult runEntry(const std::string& path, const RunSettings& settings,
                     const Predictor& predictor, const std::string& scratch);

/// Runs the entries whose paths come over standard input, each ended by a NUL byte, and answers
/// each with a line of JSON on standard output, until the input ends.
void serveEntries(const RunSettings& settings, const std::string& scratch);
