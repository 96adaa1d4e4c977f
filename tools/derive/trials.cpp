#include "tools/derive/trials.h"

#include <cmath>

namespace derive {
namespace {

Condition condition(const char* name, bool hideCg, std::initializer_list<Atom> hidden) {
  Condition made;
  made.name = name;
  made.treatment.hideCg = hideCg;
  for (const Atom atom : hidden) {
    made.treatment.hidden[atom] = true;
  }
  return made;
}

std::string signedError(double error) {
  char text[32];
  std::snprintf(text, sizeof text, "%+.1f ppm", error);
  return error == 0 ? "no error" : text;
}

void addReferencing(std::vector<Condition>& made) {
  constexpr std::array<const char*, remedyCount> remedies = {"as it is", "the program's estimate",
                                                             "corrected"};
  for (const double error : carbonErrors) {
    for (std::size_t remedy = 0; remedy < remedyCount; ++remedy) {
      for (const bool hideCg : {false, true}) {
        Condition each;
        each.name =
            signedError(error) + ", " + remedies[remedy] + (hideCg ? ", CG hidden" : ", CG given");
        each.treatment.hideCg = hideCg;
        each.treatment.carbonError = error;
        each.remedy = static_cast<Remedy>(remedy);
        each.binding = each.remedy == Remedy::companionEstimate;
        made.push_back(each);
      }
    }
  }
}

std::vector<Condition> makeConditions() {
  std::vector<Condition> made = {condition("all, with CG", false, {}),
                                 condition("no CG", true, {}),
                                 condition("no CG, no C'", true, {C}),
                                 condition("no CG, no HA", true, {HA}),
                                 condition("no CB, with CG", false, {CB}),
                                 condition("no CG, no CB", true, {CB}),
                                 condition("no CG, no CB, no HA", true, {CB, HA})};
  Condition deuterated;
  deuterated.name = "deuterated, -iso";
  deuterated.treatment.deuterated = true;
  deuterated.treatment.correctIsotope = true;
  made.push_back(deuterated);
  addReferencing(made);
  return made;
}

int presentShifts(const Scored& scored) {
  int count = 0;
  for (std::size_t i = 0; i < tripletShifts; ++i) {
    count += meetsShift(i) && !std::isnan(scored.shifts[i]) ? 1 : 0;
  }
  return count;
}

Trial trialOf(const Scored& scored) {
  constexpr std::size_t cbIndex = atomCount + CB;
  Trial trial;
  trial.predicted = scored.predicted;
  trial.assigned =
      calls::assigned(!std::isnan(scored.shifts[cbIndex]), !std::isnan(scored.shifts[cgIndex]));
  trial.shifts = presentShifts(scored);
  trial.evidence = calls::evidence(static_cast<double>(scored.cis));
  trial.normalised = static_cast<double>(scored.normalised);
  return trial;
}

/// Offsets that a remedy takes off, for a protein that is prepared without one.
ShiftCorrection correctionBy(Remedy remedy, const CoreRun& core) {
  ShiftCorrection correction;
  if (remedy != Remedy::none) {
    const OffsetEstimates estimates = core.offsetEstimates();
    const auto recorded = [](const OffsetEstimate& estimate) {
      return estimate.counts ? static_cast<double>(estimate.offset) : 0;
    };
    correction = {recorded(estimates.ca), recorded(estimates.ha), recorded(estimates.c)};
  }
  return correction;
}

} // namespace

const std::vector<Condition>& conditions() {
  static const std::vector<Condition> made = makeConditions();
  return made;
}

std::size_t referencingCondition(std::size_t error, Remedy remedy, bool hideCg) {
  const std::size_t first = conditions().size() - carbonErrors.size() * remedyCount * 2;
  return first + (error * remedyCount + static_cast<std::size_t>(remedy)) * 2 + (hideCg ? 1 : 0);
}

std::vector<ProlineTrials> tryProlines(CoreRun& core, const Protein& protein,
                                       const std::vector<int>& residues) {
  std::vector<ProlineTrials> trials(residues.size());
  for (const Condition& each : conditions()) {
    Treatment treatment = each.treatment;
    core.prepare(protein, treatment);
    if (each.remedy != Remedy::none) {
      treatment.correction = correctionBy(each.remedy, core);
      core.prepare(protein, treatment);
    }
    for (std::size_t i = 0; i < residues.size(); ++i) {
      trials[i].push_back(trialOf(core.score(residues[i])));
    }
  }
  return trials;
}

} // namespace derive
