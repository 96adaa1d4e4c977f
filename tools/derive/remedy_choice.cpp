#include "tools/derive/remedy_choice.h"

namespace derive {

std::vector<Call> referencingCalls(const CrossValidation& result, std::size_t error,
                                   std::size_t remedy, bool hideCg) {
  std::vector<Call> calls;
  for (const ScoredProline& proline : result.prolines) {
    if (proline.label.source != Source::structure) {
      const Trial& trial = proline.trials.referencing[referencingTrial(error, remedy, hideCg)];
      if (trial.predicted) {
        calls.push_back({trial.normalised, proline.label.cis});
      }
    }
  }
  return calls;
}

double remedyWorth(const CrossValidation& result, std::size_t remedy, std::size_t first,
                   std::size_t end) {
  double sum = 0;
  for (std::size_t error = first; error < end; ++error) {
    for (const bool hideCg : {false, true}) {
      sum += measure(referencingCalls(result, error, remedy, hideCg)).matthews;
    }
  }
  return sum / (2 * static_cast<double>(end - first));
}

std::size_t chooseRemedy(const CrossValidation& result) {
  std::size_t best = firstCompanionRemedy;
  double most = -1;
  for (std::size_t remedy = firstCompanionRemedy; remedy < remedies().size(); ++remedy) {
    const double worth = remedyWorth(result, remedy, 0, carbonErrors.size());
    if (remedies()[remedy].kind == Remedy::Kind::separate && worth >= most) {
      most = worth;
      best = remedy;
    }
  }
  return best;
}

} // namespace derive
