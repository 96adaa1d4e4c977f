#include "tools/report/verdict.h"

#include <algorithm>
#include <cmath>

#include "tools/report/text.h"

namespace {

/// A likelihood this close to 0 or 1 settles the call.
constexpr double settledFrom = 0.9;
/// Sums of contributions, either way, from which evidence is called by the word after them: odds of
/// about 3, 20 and 150 to 1.
constexpr double weakFrom = 1;
constexpr double clearFrom = 3;
constexpr double strongFrom = 5;
/// A single contribution worth naming.
constexpr double notable = 1;
constexpr std::size_t mostNamed = 4;
/// A residue with fewer shifts is of no use to a prediction.
constexpr int fewestShifts = 3;

const char* strengthOf(double logRatio) {
  const double size = std::fabs(logRatio);
  if (size < weakFrom) {
    return "hardly any";
  }
  if (size < clearFrom) {
    return "weak";
  }
  return size < strongFrom ? "clear" : "strong";
}

/// The largest contributions to one side, with their sizes.
std::vector<std::string> largest(const Evidence& evidence, const Inputs& inputs, double side) {
  std::vector<const Term*> terms;
  for (const Term& term : evidence.terms) {
    if (term.logRatio * side >= notable) {
      terms.push_back(&term);
    }
  }
  std::stable_sort(terms.begin(), terms.end(), [side](const Term* a, const Term* b) {
    return a->logRatio * side > b->logRatio * side;
  });
  terms.resize(std::min(terms.size(), mostNamed));
  std::vector<std::string> named;
  named.reserve(terms.size());
  for (const Term* term : terms) {
    named.push_back(termLabel(*term, inputs) + " (" + signedDecimal(term->logRatio, 1) + ")");
  }
  return named;
}

std::vector<std::string> missingAtoms(const Evidence& evidence) {
  std::vector<std::string> missing;
  for (const Term& term : evidence.terms) {
    if (term.place == 2 && term.applicable && !term.present) {
      missing.push_back(term.atom);
    }
  }
  return missing;
}

std::size_t shiftCount(const Evidence& evidence) {
  return static_cast<std::size_t>(
      std::count_if(evidence.terms.begin(), evidence.terms.end(), [](const Term& term) {
        return term.present && term.kind != Term::Kind::neighbour;
      }));
}

std::string evidenceSentence(const Evidence& evidence, Verdict::Call call) {
  const double sum = evidence.logRatio;
  const std::string shifts = std::to_string(shiftCount(evidence)) + " shifts and the neighbours";
  const std::string side = sum > 0 ? "cis" : "trans";
  const std::string odds = std::isinf(sum) ? "without limit" : oddsText(sum);
  if (call == Verdict::Call::undecided) {
    return std::string(std::fabs(sum) < weakFrom ? "There is hardly any evidence: "
                                                 : "The evidence does not decide: ") +
           shifts + " favour " + side + " by " + odds + ".";
  }
  if (std::fabs(sum) < weakFrom) {
    return "There is hardly any evidence: " + shifts + " give " + odds + " for " + side +
           ". The call rests on trans being the commoner form.";
  }
  if (call == Verdict::Call::trans && sum > 0) {
    return "The evidence leans to cis, " + odds +
           ", which is less than the 19 to 1 by which trans is the commoner form.";
  }
  return std::string("The evidence is ") + strengthOf(sum) + ": " + shifts + " favour " + side +
         " by " + odds + ".";
}

std::string basisSentences(const Evidence& evidence, const Inputs& inputs, Verdict::Call call) {
  const bool undecided = call == Verdict::Call::undecided;
  const double side = call == Verdict::Call::cis || (undecided && evidence.logRatio > 0) ? 1 : -1;
  std::string text;
  const auto add = [&text](const std::string& start, const std::vector<std::string>& items) {
    if (!items.empty()) {
      text += (text.empty() ? "" : " ") + start + joined(items) + ".";
    }
  };
  const char* const other = side > 0 ? "trans" : "cis";
  add("Most of it comes from ", largest(evidence, inputs, side));
  add(text.empty() ? std::string("Single shifts speak for ") + other + ": " : "Against it: ",
      largest(evidence, inputs, -side));
  const std::vector<std::string> missing = missingAtoms(evidence);
  std::vector<std::string> labels;
  std::transform(missing.begin(), missing.end(), std::back_inserter(labels), atomLabel);
  add("Of this proline itself, no shift for ", labels);
  const bool noCb = std::find(missing.begin(), missing.end(), "CB") != missing.end();
  const bool noCg = std::find(missing.begin(), missing.end(), "CG") != missing.end();
  if (noCb && noCg) {
    text += " CB and CG tell most: without both, only weaker shifts are left.";
  }
  return text;
}

/// Shifts so far from the means of both forms that they alone make either all but impossible.
std::vector<std::string> farFromBoth(const Evidence& evidence, const Inputs& inputs) {
  constexpr double farDeviations = 5;
  std::vector<std::string> named;
  for (const Term& term : evidence.terms) {
    const bool far = std::fabs(term.used - term.cis) > farDeviations * term.cisDeviation &&
                     std::fabs(term.used - term.trans) > farDeviations * term.transDeviation;
    if (term.present && term.kind != Term::Kind::neighbour && far) {
      named.push_back(termLabel(term, inputs) + " (" + decimal(term.used, 2) + " ppm)");
    }
  }
  return named;
}

/// Shifts that the likelihood can use, CG not counted.
int usedShifts(const Evidence& evidence) {
  return static_cast<int>(
      std::count_if(evidence.terms.begin(), evidence.terms.end(), [](const Term& term) {
        return term.kind == Term::Kind::shift && term.present && term.applicable;
      }));
}

calls::Assigned assignedOf(const Evidence& evidence) {
  const auto has = [&evidence](const char* atom) {
    return std::any_of(evidence.terms.begin(), evidence.terms.end(), [atom](const Term& term) {
      return term.place == 2 && term.present && term.atom == atom;
    });
  };
  return calls::assigned(has("CB"), has("CG"));
}

/// The evidence as the rules take it: odds before the prior, in powers of ten.
double powersOfTen(const Evidence& evidence) {
  const double logOdds = evidence.logRatio / std::log(10.0);
  return std::isnan(logOdds) ? logOdds
                             : std::clamp(logOdds, -calls::mostEvidence, calls::mostEvidence);
}

/// Odds of three digits to two that count.
double rounded(double odds) {
  return odds < 100 ? odds : 10 * std::round(odds / 10);
}

/// "cis takes 500 to 1, trans 250 to 1": what a call would have needed.
std::string neededOdds(const calls::Rule& rule) {
  const auto needs = [](double limit, bool cis) -> std::string {
    if (std::isinf(limit)) {
      return "no evidence is enough";
    }
    const bool own = cis == (limit > 0);
    return oddsText(std::log(rounded(std::pow(10, std::fabs(limit))))) + (own   ? ""
                                                                          : cis ? " for trans"
                                                                                : " for cis");
  };
  return "cis takes " + needs(rule.cisFrom, true) + ", trans " + needs(rule.transTo, false) +
         (rule.transShifts > 0 ? " and " + std::to_string(rule.transShifts) + " shifts" : "");
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

Verdict::Call callFrom(const Evidence& evidence, const calls::Rules& rules) {
  const double logOdds = powersOfTen(evidence);
  if (std::isnan(logOdds)) {
    return Verdict::Call::none;
  }
  switch (rules.call(logOdds, assignedOf(evidence), usedShifts(evidence))) {
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
      std::isnan(row.pCisNorm) ? Verdict::Call::none : callFrom(evidence, rules);
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
  verdict.evidence = evidenceSentence(evidence, call);
  verdict.basis = basisSentences(evidence, inputs, call);
  if (decided) {
    verdict.likeThis = call == Verdict::Call::cis ? rule.cis : rule.trans;
  } else {
    verdict.evidence +=
        std::string(" With ") + calls::describe(verdict.assigned) + ", " + neededOdds(rule) + ".";
  }
  return verdict;
}

Verdict notPredicted(const Inputs& inputs, int proline) {
  Verdict verdict;
  verdict.headline = "not predicted";
  if (proline <= 1) {
    verdict.evidence = "It is the first residue: there is no bond before it.";
  } else if (proline >= inputs.residueCount) {
    verdict.evidence = "It is the last residue, and the residue after it is needed.";
  } else {
    verdict.evidence = tooFewShifts(inputs, proline);
  }
  return verdict;
}
