#include <cmath>

#include "tools/derive/accuracy_sections.h"
#include "tools/derive/call_limits.h"
#include "tools/derive/markdown.h"
#include "tools/derive/remedy_choice.h"

namespace derive {
namespace {

std::string rightOf(const CallCount& count) {
  return count.calls == 0 ? "-" : percent(count.share()) + " of " + std::to_string(count.calls);
}

/// The plain rule: cis above P_CIS_NORM 0.5, else trans.
CallCounts plainCounts(const CallStratum& stratum) {
  CallCounts counts;
  for (const CallSample& sample : stratum.samples) {
    CallCount& kind = sample.plainCis ? counts.cis : counts.trans;
    ++kind.calls;
    kind.right += sample.plainCis == sample.cis ? 1 : 0;
  }
  return counts;
}

/// Counts by one set of limits per fold, each found without the fold.
CallCounts nestedCounts(const CallStratum& stratum, const std::vector<CallLimits>& byFold) {
  CallCounts counts;
  for (const CallSample& sample : stratum.samples) {
    count(counts, sample, byFold[static_cast<std::size_t>(sample.fold)]);
  }
  return counts;
}

std::string limitText(double limit) {
  return std::isinf(limit) ? "never" : fixed(limit, 1);
}

std::string limitTable(const CallLimits& limits) {
  std::vector<std::vector<std::string>> rows;
  for (const calls::Assigned each : {calls::Assigned::both, calls::Assigned::cb,
                                     calls::Assigned::cg, calls::Assigned::neither}) {
    const CallLimit& limit = limits[static_cast<std::size_t>(each)];
    const std::string shifts =
        limit.transShifts > 0 ? ", with " + std::to_string(limit.transShifts) + " shifts" : "";
    rows.push_back({calls::describe(each), limitText(limit.cisFrom),
                    limitText(limit.transTo) + (std::isinf(limit.transTo) ? "" : shifts)});
  }
  return markdownTable({"assigned", "cis from", "trans up to"}, rows);
}

std::string stratumTable(const std::vector<CallStratum>& strata, const CallLimits& limits,
                         const std::vector<CallLimits>& byFold) {
  std::vector<std::vector<std::string>> rows;
  for (const CallStratum& stratum : strata) {
    CallCounts counts;
    for (const CallSample& sample : stratum.samples) {
      count(counts, sample, limits);
    }
    const CallCounts nested = nestedCounts(stratum, byFold);
    const CallCounts plain = plainCounts(stratum);
    rows.push_back({stratum.name + (stratum.binding ? "" : " *"),
                    std::to_string(stratum.samples.size()), rightOf(counts.cis),
                    rightOf(counts.trans), std::to_string(counts.undecided), rightOf(nested.cis),
                    rightOf(nested.trans), rightOf(plain.cis), rightOf(plain.trans)});
  }
  return markdownTable({"stratum", "prolines", "cis right", "trans right", "undecided",
                        "cis, limits of other folds", "trans", "cis, plain rule", "trans"},
                       rows);
}

} // namespace

std::string callSection(const CrossValidation& result) {
  const std::vector<CallStratum> strata = callStrata(result, chooseRemedy(result));
  const CallLimits limits = findCallLimits(strata);
  std::vector<CallLimits> byFold;
  byFold.reserve(foldCount);
  for (int fold = 0; fold < foldCount; ++fold) {
    byFold.push_back(findCallLimits(strata, fold));
  }
  return "## Cis, trans or undecided\n\n"
         "The companion programs say `cis`, `trans` or `undecided` (`tab/calls.tab`), by the "
         "evidence before\nthe prior, log10(P_CIS / (1 - P_CIS)), and by what is assigned:\n\n" +
         limitTable(limits) +
         "The shifts are those of the three residues, 16 at most. The limits are the widest that "
         "keep 95 % of\nthe calls cis and 99 % of the calls trans right in every stratum below "
         "that "
         "has 30 of them; those\nmarked * are not asked. Truth *both* and *shifts*. *limits of "
         "other "
         "folds*: with limits that were\nchosen without the fold of the proline. *plain rule*: cis "
         "above a P_CIS_NORM of 0.5, else trans.\n\n" +
         stratumTable(strata, limits, byFold);
}

} // namespace derive
