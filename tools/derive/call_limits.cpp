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
/// Numbers of shifts that a call of trans may ask for: the strata of the page.
constexpr std::array<int, 4> shiftSteps = {0, 9, 12, 14};

/// Calls of one kind that a limit allows, by step: how many lie at or beyond it, and are right.
struct Ladder {
  static constexpr int most = static_cast<int>(calls::mostEvidence) * stepsPerUnit;
  std::array<CallCount, 2 * most + 1> rungs{};

  /// \param support  evidence for this kind of call, so that more is always better
  void add(double support, bool right) {
    const int place = static_cast<int>(std::floor(support * stepsPerUnit + 1e-9)) + most;
    CallCount& rung = rungs[static_cast<std::size_t>(place)];
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

/// A limit, and how many calls of the strata together it allows.
struct LimitChoice {
  double support = infinite;
  int calls = 0;
};

/// The lowest limit from `lowest` on that keeps the promise in all ladders. The first ladder is
/// that of all strata together.
LimitChoice lowestLimit(const std::vector<Ladder>& ladders, double share, double lowest) {
  LimitChoice choice;
  for (std::size_t i = 0; i < ladders.front().rungs.size(); ++i) {
    const double support = (static_cast<double>(i) - Ladder::most) / stepsPerUnit;
    const bool kept = std::all_of(ladders.begin(), ladders.end(), [&](const Ladder& ladder) {
      return keeps(ladder.rungs[i], share, fewestCalls);
    });
    const bool known = std::any_of(ladders.begin() + 1, ladders.end(), [&](const Ladder& ladder) {
      return ladder.rungs[i].calls >= fewestCalls;
    });
    if (kept && known && support >= lowest) {
      return {support, ladders.front().rungs[i].calls};
    }
  }
  return choice;
}

/// What a limit is searched for.
struct Search {
  calls::Assigned assigned;
  bool forCis;
  int fewestShifts;
  double lowest; ///< support that no limit may go below
};

std::vector<Ladder> laddersOf(const std::vector<CallStratum>& strata, const Search& search,
                              int withoutFold) {
  std::vector<Ladder> ladders(1);
  for (const CallStratum& stratum : strata) {
    if (!stratum.binding) {
      continue;
    }
    Ladder ladder;
    for (const CallSample& sample : stratum.samples) {
      const double support = search.forCis ? sample.evidence : -sample.evidence;
      if (sample.assigned == search.assigned && sample.fold != withoutFold &&
          sample.shifts >= search.fewestShifts && support >= search.lowest) {
        ladder.add(support, sample.cis == search.forCis);
        ladders.front().add(support, sample.cis == search.forCis);
      }
    }
    ladders.push_back(ladder);
  }
  for (Ladder& ladder : ladders) {
    ladder.accumulate();
  }
  return ladders;
}

LimitChoice searchLimit(const std::vector<CallStratum>& strata, const Search& search,
                        int withoutFold) {
  return lowestLimit(laddersOf(strata, search, withoutFold), search.forCis ? cisRight : transRight,
                     search.lowest);
}

template <class TrialOf>
CallStratum stratumOf(const CrossValidation& result, const std::string& name, TrialOf trialOf) {
  CallStratum stratum;
  stratum.name = name;
  for (const ScoredProline& proline : result.prolines) {
    const Trial trial = trialOf(proline.trials);
    if (proline.label.source != Source::structure && trial.predicted) {
      stratum.samples.push_back({trial.evidence, trial.assigned, trial.shifts, proline.label.cis,
                                 trial.normalised > 0.5, proline.fold});
    }
  }
  return stratum;
}

std::string referencingName(std::size_t error, bool corrected, bool hideCg) {
  char text[64];
  std::snprintf(text, sizeof text, "%+.1f ppm, %s%s", carbonErrors[error].size,
                corrected ? "corrected" : "as it is", hideCg ? ", no CG" : "");
  return text;
}

struct Range {
  int fewest, most;
};
constexpr std::array<Range, 5> shiftRanges = {{{0, 8}, {9, 11}, {12, 13}, {14, 15}, {16, 16}}};
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

std::vector<CallStratum> callStrata(const CrossValidation& result, std::size_t remedy) {
  std::vector<CallStratum> strata;
  for (std::size_t i = 0; i < conditions().size(); ++i) {
    const auto trialOf = [i](const ProlineTrials& trials) { return trials.conditions[i]; };
    strata.push_back(stratumOf(result, conditions()[i].name, trialOf));
  }
  for (const Range& range : shiftRanges) {
    const auto trialOf = [range](const ProlineTrials& trials) {
      Trial trial = trials.conditions[noCgCondition];
      trial.predicted =
          trial.predicted && trial.shifts >= range.fewest && trial.shifts <= range.most;
      return trial;
    };
    strata.push_back(stratumOf(
        result,
        "no CG, " + (range.fewest == range.most ? "" : std::to_string(range.fewest) + " to ") +
            std::to_string(range.most) + " shifts",
        trialOf));
  }
  for (std::size_t error = 0; error < errorsOfAll; ++error) {
    for (const std::size_t each : {noRemedy, remedy}) {
      if (each == noRemedy && carbonErrors[error].size == 0) {
        continue; // the first two strata
      }
      for (const bool hideCg : {false, true}) {
        const auto trialOf = [=](const ProlineTrials& trials) {
          return trials.referencing[referencingTrial(error, each, hideCg)];
        };
        strata.push_back(
            stratumOf(result, referencingName(error, each == remedy, hideCg), trialOf));
        strata.back().binding = each == remedy;
      }
    }
  }
  return strata;
}

CallLimits findCallLimits(const std::vector<CallStratum>& strata, int withoutFold) {
  CallLimits limits{};
  for (std::size_t i = 0; i < calls::assignedCount; ++i) {
    const auto assigned = static_cast<calls::Assigned>(i);
    CallLimit& limit = limits[i];
    limit.cisFrom = searchLimit(strata, {assigned, true, 0, lowestCis}, withoutFold).support;
    limit.transTo = -infinite;
    int most = 0;
    for (const int fewestShifts : shiftSteps) {
      const LimitChoice choice =
          searchLimit(strata, {assigned, false, fewestShifts, -highestTrans}, withoutFold);
      if (choice.calls > most) {
        most = choice.calls;
        limit.transTo = -choice.support;
        limit.transShifts = fewestShifts;
      }
    }
  }
  return limits;
}

void count(CallCounts& counts, const CallSample& sample, const CallLimits& limits) {
  const CallLimit& limit = limits[static_cast<std::size_t>(sample.assigned)];
  if (sample.evidence >= limit.cisFrom) {
    ++counts.cis.calls;
    counts.cis.right += sample.cis ? 1 : 0;
  } else if (sample.evidence <= limit.transTo && sample.shifts >= limit.transShifts) {
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
      "REMARK Evidence: log10(P_CIS / (1 - P_CIS)). In between it is undecided; 9999: never. A "
      "call of\n"
      "REMARK trans asks for TRANS_SHIFTS of the 16 shifts of the three residues besides.\n"
      "REMARK Chosen by cross-validation so that 95 % of the calls cis and 99 % of the calls "
      "trans\n"
      "REMARK are right in every stratum of the accuracy page with 30 such calls. CALLS and "
      "RIGHT:\n"
      "REMARK calls of that kind in the cross-validation, and the share of them that is right.\n"
      "REMARK Shifts: RefDB: Zhang, Neal & Wishart 2003, J Biomol NMR 25:173-195\n"
      "REMARK Selection: " +
      origin.selection + "\nREMARK Made by " + origin.version + ": " + origin.command +
      "\n\nVARS   ASSIGNED CIS_FROM TRANS_TO TRANS_SHIFTS CIS_CALLS CIS_RIGHT TRANS_CALLS "
      "TRANS_RIGHT "
      "UNDECIDED\n"
      "FORMAT %-8s %8.1f %8.1f %4d %9d %9.3f %9d %9.3f %9d\n\n";
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
    char shifts[16];
    std::snprintf(shifts, sizeof shifts, " %4d", limit.transShifts);
    char undecided[16];
    std::snprintf(undecided, sizeof undecided, " %9d\n", counts.undecided);
    text += start + limitText(limit.cisFrom) + " " + limitText(limit.transTo) + shifts +
            tallyText(counts.cis) + tallyText(counts.trans) + undecided;
  }
  return text;
}

} // namespace derive
