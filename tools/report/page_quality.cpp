#include <algorithm>
#include <cmath>
#include <numeric>

#include "tools/report/page_parts.h"
#include "tools/report/text.h"

namespace {

constexpr std::size_t outliersShown = 10;

PageData offsets(const Report& report) {
  PageData list = pageList();
  for (const ReportedOffset& estimate : report.check.estimates) {
    PageData row;
    row.set("nuclei", estimate.nuclei);
    row.set("offset", signedDecimal(estimate.offset, 2));
    row.set("error", decimal(estimate.error, 2));
    row.set("points", std::to_string(estimate.points));
    row.set("applies", estimate.applies);
    list << row;
  }
  return list;
}

/// "Pro9 trans (P_CIS_NORM 0.001), ..."
std::string correctedCalls(const Report& report) {
  std::vector<std::string> calls;
  for (const ProlineReport& proline : report.prolines) {
    if (proline.callChanges()) {
      calls.push_back(report.inputs.residueLabel(proline.residue) + " " +
                      callName(proline.corrected->call) + " (P_CIS_NORM " +
                      decimal(proline.corrected->pCisNorm, 3) + ")");
    }
  }
  return joined(calls);
}

/// Whether a correction that the table names speaks of something: "referencing", "Isotope".
bool wasCorrected(const Report& report, const char* what) {
  const std::vector<std::string>& made = report.inputs.about.corrections;
  return std::any_of(made.begin(), made.end(), [what](const std::string& correction) {
    return correction.find(what) != std::string::npos;
  });
}

PageData referencingWords(const Report& report) {
  PageData list = pageList();
  const ReferencingCheck& check = report.check;
  if (check.subtracted) {
    list << PageData("text", "This is of the shifts as they were given, before -offset.");
  }
  if (check.found()) {
    const std::string changed = correctedCalls(report);
    list << PageData("text", "With what is worth correcting taken once off all shifts of its "
                             "nuclei, that of CA and CB off CG too: " +
                                 (changed.empty() ? "no call changes." : changed + "."));
  } else if (!check.estimates.empty()) {
    list << PageData("text", wasCorrected(report, "referencing")
                                 ? "No offset worth correcting is left."
                                 : "No offset is worth correcting.");
  }
  std::vector<std::string> unchecked;
  for (const ReportedOffset& each : check.unchecked) {
    unchecked.push_back(each.nuclei);
  }
  if (!unchecked.empty()) {
    list << PageData("text", "There are too few shifts to check " + joined(unchecked) + ".");
  }
  return list;
}

/// How far out a shift lies, in units of its limit.
double excess(const Outlier& outlier) {
  return std::fabs(outlier.shift) / std::fmax(std::fabs(static_cast<double>(outlier.limit)), 0.01);
}

std::string outlierRemark(const ReferencingCheck& check, std::size_t at) {
  if (check.explained[at]) {
    return "by the offset";
  }
  return check.outliers[at].marked ? "far out" : "";
}

/// The worst first; what the offset explains comes after what it does not.
PageData worstOutliers(const Report& report) {
  const std::vector<Outlier>& outliers = report.check.outliers;
  std::vector<std::size_t> worst(outliers.size());
  std::iota(worst.begin(), worst.end(), 0);
  const std::vector<bool>& explained = report.check.explained;
  std::stable_sort(worst.begin(), worst.end(), [&](std::size_t a, std::size_t b) {
    if (explained[a] != explained[b]) {
      return !explained[a];
    }
    return outliers[a].marked != outliers[b].marked ? outliers[a].marked
                                                    : excess(outliers[a]) > excess(outliers[b]);
  });
  worst.resize(std::min(worst.size(), outliersShown));
  PageData list = pageList();
  for (const std::size_t at : worst) {
    PageData row;
    row.set("residue", report.inputs.residueLabel(outliers[at].residue));
    row.set("atom", atomLabel(outliers[at].atom));
    row.set("shift", signedDecimal(outliers[at].shift, 2));
    row.set("limit", signedDecimal(static_cast<double>(outliers[at].limit), 2));
    row.set("remark", outlierRemark(report.check, at));
    list << row;
  }
  return list;
}

std::string outlierCount(const Report& report) {
  const std::size_t count = report.check.outliers.size();
  if (count == 0) {
    return "No secondary shift lies outside the limits of the database.";
  }
  const std::vector<bool>& flags = report.check.explained;
  const auto explained = std::count(flags.begin(), flags.end(), true);
  return counted(count, "secondary shift") + (count == 1 ? " lies" : " lie") +
         " outside the limits of the database" +
         (explained > 0 ? ", " + std::to_string(explained) + " of them because of the offset"
                        : "") +
         (count > outliersShown ? "; the " + std::to_string(outliersShown) +
                                      " worst are shown, the JSON file has all."
                                : ".");
}

} // namespace

void fillQuality(const Report& report, PageData& page) {
  page.set("hasEstimates", !report.check.estimates.empty());
  page.set("isotope", wasCorrected(report, "Isotope"));
  page.set("hasOffsets", report.check.found());
  page.set("fewestErrors", decimal(report.check.fewestErrors, 1));
  page.set("offsets", offsets(report));
  page.set("referencing", referencingWords(report));
  page.set("outlierCount", outlierCount(report));
  page.set("hasOutliers", !report.check.outliers.empty());
  const std::vector<Outlier>& all = report.check.outliers;
  const std::vector<bool>& flags = report.check.explained;
  const bool farOut = std::any_of(all.begin(), all.end(), [](const auto& o) { return o.marked; });
  const bool explained = std::find(flags.begin(), flags.end(), true) != flags.end();
  page.set("hasFarOut", farOut);
  page.set("hasExplained", explained);
  page.set("hasOutlierRemarks", farOut || explained);
  page.set("outliers", worstOutliers(report));
}
