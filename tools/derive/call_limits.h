#pragma once

#include <string>
#include <vector>

#include "tools/derive/cross_validation.h"

/// From which evidence on a proline is called cis or trans.
///
/// Of the calls "cis" at least 95 % have to be right, of the calls "trans" 99 %, in every stratum
/// with at least 30 calls of that kind: every binding condition of the trials, and numbers of
/// shifts. Each state of assignment (CB, CG) has limits of its own, which keep the promise by
/// themselves, in each stratum and over all strata together, however few the calls of one stratum
/// are. Within that the limits lie as close to each other as they can.
namespace derive {

constexpr double cisRight = 0.95;
constexpr double transRight = 0.99;
constexpr int fewestCalls = 30;

/// What a limit sees of one trial.
struct CallSample {
  double evidence;
  calls::Assigned assigned;
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

/// The strata of the trials: truth *both* and *shifts*, prolines that the program predicts.
std::vector<CallStratum> callStrata(const CrossValidation& result);

/// The limits from all samples but those of one fold; -1 leaves out none.
CallLimits findCallLimits(const std::vector<CallStratum>& strata, int withoutFold = -1);

void count(CallCounts& counts, const CallSample& sample, const CallLimits& limits);

/// Text of calls.tab: the limits, and how often such calls are right where nothing else is missing
/// or wrong.
std::string callTable(const std::vector<CallStratum>& strata, const CallLimits& limits,
                      const Origin& origin);

} // namespace derive
