#include <algorithm>
#include <cmath>

#include "tools/derive/accuracy_sections.h"
#include "tools/derive/markdown.h"

namespace derive {
namespace {

constexpr double transPerCis = 19;

struct TruthRow {
  const char* name;
  bool (*keep)(const ScoredProline&);
};

template <Source source>
bool hasSource(const ScoredProline& proline) {
  return proline.label.source == source;
}

constexpr TruthRow truthRows[] = {{"all", anyTruth},
                                  {"both and shifts", shiftsAgree},
                                  {"both", hasSource<Source::both>},
                                  {"shifts", hasSource<Source::shifts>},
                                  {"structure", hasSource<Source::structure>}};

std::string truthTable(const CrossValidation& result, std::size_t experiment) {
  std::vector<std::vector<std::string>> rows;
  for (const TruthRow& row : truthRows) {
    rows.push_back(measureRow(row.name, callsOf(result, experiment, row.keep)));
  }
  return markdownTable(measureHead("truth"), rows);
}

/// Largest MCC that any threshold on the same probabilities would give.
double bestMatthews(std::vector<Call> calls) {
  std::sort(calls.begin(), calls.end(),
            [](const Call& a, const Call& b) { return a.probability > b.probability; });
  double cis = 0;
  for (const Call& call : calls) {
    cis += call.cis ? 1 : 0;
  }
  const double trans = static_cast<double>(calls.size()) - cis;
  double hits = 0;
  double wrong = 0;
  double best = 0;
  for (const Call& call : calls) {
    (call.cis ? hits : wrong) += 1;
    const double denominator = std::sqrt((hits + wrong) * cis * trans *
                                         (static_cast<double>(calls.size()) - hits - wrong));
    if (denominator > 0) {
      best = std::max(best, (hits * (trans - wrong) - wrong * (cis - hits)) / denominator);
    }
  }
  return best;
}

std::vector<std::vector<std::string>> countRows(const CrossValidation& result) {
  struct Range {
    int fewest, most;
  };
  std::vector<std::vector<std::string>> rows;
  for (const Range range :
       {Range{0, 8}, Range{9, 11}, Range{12, 13}, Range{14, 15}, Range{16, 16}}) {
    const auto keep = [range](const ScoredProline& proline) {
      const int count = presentShifts(proline);
      return count >= range.fewest && count <= range.most;
    };
    const std::string name = range.fewest == range.most ? std::to_string(range.most)
                                                        : std::to_string(range.fewest) + " to " +
                                                              std::to_string(range.most);
    rows.push_back(measureRow(name, callsOf(result, cgHidden, keep)));
  }
  return rows;
}

double gaussian(double x, double mean, double width) {
  const double z = (x - mean) / width;
  return std::exp(-0.5 * z * z) / width;
}

} // namespace

std::vector<std::string> measureHead(const std::string& name) {
  return {name,        "prolines", "cis",      "AUC",        "sensitivity",
          "precision", "MCC",      "log loss", "cal. error", "wrong: cis, trans"};
}

std::vector<std::string> measureRow(const std::string& name, const std::vector<Call>& calls) {
  if (calls.empty()) {
    return {name, "0", "0", "-", "-", "-", "-", "-", "-", "-"};
  }
  const Metrics m = measure(calls);
  return {name,
          std::to_string(m.count),
          std::to_string(m.cis),
          fixed(m.areaUnderCurve, 4),
          fixed(m.sensitivity, 3),
          fixed(m.precision, 3),
          fixed(m.matthews, 3),
          fixed(m.logLoss, 4),
          fixed(m.calibrationError, 4),
          std::to_string(m.falseCis) + ", " + std::to_string(m.missedCis)};
}

std::string experimentTable(const CrossValidation& result, const std::string& name,
                            const std::vector<NamedExperiment>& experiments) {
  std::vector<std::vector<std::string>> rows;
  rows.reserve(experiments.size());
  for (const NamedExperiment& row : experiments) {
    rows.push_back(measureRow(row.name, callsOf(result, row.experiment, shiftsAgree)));
  }
  return markdownTable(measureHead(name), rows);
}

std::string truthSection(const CrossValidation& result) {
  std::string text =
      "## Calls by the source of the truth\n\n"
      "A call is cis when P_CIS_NORM is above 0.5. *both*: structure and shifts agree; *shifts*:\n"
      "CB - CG alone, above 8 ppm cis and below 6.5 ppm trans; *structure*: a structure alone. "
      "The\n"
      "labels from shifts use CG: only the second table tests them. *wrong* counts trans prolines\n"
      "called cis, then cis prolines called trans. P_CIS_NORM that is not a number counts as 0.\n\n"
      "With CG where it is assigned:\n\n";
  text += truthTable(result, cgGiven);
  text += "With CG hidden:\n\n" + truthTable(result, cgHidden);
  text += "With CG hidden, the MCC on *both* and *shifts* would be " +
          fixed(bestMatthews(callsOf(result, cgHidden, shiftsAgree)), 3) +
          " at the best threshold chosen in hindsight, and " +
          fixed(bestMatthews(callsOf(result, cgHidden, anyTruth)), 3) +
          " on all truths: the threshold is not what bounds it.\n\n";
  return text;
}

std::string presenceSection(const CrossValidation& result) {
  std::string text = "## Calls by what is assigned\n\n"
                     "By the number of the sixteen triplet shifts that are present, CG hidden, all "
                     "truths:\n\n";
  text += markdownTable(measureHead("shifts"), countRows(result));
  text +=
      "With nuclei taken away from the whole protein, truth *both* and *shifts*. A proline that "
      "the\nprogram does not predict has no row: two of the three residues need three shifts "
      "each.\n\n";
  return text + experimentTable(result, "nuclei",
                                {{"all, with CG", cgGiven},
                                 {"no CG", cgHidden},
                                 {"no CG, no C'", noCarbonyl},
                                 {"no CG, no HA", noHa},
                                 {"no CG, no CB", noCb},
                                 {"no CG, no CB, no HA", noCbNoHa},
                                 {"protons only", protonsOnly},
                                 {"HN and N only", amidesOnly}});
}

std::string comparisonSection(const CrossValidation& result, const PublishedRule& rule) {
  std::string text =
      "## Beside what is used today\n\n"
      "On the prolines that have CB and CG. The rule is the likelihood of CB - CG from the "
      "published "
      "means\nand deviations (trans " +
      fixed(rule.transMean, 2) + " and " + fixed(rule.transWidth, 2) + ", cis " +
      fixed(rule.cisMean, 2) + " and " + fixed(rule.cisWidth, 2) +
      " ppm: Schubert et al. 2002, J Biomol NMR 24:149-154) at\n1 cis to 19 trans. Neighbours "
      "alone: the frequencies of the two residue types at the same odds.\nTwo thirds of these "
      "labels come from CB - CG itself, so the rule looks better here than it is.\n\n";
  const auto hasBoth = [](const ScoredProline& proline) {
    return proline.predicted[cgGiven] && !std::isnan(proline.cbMinusCg);
  };
  std::vector<Call> byRule;
  std::vector<Call> byNeighbours;
  for (const ScoredProline& proline : result.prolines) {
    if (!hasBoth(proline)) {
      continue;
    }
    const double cis = gaussian(proline.cbMinusCg, rule.cisMean, rule.cisWidth);
    const double trans = gaussian(proline.cbMinusCg, rule.transMean, rule.transWidth);
    byRule.push_back({cis / (cis + transPerCis * trans), proline.label.cis});
    byNeighbours.push_back(
        {1 / (1 + transPerCis * std::exp(-proline.neighbourLogOdds)), proline.label.cis});
  }
  const std::vector<std::vector<std::string>> rows = {
      measureRow("program, with CG", callsOf(result, cgGiven, hasBoth)),
      measureRow("program, CG hidden", callsOf(result, cgHidden, hasBoth)),
      measureRow("plain means and deviations, with CG", callsOf(result, plainGiven, hasBoth)),
      measureRow("plain means and deviations, CG hidden", callsOf(result, plainHidden, hasBoth)),
      measureRow("CB - CG rule", byRule),
      measureRow("neighbours alone", byNeighbours)};
  return text + markdownTable(measureHead("method"), rows);
}

} // namespace derive
