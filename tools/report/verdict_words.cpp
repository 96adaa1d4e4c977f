#include "tools/report/verdict_words.h"

#include <algorithm>
#include <cmath>

#include "tools/report/text.h"

namespace {

/// Sums of contributions, either way, from which evidence is called by the word after them: odds of
/// about 3, 20 and 150 to 1.
constexpr double weakFrom = 1;
constexpr double clearFrom = 3;
constexpr double strongFrom = 5;
/// A single contribution worth naming.
constexpr double notable = 1;
constexpr std::size_t mostNamed = 4;

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

/// Odds of three digits to two that count.
double rounded(double odds) {
  return odds < 100 ? odds : 10 * std::round(odds / 10);
}

/// "at least 130 to 1 for cis": what a form takes, the limit being on the evidence for cis.
std::string limitText(double limit, bool forCis) {
  return std::string(forCis == (limit > 0) ? "at least " : "at most ") +
         oddsText(std::log(rounded(std::pow(10, std::fabs(limit))))) +
         (limit > 0 ? " for cis" : " for trans");
}

const char* assignedText(calls::Assigned assigned) {
  constexpr const char* texts[calls::assignedCount] = {
      "Without CB and CG", "With CG but no CB assigned", "With CB but no CG assigned",
      "With CB and CG assigned"};
  return texts[static_cast<std::size_t>(assigned)];
}

/// How a sum of hardly any size comes about.
const char* hardlyAny(const Evidence& evidence) {
  const auto speaks = [&evidence](double side) {
    return std::any_of(evidence.terms.begin(), evidence.terms.end(),
                       [side](const Term& term) { return term.logRatio * side >= notable; });
  };
  return speaks(1) && speaks(-1) ? "The evidence cancels out: " : "There is hardly any evidence: ";
}

/// Whether only the number of shifts stands between the evidence and a call of trans.
bool lacksShifts(const Evidence& evidence, const calls::Rule& rule, int shifts) {
  return powersOfTen(evidence) <= rule.transTo && shifts < rule.transShifts;
}

} // namespace

double powersOfTen(const Evidence& evidence) {
  const double logOdds = evidence.logRatio / std::log(10.0);
  return std::isnan(logOdds) ? logOdds
                             : std::clamp(logOdds, -calls::mostEvidence, calls::mostEvidence);
}

std::string evidenceSentence(const Evidence& evidence, Verdict::Call call, const calls::Rule& rule,
                             int shifts) {
  const double sum = evidence.logRatio;
  const std::string used = counted(shiftCount(evidence), "shift") + " and the neighbours";
  const std::string side = sum > 0 ? "cis" : "trans";
  const std::string odds = std::isinf(sum) ? "without limit" : oddsText(sum);
  if (call == Verdict::Call::undecided) {
    return std::string(lacksShifts(evidence, rule, shifts) ? "There are too few shifts for a call: "
                       : std::fabs(sum) < weakFrom         ? hardlyAny(evidence)
                                                           : "The evidence does not decide: ") +
           used + " favour " + side + " by " + odds + ".";
  }
  const bool trans = call == Verdict::Call::trans;
  if (trans && std::fabs(sum) < weakFrom) {
    return hardlyAny(evidence) + used + " give " + odds + " for " + side +
           ". The call rests on trans being the commoner form.";
  }
  if (trans && sum > 0) {
    return "The evidence leans to cis, " + odds +
           ", which is less than the 19 to 1 by which trans is the commoner form.";
  }
  return std::string("The evidence is ") + strengthOf(sum) + ": " + used + " favour " + side +
         " by " + odds + ".";
}

std::string neededSentence(const Evidence& evidence, const calls::Rule& rule,
                           calls::Assigned assigned, int shifts) {
  const std::string with = assignedText(assigned);
  const std::string needed = std::to_string(rule.transShifts) + " shifts";
  if (lacksShifts(evidence, rule, shifts)) {
    return with + ", calling trans takes " + needed +
           " besides CG, counted as in CS_CNT; there are " + std::to_string(shifts) + ".";
  }
  const std::string cis = std::isinf(rule.cisFrom)
                              ? ", no evidence is enough for cis"
                              : ", calling cis takes " + limitText(rule.cisFrom, true);
  const std::string trans = std::isinf(rule.transTo)
                                ? "; none is enough for trans"
                                : "; calling trans takes " + limitText(rule.transTo, false);
  return with + cis + trans + (rule.transShifts > 0 ? " and " + needed : "") + ".";
}

std::string basisSentences(const Evidence& evidence, const Inputs& inputs) {
  const double side = evidence.logRatio > 0 ? 1 : -1;
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

std::vector<std::string> farFromBoth(const Evidence& evidence, const Inputs& inputs) {
  constexpr double farDeviations = 5;
  std::vector<std::string> named;
  for (const Term& term : evidence.terms) {
    const bool far = std::fabs(term.used - term.cis) > farDeviations * term.cisDeviation &&
                     std::fabs(term.used - term.trans) > farDeviations * term.transDeviation;
    if (term.present && term.kind != Term::Kind::neighbour && far) {
      const bool observed = term.kind == Term::Kind::cg;
      named.push_back(termLabel(term, inputs) + " (" +
                      (observed ? decimal(term.used, 2) + " ppm)"
                                : signedDecimal(term.used, 2) + " ppm from random coil)"));
    }
  }
  return named;
}
