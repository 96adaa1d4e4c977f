#include <algorithm>
#include <cmath>
#include <numeric>

#include "tools/derive/accuracy_sections.h"
#include "tools/derive/markdown.h"

namespace derive {
namespace {

/// Secondary CB that trans prolines hardly exceed, ppm: between the two forms.
constexpr double middleCb = 1.2;
/// Probabilities between which a call is a close one: log odds within 2 of even.
constexpr double closeLow = 0.12;
constexpr double closeHigh = 0.88;

enum Kind : std::size_t { withoutCb, cbOfOtherForm, closeCall, otherKind, kindCount };
constexpr const char* kindNames[] = {"no CB", "CB of the other form", "close call",
                                     "CB agrees, other shifts do not"};

Kind kindOf(const ScoredProline& proline) {
  const auto cb = static_cast<double>(proline.shifts[prolineCb]);
  if (std::isnan(cb)) {
    return withoutCb;
  }
  if (proline.label.cis != (cb > middleCb)) {
    return cbOfOtherForm;
  }
  const double p = proline.probability[cgHidden];
  return p > closeLow && p < closeHigh ? closeCall : otherKind;
}

bool isWrong(const ScoredProline& proline) {
  return proline.predicted[cgHidden] && (proline.probability[cgHidden] > 0.5) != proline.label.cis;
}

/// MCC on *both* and *shifts* were the wrong calls with CB of the other form left out.
double matthewsWithoutOddCb(const CrossValidation& result) {
  return measure(callsOf(result, cgHidden,
                         [](const ScoredProline& proline) {
                           return shiftsAgree(proline) &&
                                  !(isWrong(proline) && kindOf(proline) == cbOfOtherForm);
                         }))
      .matthews;
}

std::string sourceName(Source source) {
  return source == Source::both ? "both" : source == Source::shifts ? "shifts" : "structure";
}

std::vector<std::string> wrongRow(const Training& training, const ScoredProline& proline) {
  const Protein& protein = training.proteins[proline.label.protein];
  const auto place = static_cast<std::size_t>(proline.label.residue) - 1;
  const bool given = proline.predicted[cgGiven] && !std::isnan(proline.shifts[cgIndex]);
  return {protein.entry,
          std::to_string(proline.label.residue),
          protein.sequence.substr(place - 1, 3),
          proline.label.cis ? "cis" : "trans",
          sourceName(proline.label.source),
          fixed(proline.probability[cgHidden], 3),
          given ? fixed(proline.probability[cgGiven], 3) : "-",
          fixed(static_cast<double>(proline.shifts[prolineCb]), 2),
          fixed(proline.cbMinusCg, 2),
          kindNames[kindOf(proline)]};
}

} // namespace

std::string wrongSection(const Training& training, const CrossValidation& result) {
  std::array<std::array<std::size_t, kindCount>, 4> counts{}; // missed or false, clean or structure
  std::vector<std::vector<std::string>> rows;
  std::size_t settledByCg = 0;
  std::size_t withCg = 0;
  for (const ScoredProline& proline : result.prolines) {
    if (!isWrong(proline)) {
      continue;
    }
    const std::size_t group = (proline.label.cis ? 0U : 1U) + (shiftsAgree(proline) ? 0U : 2U);
    ++counts[group][kindOf(proline)];
    if (!std::isnan(proline.shifts[cgIndex])) {
      ++withCg;
      settledByCg += (proline.probability[cgGiven] > 0.5) == proline.label.cis ? 1U : 0U;
    }
    rows.push_back(wrongRow(training, proline));
  }
  std::string text =
      "## The prolines that stay wrong\n\n"
      "CG hidden, each scored by tables that never saw its cluster. What they have in common:\n\n";
  constexpr const char* groups[] = {
      "cis called trans, *both* and *shifts*", "trans called cis, *both* and *shifts*",
      "cis called trans, *structure*", "trans called cis, *structure*"};
  std::vector<std::vector<std::string>> summary;
  for (std::size_t group = 0; group < 4; ++group) {
    std::vector<std::string> row = {groups[group]};
    for (const std::size_t count : counts[group]) {
      row.push_back(std::to_string(count));
    }
    summary.push_back(row);
  }
  std::vector<std::string> head = {"wrong"};
  head.insert(head.end(), std::begin(kindNames), std::end(kindNames));
  text += markdownTable(head, summary);
  text += "*CB of the other form*: the secondary shift of CB lies on the other form's side of 1.2 "
          "ppm, so that\nonly CG, or a wrong label, can say otherwise. Of the " +
          std::to_string(withCg) + " that have CG, " + std::to_string(settledByCg) +
          " are called right once CG is given.\nThis kind is what bounds the calls without CG: "
          "leaving out those of truth *both* and *shifts*, the\nMCC there would be " +
          fixed(matthewsWithoutOddCb(result), 3) + " instead of " +
          fixed(measure(callsOf(result, cgHidden, shiftsAgree)).matthews, 3) +
          ". They are cis prolines with CB as in trans ones, or the reverse, and\nlabels that "
          "rest on a wrong CB or CG; the other shifts do not outweigh CB. Of the cis prolines of\n"
          "truth *structure* that are missed, " +
          std::to_string(counts[2][withoutCb]) + " of " +
          std::to_string(std::accumulate(counts[2].begin(), counts[2].end(), std::size_t(0))) +
          " have no CB; and a structure is not the sample.\n\n";
  text += markdownTable({"entry", "residue", "triplet", "truth", "source", "CG hidden", "with CG",
                         "CB, secondary", "CB - CG", "kind"},
                        rows);
  return text;
}

} // namespace derive
