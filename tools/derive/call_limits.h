#pragma once

#include <string>
#include <vector>

#include "tools/derive/cross_validation.h"

/// From which evidence on a proline is called cis or trans.
///
/// Of the calls "cis" at least 95 % have to be right, of the calls "trans" 99 %, in every stratum
/// with at least 30 calls of that kind: every binding condition of the trials, and numbers of
/// shifts. Each state of assignment (CB, CG) has limits of its own, which keep the promise by
/// themselves in each stratum and over all strata together, and which at least one stratum with 30
/// calls stands for. A call of trans may ask for a number of shifts besides. Within that as few
/// prolines as possible stay undecided. (Limits that must hold without any one of the folds as well
/// leave more undecided, and were no more often right on the fold that they had not seen.)
namespace derive {

constexpr double cisRight = 0.95;
constexpr double transRight = 0.99;
constexpr int fewestCalls = 30;

/// What a limit sees of one trial.
struct CallSample {
  double evidence;
  calls::Assigned assigned;
  int shifts;
  bool cis;
  bool plainCis; ///< whether P_CIS_NORM exceeds 0.5
  int fold;
};

struct CallStratum {
  std::string name;
  bool binding = true;
  std::vector<CallSample> samples;
};

struct CallLimit {
  double cisFrom, transTo; ///< infinite and minus infinite where nothing is enough
  int transShifts;         ///< fewest shifts of a call of trans
};
using CallLimits = std::array<CallLimit, calls::assignedCount>;

/// Calls of one kind, and how many were right.
struct CallCount {
  int calls = 0;
  int right = 0;
  double share() const { return static_cast<double>(right) / calls; }
};

struct CallCounts {
  CallCount cis, trans;
  int undecided = 0;
};

/// The strata of the trials: truth *both* and *shifts*, prolines that the program predicts. First
/// the conditions, then those without CG by number of shifts, then the referencing errors as they
/// are (not binding) and after the remedy.
std::vector<CallStratum> callStrata(const CrossValidation& result, std::size_t remedy);

/// The limits from all samples but those of one fold; `foldCount` leaves out none.
CallLimits findCallLimits(const std::vector<CallStratum>& strata, int withoutFold = foldCount);

void count(CallCounts& counts, const CallSample& sample, const CallLimits& limits);

/// Text of calls.tab: the limits, and how often such calls are right where nothing else is missing
/// or wrong.
std::string callTable(const std::vector<CallStratum>& strata, const CallLimits& limits,
                      const Origin& origin);

} // namespace derive
