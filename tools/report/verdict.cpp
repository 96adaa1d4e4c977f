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

std::string joined(const std::vector<std::string>& items) {
  std::string text;
  for (std::size_t i = 0; i < items.size(); ++i) {
    text += i == 0 ? "" : i + 1 == items.size() ? " and " : ", ";
    text += items[i];
  }
  return text;
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
  const double side = call == Verdict::Call::cis ? 1 : -1;
  std::string text;
  const auto add = [&text](const char* start, const std::vector<std::string>& items) {
    if (!items.empty()) {
      text += (text.empty() ? "" : " ") + std::string(start) + joined(items) + ".";
    }
  };
  add("Most of it comes from ", largest(evidence, inputs, side));
  add("Against it: ", largest(evidence, inputs, -side));
  const std::vector<std::string> missing = missingAtoms(evidence);
  add("Of this proline itself, no shift for ", missing);
  const bool noCb = std::find(missing.begin(), missing.end(), "CB") != missing.end();
  const bool noCg = std::find(missing.begin(), missing.end(), "CG") != missing.end();
  if (noCb && noCg) {
    text += " CB and CG tell most: without both, the call rests on weaker shifts.";
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

Verdict::Call callFrom(double pCisNorm) {
  if (std::isnan(pCisNorm)) {
    return Verdict::Call::none;
  }
  return pCisNorm > 0.5 ? Verdict::Call::cis : Verdict::Call::trans;
}

const char* callName(Verdict::Call call) {
  switch (call) {
  case Verdict::Call::cis:
    return "cis";
  case Verdict::Call::trans:
    return "trans";
  case Verdict::Call::none:
    break;
  }
  return "none";
}

std::string termLabel(const Term& term, const Inputs& inputs) {
  const std::string residue = inputs.residueLabel(term.residue);
  return term.kind == Term::Kind::neighbour ? residue + " as a neighbour"
                                            : term.atom + " of " + residue;
}

Verdict judge(const Evidence& evidence, const SummaryRow& row, const Inputs& inputs) {
  const Verdict::Call call = callFrom(row.pCisNorm);
  if (call == Verdict::Call::none) {
    return withoutLikelihood(evidence, inputs);
  }
  Verdict verdict;
  verdict.call = call;
  verdict.settled = row.pCisNorm >= settledFrom || row.pCisNorm <= 1 - settledFrom;
  verdict.headline = (verdict.settled ? "" : "probably ") + std::string(callName(call));
  verdict.evidence = evidenceSentence(evidence, call);
  verdict.basis = basisSentences(evidence, inputs, call);
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
