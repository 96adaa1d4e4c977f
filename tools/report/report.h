#pragma once

#include <string>
#include <vector>

#include "tools/report/carbons.h"
#include "tools/report/referencing_check.h"
#include "tools/report/verdict.h"

/// A call with another referencing.
struct CorrectedCall {
  Verdict::Call call = Verdict::Call::none;
  double pCisNorm = 0; ///< may be not-a-number
};

/// One proline of the sequence.
struct ProlineReport {
  int residue = 0;
  bool predicted = false; ///< false: no row in the summary, and no evidence
  SummaryRow row;
  Evidence evidence;
  Verdict verdict;
  Carbons carbons;
  bool disagrees = false; ///< with the reference structure
  /// With the estimated offsets taken once off all nuclei; only when there are offsets.
  std::optional<CorrectedCall> corrected;

  /// With what was taken off before the run put back; only when something was.
  std::optional<CorrectedCall> asGiven;

  bool callChanges() const { return corrected && corrected->call != verdict.call; }
  bool callChanged() const { return asGiven && asGiven->call != verdict.call; }
};

/// Something to look at before relying on the calls.
struct Concern {
  std::string kind; ///< one word for programs
  std::string text; ///< plain text; the residues follow it
  std::vector<int> residues;
};

/// Everything that the outputs show.
struct Report {
  Inputs inputs;
  std::vector<ProlineReport> prolines; ///< all of the sequence, in its order
  ReferencingCheck check;
  std::vector<std::string> warnings; ///< plain text
  std::vector<Concern> concerns;     ///< what needs attention, gravest first
  std::string tables;                ///< what made the statistics, as their remarks say

  /// Number of shifts, or of prolines with CG, by nucleus, those without any left out.
  std::vector<std::pair<std::string, std::size_t>> nuclei() const;

  const ProlineReport* proline(int residue) const;
};

/// Works everything out; reads and writes nothing. Throws ToolError as `readInputs` does.
Report makeReport(const Sources& sources, const Database& database);

/// What a reader should look at first.
std::vector<Concern> concernsOf(const Report& report);
