#include "tools/derive/call_limits.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace derive {
namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
/// The limits are multiples of this: nobody reads a second decimal of a power of ten.
constexpr int stepsPerUnit = 10;
/// The steps next to log10(19), where P_CIS_NORM is 0.5: no limit crosses it, since nothing is to
/// be called by the form that is the less likely one.
constexpr double lowestCis = 1.3;
constexpr double highestTrans = 1.2;

/// Calls of one kind that a limit allows, by step: how many lie at or beyond it, and are right.
struct Ladder {
  static constexpr int most = static_cast<int>(calls::mostEvidence) * stepsPerUnit;
  std::array<CallCount, 2 * most + 1> rungs{};

  /// \param support  evidence for this kind of call, so that more is always better
  void add(double support, bool right) {
    const int highest = static_cast<int>(std::floor(support * stepsPerUnit + 1e-9));
    CallCount& rung = rungs[static_cast<std::size_t>(highest + most)];
    ++rung.calls;
    rung.right += right ? 1 : 0;
  }

  void accumulate() {
    for (std::size_t i = rungs.size() - 1; i-- > 0;) {
      rungs[i].calls += rungs[i + 1].calls;
      rungs[i].right += rungs[i + 1].right;
    }
  }
};

bool keeps(const CallCount& count, double share, int fewest) {
  return count.calls < fewest || count.right >= share * count.calls;
}

/// The lowest limit that keeps the promise in all ladders, as do all stricter ones: a share that
/// is good at one step and bad at a stricter one is luck. The first ladder is that of all strata
/// together.
double lowestLimit(const std::vector<Ladder>& ladders, double share) {
  const Ladder& together = ladders.front();
  double limit = infinite;
  for (std::size_t i = together.rungs.size(); i-- > 0;) {
    const bool kept = std::all_of(ladders.begin() + 1, ladders.end(), [&](const Ladder& ladder) {
      return keeps(ladder.rungs[i], share, fewestCalls);
    });
    const CallCount& all = together.rungs[i];
    if (!kept || !keeps(all, share, fewestCalls)) {
      break;
    }
    if (all.calls >= fewestCalls) {
      limit = (static_cast<double>(i) - Ladder::most) / stepsPerUnit;
    }
  }
  return limit;
}

std::vector<Ladder> laddersOf(const std::vector<CallStratum>& strata, calls::Assigned assigned,
                              bool forCis, int withoutFold) {
  std::vector<Ladder> ladders(1);
  for (const CallStratum& stratum : strata) {
    if (!stratum.binding) {
      continue;
    }
    Ladder ladder;
    for (const CallSample& sample : stratum.samples) {
      if (sample.assigned == assigned && sample.fold != withoutFold &&
          !std::isnan(sample.evidence)) {
        const double support = forCis ? sample.evidence : -sample.evidence;
        ladder.add(support, sample.cis == forCis);
        ladders.front().add(support, sample.cis == forCis);
      }
    }
    ladders.push_back(ladder);
  }
  for (Ladder& ladder : ladders) {
    ladder.accumulate();
  }
  return ladders;
}

CallSample sampleOf(const ScoredProline& proline, const Trial& trial, int fold) {
  return {trial.evidence, trial.assigned, proline.label.cis, trial.normalised > 0.5, fold};
}

struct Range {
  int fewest, most;
};
constexpr std::array<Range, 4> shiftRanges = {{{0, 8}, {9, 11}, {12, 13}, {14, 16}}};
/// Place of the condition without CG among the conditions.
constexpr std::size_t noCgCondition = 1;

/// Formats a limit for the table; 9999 for one that nothing reaches.
std::string limitText(double limit) {
  char text[32];
  std::snprintf(text, sizeof text, "%8.1f", std::isinf(limit) ? 9999.0 : limit);
  return text;
}

std::string tallyText(const CallCount& count) {
  char text[64];
  std::snprintf(text, sizeof text, " %9d %9.3f", count.calls,
                count.calls > 0 ? count.share() : 9999.0);
  return text;
}

} // namespace

std::vector<CallStratum> callStrata(const CrossValidation& result) {
  std::vector<CallStratum> strata;
  for (const Condition& condition : conditions()) {
    strata.push_back({condition.name, condition.binding, {}});
  }
  for (const Range& range : shiftRanges) {
    strata.push_back(
        {"no CG, " + std::to_string(range.fewest) + " to " + std::to_string(range.most) + " shifts",
         true,
         {}});
  }
  for (const ScoredProline& proline : result.prolines) {
    if (proline.label.source == Source::structure) {
      continue;
    }
    for (std::size_t i = 0; i < proline.trials.size(); ++i) {
      const Trial& trial = proline.trials[i];
      if (!trial.predicted) {
        continue;
      }
      const CallSample sample = sampleOf(proline, trial, proline.fold);
      strata[i].samples.push_back(sample);
      for (std::size_t r = 0; i == noCgCondition && r < shiftRanges.size(); ++r) {
        if (trial.shifts >= shiftRanges[r].fewest && trial.shifts <= shiftRanges[r].most) {
          strata[conditions().size() + r].samples.push_back(sample);
        }
      }
    }
  }
  return strata;
}

CallLimits findCallLimits(const std::vector<CallStratum>& strata, int withoutFold) {
  CallLimits limits{};
  for (std::size_t i = 0; i < calls::assignedCount; ++i) {
    const auto assigned = static_cast<calls::Assigned>(i);
    limits[i].cisFrom =
        std::max(lowestCis, lowestLimit(laddersOf(strata, assigned, true, withoutFold), cisRight));
    limits[i].transTo = std::min(
        highestTrans, -lowestLimit(laddersOf(strata, assigned, false, withoutFold), transRight));
  }
  return limits;
}

void count(CallCounts& counts, const CallSample& sample, const CallLimits& limits) {
  const CallLimit& limit = limits[static_cast<std::size_t>(sample.assigned)];
  if (sample.evidence >= limit.cisFrom) {
    ++counts.cis.calls;
    counts.cis.right += sample.cis ? 1 : 0;
  } else if (sample.evidence <= limit.transTo) {
    ++counts.trans.calls;
    counts.trans.right += sample.cis ? 0 : 1;
  } else {
    ++counts.undecided;
  }
}

std::string callTable(const std::vector<CallStratum>& strata, const CallLimits& limits,
                      const Origin& origin) {
  struct Row {
    const char* name;
    calls::Assigned assigned;
    const char* stratum;
  };
  std::string text =
      "REMARK From which evidence on a proline is called cis or trans, by what of it is assigned.\n"
      "REMARK Evidence: log10(P_CIS / (1 - P_CIS)). In between it is undecided; 9999: never.\n"
      "REMARK Chosen by cross-validation so that 95 % of the calls cis and 99 % of the calls "
      "trans\n"
      "REMARK are right in every stratum of the accuracy page with 30 such calls. CALLS and "
      "RIGHT:\n"
      "REMARK calls of that kind in the cross-validation, and the share of them that is right.\n"
      "REMARK Shifts: RefDB: Zhang, Neal & Wishart 2003, J Biomol NMR 25:173-195\n"
      "REMARK Selection: " +
      origin.selection + "\nREMARK Made by " + origin.version + ": " + origin.command +
      "\n\nVARS   ASSIGNED CIS_FROM TRANS_TO CIS_CALLS CIS_RIGHT TRANS_CALLS TRANS_RIGHT "
      "UNDECIDED\n"
      "FORMAT %-8s %8.1f %8.1f %9d %9.3f %9d %9.3f %9d\n\n";
  for (const Row& row :
       {Row{"both", calls::Assigned::both, "all, with CG"}, Row{"CB", calls::Assigned::cb, "no CG"},
        Row{"CG", calls::Assigned::cg, "no CB, with CG"},
        Row{"neither", calls::Assigned::neither, "no CG, no CB"}}) {
    const auto stratum = std::find_if(strata.begin(), strata.end(), [&](const CallStratum& each) {
      return each.name == row.stratum;
    });
    CallCounts counts;
    for (const CallSample& sample : stratum->samples) {
      if (sample.assigned == row.assigned) {
        count(counts, sample, limits);
      }
    }
    const CallLimit& limit = limits[static_cast<std::size_t>(row.assigned)];
    char start[32];
    std::snprintf(start, sizeof start, "%-8s ", row.name);
    text += start + limitText(limit.cisFrom) + " " + limitText(limit.transTo) +
            tallyText(counts.cis) + tallyText(counts.trans) + " " +
            std::to_string(counts.undecided) + "\n";
  }
  return text;
}

} // namespace derive
