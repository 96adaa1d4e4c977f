#include "tools/report/report.h"

#include <cmath>
#include <map>

#include "tools/report/text.h"

namespace {

void addProlines(CITRANS& run, Report& report) {
  for (const auto& [residue, name] : report.inputs.sequence) {
    if (name != "P") {
      continue;
    }
    ProlineReport proline{};
    proline.residue = residue;
    const SummaryRow* const row = report.inputs.summaryRow(residue);
    if (row == nullptr) {
      proline.verdict = notPredicted(report.inputs, residue);
    } else {
      proline.predicted = true;
      proline.row = *row;
      proline.evidence = gatherEvidence(run, report.inputs, residue);
      proline.verdict = judge(proline.evidence, *row, report.inputs);
    }
    report.prolines.push_back(proline);
  }
}

void findChangedCalls(CITRANS& run, Report& report) {
  subtractOffsets(run);
  for (const ProlineReport& proline : report.prolines) {
    if (!proline.predicted) {
      continue;
    }
    // Both from the sums, so that rounding of the printed value changes nothing.
    const double before = proline.evidence.pCisNorm;
    const double after = gatherEvidence(run, report.inputs, proline.residue).pCisNorm;
    if (proline.verdict.call != Verdict::Call::none && callFrom(after) != callFrom(before)) {
      report.changedCalls.push_back({proline.residue, before, after});
    }
  }
}

void warnOfProline(const ProlineReport& proline, Report& report) {
  const Inputs& inputs = report.inputs;
  const std::string label = inputs.residueLabel(proline.residue);
  if (!proline.evidence.agreesWith(proline.row.pCis)) {
    report.warnings.push_back(label + ": the contributions add up to P_CIS " +
                              decimal(proline.evidence.pCis, 3) + ", but the summary says " +
                              proline.row.pCisText +
                              ". Were other tables used, or -noclip (give --noclip)?");
  }
  for (const Term& term : proline.evidence.terms) {
    if (term.readAsZero) {
      report.warnings.push_back(label + ": " + termLabel(term, inputs) +
                                " is called H in the shift table; citrans then reads a secondary "
                                "shift of 0. Rename it to HN and run again.");
    }
  }
}

/// Author numbers must name residues of this sequence, else the map is that of another entry.
void warnOfMap(Report& report) {
  const Inputs& inputs = report.inputs;
  std::size_t without = 0;
  for (const ProlineReport& proline : report.prolines) {
    without += inputs.authors.count(proline.residue) == 0 ? 1U : 0U;
  }
  if (!inputs.authors.empty() && without > 0) {
    report.warnings.push_back(std::to_string(without) +
                              " prolines have no author number in the map; they keep their number "
                              "of the table.");
  }
  std::map<std::string, int> residues;
  for (const auto& [residue, author] : inputs.authors) {
    const auto [first, isNew] = residues.emplace(author, residue);
    if (!isNew) {
      report.warnings.push_back("The map gives residues " + std::to_string(first->second) +
                                " and " + std::to_string(residue) + " of the table one number, " +
                                author + ": labels and colours may mean either.");
      return;
    }
  }
}

} // namespace

const ProlineReport* Report::proline(int residue) const {
  for (const ProlineReport& candidate : prolines) {
    if (candidate.residue == residue) {
      return &candidate;
    }
  }
  return nullptr;
}

Report makeReport(const InputPaths& paths, bool clip) {
  Report report;
  report.inputs = readInputs(paths);
  report.database = databaseFolder(paths.database);
  report.warnings = report.inputs.warnings;
  CITRANS run;
  run.clipOn = clip;
  fillRun(run, report.inputs, report.database);
  addProlines(run, report);
  report.check = checkShifts(run);
  findChangedCalls(run, report);
  warnOfMap(report);
  for (const ProlineReport& proline : report.prolines) {
    if (proline.predicted) {
      warnOfProline(proline, report);
    }
  }
  return report;
}
