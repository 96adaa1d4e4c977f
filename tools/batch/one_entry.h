#pragma once

#include <string>

#include "tools/analyse/analyse.h"
#include "tools/batch/entry.h"

/// How every entry of a batch is run.
struct RunSettings {
  analyse::Settings analysis;
  std::string tables;     ///< folder of the database
  std::string importer;   ///< program that turns depositions into tables; empty for the importer's
                          ///< library in the same process
  std::string reports;    ///< folder for a page about each entry; empty for none
  unsigned seconds = 300; ///< longest time of an entry; 0 for no limit
};

/// Runs one entry. Never throws for what the entry holds: that is the result's status. An entry
/// that takes too long ends the process with SIGALRM.
///
/// \param scratch  an empty folder of this call's own, for the importing program; emptied again
EntryResult runEntry(const std::string& path, const RunSettings& settings,
                     const analyse::Analyser& analyser, const std::string& scratch);

/// Runs the entries whose paths come over standard input, each ended by a NUL byte, and answers
/// each with a line of JSON on standard output, until the input ends.
void serveEntries(const RunSettings& settings, const std::string& scratch);
