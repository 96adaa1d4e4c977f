#include <cmath>
#include <functional>
#include <string_view>

#include "tools/derive/accuracy_sections.h"
#include "tools/derive/markdown.h"

namespace derive {
namespace {

constexpr std::size_t fewestCases = 50;
constexpr double farDeviation = 2;
/// Secondary CB that all but decides for trans, ppm.
constexpr double transCb = 0.5;

using Keep = std::function<bool(const ScoredProline&)>;
/// Says why a stratum is off, from the measurements.
using Reason = std::function<std::string(const Keep&)>;

struct Stratum {
  std::string name;
  std::size_t experiment;
  Keep keep;
  Reason reason;
};

float cbOf(const ScoredProline& proline) {
  return proline.shifts[prolineCb];
}

Keep cbBetween(double low, double high) {
  return [low, high](const ScoredProline& proline) {
    const auto cb = static_cast<double>(cbOf(proline));
    return cb >= low && cb < high;
  };
}

Keep presentBetween(int fewest, int most) {
  return [fewest, most](const ScoredProline& proline) {
    const int count = presentShifts(proline);
    return count >= fewest && count <= most;
  };
}

bool hasNoCb(const ScoredProline& proline) {
  return std::isnan(cbOf(proline));
}

Keep isBefore(const Training& training, std::string_view letters, bool wanted = true) {
  return [&training, letters, wanted](const ScoredProline& proline) {
    const std::string& sequence = training.proteins[proline.label.protein].sequence;
    const auto place = static_cast<std::size_t>(proline.label.residue) - 1;
    const bool found = place > 0 && letters.find(sequence[place - 1]) != std::string_view::npos;
    return found == wanted;
  };
}

/// Labels of a structure alone, when they are a good part of the cis prolines.
std::string labelReason(const CrossValidation& result, const Keep& keep) {
  std::size_t cis = 0;
  std::size_t byStructure = 0;
  for (const ScoredProline& proline : result.prolines) {
    if (proline.predicted[cgHidden] && proline.label.cis && keep(proline)) {
      ++cis;
      byStructure += shiftsAgree(proline) ? 0U : 1U;
    }
  }
  return std::to_string(byStructure) + " of the " + std::to_string(cis) +
         " cis labels here rest on a structure alone, against a CB that says trans: wrong labels "
         "are as many as cis prolines at such values";
}

/// The common factor, which holds what only a proline with CB needs.
std::string factorReason(const CrossValidation& result, const TableSet& tables, const Keep& keep) {
  const ShiftStatistic& cb = tables.statistics[prolineCb];
  const double ratio = cb.transWidth / cb.cisWidth;
  std::vector<ClusteredCall> calls =
      clusteredCallsOf(result, noCb, [&](const ScoredProline& p) { return keep(p); });
  for (ClusteredCall& clustered : calls) {
    double& p = clustered.call.probability;
    p = p / (p + ratio * (1 - p));
  }
  return "the formula leaves out the widths of its curves, and the common factor of the neighbours "
         "(" +
         fixed(tables.cisFactor, 2) +
         ") stands in for them: for those of CB most, trans over cis " + fixed(ratio, 2) +
         ". It stays when CB is taken away, as the tables have one place for it. With the odds "
         "divided by " +
         fixed(ratio, 2) + ", " + fixed(agreementOf(calls).said, 4) + " would be said";
}

std::vector<Stratum> strataOf(const Training& training, const CrossValidation& result,
                              const TableSet& tables) {
  const Reason byLabels = [&result](const Keep& keep) { return labelReason(result, keep); };
  const Reason byFactor = [&result, &tables](const Keep& keep) {
    return factorReason(result, tables, keep);
  };
  constexpr double far = 1000;
  return {{"0 to 8 shifts", cgHidden, presentBetween(0, 8), {}},
          {"9 to 11 shifts", cgHidden, presentBetween(9, 11), {}},
          {"12 to 13 shifts", cgHidden, presentBetween(12, 13), {}},
          {"14 to 15 shifts", cgHidden, presentBetween(14, 15), {}},
          {"16 shifts", cgHidden, presentBetween(16, 16), {}},
          {"F, W or Y before", cgHidden, isBefore(training, "FWY"), {}},
          {"another before", cgHidden, isBefore(training, "FWY", false), {}},
          {"CB missing", cgHidden, hasNoCb, {}},
          {"CB hidden", noCb, anyTruth, byFactor},
          {"CB below -0.5", cgHidden, cbBetween(-far, -transCb), byLabels},
          {"CB -0.5 to 0.5", cgHidden, cbBetween(-transCb, transCb), byLabels},
          {"CB 0.5 to 1.2", cgHidden, cbBetween(transCb, 1.2), {}},
          {"CB 1.2 to 2", cgHidden, cbBetween(1.2, 2), {}},
          {"CB 2 to 3", cgHidden, cbBetween(2, 3), {}},
          {"CB above 3", cgHidden, cbBetween(3, far), {}}};
}

/// The strata, under all truths and under those that shifts confirm, and what is off.
std::string strataText(const Training& training, const CrossValidation& result,
                       const TableSet& tables) {
  std::vector<std::vector<std::string>> rows;
  std::string reasons;
  for (const Stratum& stratum : strataOf(training, result, tables)) {
    std::vector<std::string> row = {stratum.name};
    for (const bool confirmed : {false, true}) {
      const Keep keep = [&](const ScoredProline& proline) {
        return stratum.keep(proline) && (!confirmed || shiftsAgree(proline));
      };
      const Agreement agreement = agreementOf(clusteredCallsOf(result, stratum.experiment, keep));
      const bool enough = agreement.count >= fewestCases;
      const double off = agreement.deviation();
      row.push_back(std::to_string(agreement.count));
      row.push_back(enough ? fixed(agreement.said, 4) : "-");
      row.push_back(enough ? fixed(agreement.found, 4) : "-");
      row.push_back(enough ? fixed(off, 1) : "-");
      if (enough && std::fabs(off) > farDeviation) {
        reasons += "- " + stratum.name + ", " + (confirmed ? "*both* and *shifts*" : "all truths") +
                   ": " + (stratum.reason ? stratum.reason(keep) : "no reason found") + ".\n";
      }
    }
    rows.push_back(row);
  }
  return markdownTable({"stratum", "all truths: prolines", "said", "true", "off, SE",
                        "*both* and *shifts*: prolines", "said", "true", "off, SE"},
                       rows) +
         (reasons.empty() ? "No stratum lies more than two standard errors off.\n\n"
                          : "More than two standard errors off:\n\n" + reasons + "\n");
}

std::string binTable(const Metrics& given, const Metrics& hidden) {
  std::vector<std::vector<std::string>> rows;
  for (std::size_t i = 0; i < calibrationBins; ++i) {
    std::vector<std::string> row = {fixed(static_cast<double>(i) / 10, 1) + " to " +
                                    fixed(static_cast<double>(i + 1) / 10, 1)};
    for (const Metrics* metrics : {&given, &hidden}) {
      const CalibrationBin& bin = metrics->bins[i];
      const bool empty = bin.count == 0;
      row.push_back(std::to_string(bin.count));
      row.push_back(empty ? "-" : fixed(bin.meanProbability, 3));
      row.push_back(empty ? "-" : fixed(bin.shareCis, 3));
    }
    rows.push_back(row);
  }
  return markdownTable({"P_CIS_NORM", "with CG: prolines", "mean", "share cis",
                        "CG hidden: prolines", "mean", "share cis"},
                       rows);
}

} // namespace

int presentShifts(const ScoredProline& proline) {
  int count = 0;
  for (std::size_t i = 0; i < tripletShifts; ++i) {
    count += meetsShift(i) && !std::isnan(proline.shifts[i]) ? 1 : 0;
  }
  return count;
}

std::string calibrationSection(const Training& training, const CrossValidation& result,
                               const TableSet& tables) {
  return "## Is P_CIS_NORM a probability?\n\n"
         "Prolines of all truths by tenths of P_CIS_NORM. A label that is wrong pulls the lowest "
         "tenth up and\nthe highest down.\n\n" +
         binTable(measure(callsOf(result, cgGiven, anyTruth)),
                  measure(callsOf(result, cgHidden, anyTruth))) +
         "![Calibration with CG](accuracy-calibration-cg.svg)\n"
         "![Calibration with CG hidden](accuracy-calibration-no-cg.svg)\n\n"
         "By stratum, CG hidden: *said* is the mean of P_CIS_NORM, *true* the share of cis, *off* "
         "how far true is\nabove said in standard errors. The standard error is the larger of what "
         "the probabilities imply and of\nwhat the sums over clusters show. Strata of fewer than " +
         std::to_string(fewestCases) +
         " prolines are left open. *CB missing*: it is not\nassigned; *CB hidden*: taken from the "
         "whole protein. CB is the secondary shift of the proline, ppm.\n\n" +
         strataText(training, result, tables);
}

} // namespace derive
