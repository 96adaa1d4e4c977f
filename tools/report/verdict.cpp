#include "tools/report/verdict.h"

#include <algorithm>
#include <cmath>

#include "tools/report/text.h"
#include "tools/report/verdict_words.h"

namespace {

/// A likelihood this close to 0 or 1 settles the call.
constexpr double settledFrom = 0.9;
/// A residue with fewer shifts is of no use to a prediction.
constexpr int fewestShifts = 3;

calls::Assigned assignedOf(const Evidence& evidence) {
  const auto has = [&evidence](const char* atom) {
    return std::any_of(evidence.terms.begin(), evidence.terms.end(), [atom](const Term& term) {
      return term.place == 2 && term.present && term.atom == atom;
    });
  };
  return calls::assigned(has("CB"), has("CG"));
}

/// Why a proline is left out whatever its shifts; empty for the others.
std::string outOfReach(const Inputs& inputs, int proline) {
  if (proline <= inputs.firstResidue()) {
    return "It is the first residue: there is no bond before it.";
  }
  if (proline >= inputs.lastResidue()) {
    return "It is the last residue, and the residue after it is needed.";
  }
  if (!inputs.isInReach(proline)) {
    return "citrans reads the shifts of residues 1 to " + std::to_string(inputs.residueCount) +
           ", as many as the sequence has, and this proline or a neighbour is not among them.";
  }
  return "";
}

/// Why a proline inside the sequence was left out, as far as the table of shifts tells.
std::string tooFewShifts(const Inputs& inputs, int proline) {
  std::string counts;
  int poor = 0;
  for (int residue = proline - 1; residue <= proline + 1; ++residue) {
    const auto count =
        std::count_if(inputs.shifts.begin(), inputs.shifts.end(),
                      [residue](const ShiftRow& row) { return row.residue == residue; });
    poor += count < fewestShifts ? 1 : 0;
    counts += (counts.empty() ? "" : ", ") + std::to_string(count) + " of " +
              inputs.residueLabel(residue);
  }
  return poor >= 2
             ? "Two of the three residues need at least three of their six shifts; the "
               "table has " +
                   counts + "."
             : "It lies outside the range of residues that was asked for, or that has shifts.";
}

Verdict withoutLikelihood(const Evidence& evidence, const Inputs& inputs) {
  Verdict verdict;
  verdict.headline = "no call";
  if (std::isnan(evidence.logRatio)) {
    verdict.evidence = "A factor has no statistics in the database (0 against 0), so that nothing "
                       "could be compared.";
    return verdict;
  }
  verdict.evidence = "Both likelihoods underflowed to 0: some shifts lie far from both forms. "
                     "Their logarithms still differ, " +
                     oddsText(evidence.logRatio) + " for " +
                     (evidence.logRatio > 0 ? "cis" : "trans") +
                     ", but check the assignment first.";
  const std::vector<std::string> far = farFromBoth(evidence, inputs);
  verdict.basis = far.empty() ? "" : "Far from both: " + joined(far) + ".";
  return verdict;
}

} // namespace

Verdict::Call callFrom(const Evidence& evidence, const SummaryRow& row, const calls::Rules& rules) {
  const double logOdds = powersOfTen(evidence);
  if (std::isnan(logOdds)) {
    return Verdict::Call::none;
  }
  switch (rules.call(logOdds, assignedOf(evidence), calls::shiftCount(row.shiftCounts))) {
  case calls::Call::cis:
    return Verdict::Call::cis;
  case calls::Call::trans:
    return Verdict::Call::trans;
  case calls::Call::undecided:
    break;
  }
  return Verdict::Call::undecided;
}

bool disagrees(Verdict::Call call, const SummaryRow& row) {
  if (!row.comparable() || (call != Verdict::Call::cis && call != Verdict::Call::trans)) {
    return false;
  }
  return row.referenceIsCis() != (call == Verdict::Call::cis);
}

const char* callName(Verdict::Call call) {
  switch (call) {
  case Verdict::Call::cis:
    return "cis";
  case Verdict::Call::trans:
    return "trans";
  case Verdict::Call::undecided:
    return "undecided";
  case Verdict::Call::none:
    break;
  }
  return "none";
}

std::string termLabel(const Term& term, const Inputs& inputs) {
  const std::string residue = inputs.residueLabel(term.residue);
  return term.kind == Term::Kind::neighbour ? residue + " as a neighbour"
                                            : atomLabel(term.atom) + " of " + residue;
}

Verdict judge(const Evidence& evidence, const SummaryRow& row, const Inputs& inputs,
              const calls::Rules& rules) {
  const Verdict::Call call =
      std::isnan(row.pCisNorm) ? Verdict::Call::none : callFrom(evidence, row, rules);
  if (call == Verdict::Call::none) {
    return withoutLikelihood(evidence, inputs);
  }
  Verdict verdict;
  verdict.call = call;
  verdict.assigned = assignedOf(evidence);
  const calls::Rule& rule = rules.rule(verdict.assigned);
  const bool decided = call != Verdict::Call::undecided;
  verdict.settled = decided && (row.pCisNorm >= settledFrom || row.pCisNorm <= 1 - settledFrom);
  verdict.headline = (verdict.settled || !decided ? "" : "probably ") + std::string(callName(call));
  const int shifts = calls::shiftCount(row.shiftCounts);
  verdict.evidence = evidenceSentence(evidence, call, rule, shifts);
  verdict.basis = basisSentences(evidence, inputs);
  if (decided) {
    verdict.likeThis = call == Verdict::Call::cis ? rule.cis : rule.trans;
  } else {
    verdict.evidence += " " + neededSentence(evidence, rule, verdict.assigned, shifts);
  }
  return verdict;
}

Verdict notPredicted(const Inputs& inputs, int proline) {
  Verdict verdict;
  verdict.headline = "not predicted";
  verdict.evidence = outOfReach(inputs, proline);
  if (verdict.evidence.empty()) {
    verdict.evidence = tooFewShifts(inputs, proline);
  }
  return verdict;
}
