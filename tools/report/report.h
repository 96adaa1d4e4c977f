#pragma once

#include <string>
#include <vector>

#include "tools/report/quality.h"
#include "tools/report/verdict.h"

/// One proline of the sequence.
struct ProlineReport {
  int residue = 0;
  bool predicted = false; ///< false: no row in the summary, and no evidence
  SummaryRow row;
  Evidence evidence;
  Verdict verdict;
};

/// Everything that the outputs show.
struct Report {
  Inputs inputs;
  std::vector<ProlineReport> prolines; ///< all of the sequence, in its order
  ReportedCheck check;
  std::vector<ChangedCall> changedCalls; ///< by subtracting the estimated offsets
  std::vector<std::string> warnings;     ///< plain text
  std::string database;                  ///< folder of the tables

  const ProlineReport* proline(int residue) const;
};

/// Reads the files and works everything out.
///
/// \param clip  whether shifts are bounded, as in a run of citrans without -noclip
/// Throws ToolError as `readInputs` and `fillRun` do.
Report makeReport(const InputPaths& paths, bool clip);
