#include "tools/report/report.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <set>

#include "tools/report/text.h"

namespace {

void addProlines(CITRANS& run, const calls::Rules& rules, Report& report) {
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
      proline.verdict = judge(proline.evidence, *row, report.inputs, rules);
      proline.carbons = carbonsOf(report.inputs, *row);
      proline.disagrees = disagrees(proline.verdict.call, *row);
      if (proline.carbons.cgSubtracted || !run.clipOn) {
        proline.verdict.likeThis = {}; // the cross-validation had no such runs
      }
    }
    report.prolines.push_back(proline);
  }
}

/// The calls of a run whose shifts have moved.
void callAgain(CITRANS& run, const calls::Rules& rules, Report& report,
               std::optional<CorrectedCall> ProlineReport::*where) {
  for (ProlineReport& proline : report.prolines) {
    if (proline.predicted) {
      const Evidence evidence = gatherEvidence(run, report.inputs, proline.residue);
      // Where both likelihoods underflow, the program has no P_CIS, and there is no call.
      const bool known = !std::isnan(evidence.core.cis);
      proline.*where = {known ? callFrom(evidence, proline.row, rules) : Verdict::Call::none,
                        known ? evidence.pCisNorm : std::nan("")};
    }
  }
}

/// The calls with what is still off taken off, and with what was taken off before put back.
void compareReferencing(CITRANS& run, const calls::Rules& rules, Report& report) {
  const referencing::Offsets before = referencing::takenOff(report.inputs.about.corrections);
  if (before != referencing::Offsets{}) {
    CITRANS given = run;
    referencing::Offsets back{};
    std::transform(before.begin(), before.end(), back.begin(), std::negate<>());
    takeOffOnce(given, back);
    callAgain(given, rules, report, &ProlineReport::asGiven);
  }
  if (report.check.found()) {
    takeOffOnce(run, report.check.offsets);
    callAgain(run, rules, report, &ProlineReport::corrected);
  }
}

/// Sums that are not those of the run, and amide protons called H: one warning each, whatever the
/// number of prolines.
void warnOfProlines(Report& report) {
  const Inputs& inputs = report.inputs;
  std::vector<std::string> sums;
  std::set<int> amides;
  for (const ProlineReport& proline : report.prolines) {
    if (!proline.predicted) {
      continue;
    }
    if (!proline.evidence.agreesWith(proline.row.pCis)) {
      sums.push_back(inputs.residueLabel(proline.residue) + " " +
                     decimal(proline.evidence.pCis, 3) + " against " + proline.row.pCisText);
    }
    for (const Term& term : proline.evidence.terms) {
      if (term.readAsZero) {
        amides.insert(term.residue);
      }
    }
  }
  if (!sums.empty()) {
    report.warnings.push_back(
        "the contributions do not add up to the P_CIS of the summary: " + joined(sums) +
        ". Were other tables used, or -noclip (give --noclip)?");
  }
  if (!amides.empty()) {
    std::vector<std::string> labels;
    labels.reserve(amides.size());
    for (const int residue : amides) {
      labels.push_back(inputs.residueLabel(residue));
    }
    report.warnings.push_back("the amide proton is called H in the shift table at " +
                              joined(labels) +
                              "; citrans then reads a secondary shift of 0. Rename it to HN and "
                              "run again.");
  }
}

/// FIRST_RESID may number prolines so that citrans never looks at them.
void warnOfNumbering(Report& report) {
  const Inputs& inputs = report.inputs;
  const auto isLost = [&inputs](const ProlineReport& proline) {
    return proline.residue != inputs.firstResidue() && proline.residue != inputs.lastResidue() &&
           !inputs.isInReach(proline.residue);
  };
  if (std::any_of(report.prolines.begin(), report.prolines.end(), isLost)) {
    report.warnings.push_back(
        "the table numbers its residues from " + std::to_string(inputs.firstResidue()) +
        " on (FIRST_RESID), but citrans reads shifts of residues 1 to " +
        std::to_string(inputs.residueCount) + " only: number the residues from 1");
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

std::vector<std::pair<std::string, std::size_t>> Report::nuclei() const {
  std::map<std::string, std::size_t> counts;
  for (const ShiftRow& row : inputs.shifts) {
    ++counts[row.atom == "H" ? "HN" : row.atom];
  }
  for (const SummaryRow& row : inputs.summary) {
    counts["CG"] += row.cg < shift::missingFrom ? 1U : 0U;
  }
  std::vector<std::pair<std::string, std::size_t>> found;
  for (const char* atom : {"HN", "N", "HA", "C", "CA", "CB", "CG"}) {
    if (counts[atom] > 0) {
      found.emplace_back(atom, counts[atom]);
    }
  }
  return found;
}

Report makeReport(const Sources& sources, const Database& database) {
  Report report;
  report.inputs = readInputs(sources);
  report.warnings = report.inputs.warnings;
  report.tables = database.madeBy;
  CITRANS run = database.run;
  run.clipOn = sources.clip;
  fillRun(run, report.inputs);
  addProlines(run, database.rules, report);
  report.check = checkReferencing(run, report.inputs, database.model);
  compareReferencing(run, database.rules, report);
  warnOfNumbering(report);
  warnOfMap(report);
  warnOfProlines(report);
  report.concerns = concernsOf(report);
  return report;
}
