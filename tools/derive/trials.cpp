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
  return made;
}

std::vector<Remedy> makeRemedies() {
  std::vector<Remedy> made = {{Remedy::Kind::none, 0}, {Remedy::Kind::program, 0}};
  for (const Remedy::Kind kind :
       {Remedy::Kind::separate, Remedy::Kind::agreeing, Remedy::Kind::common}) {
    for (const double errors : {0.0, 1.0, 1.5, 2.0, 2.5, 3.0, 4.0}) {
      made.push_back({kind, errors});
    }
  }
  return made;
}

Trial trialOf(const Scored& scored) {
  constexpr std::size_t cbIndex = atomCount + CB;
  Trial trial;
  trial.predicted = scored.predicted;
  trial.assigned =
      calls::assigned(!std::isnan(scored.shifts[cbIndex]), !std::isnan(scored.shifts[cgIndex]));
  trial.shifts = calls::shiftCount(scored.counts);
  trial.evidence = calls::evidence(static_cast<double>(scored.cis));
  trial.normalised = static_cast<double>(scored.normalised);
  return trial;
}

using referencing::Estimate;
using referencing::Estimates;

/// One estimate for all carbons, weighted by the errors; only when both agree, if asked to.
void shareCarbons(Estimates& estimates, bool whenAgreeing) {
  Estimate& alpha = estimates[0];
  Estimate& carbonyl = estimates[2];
  const double a = 1 / (alpha.error * alpha.error);
  const double c = 1 / (carbonyl.error * carbonyl.error);
  const double apart = std::fabs(alpha.offset - carbonyl.offset) / std::sqrt(1 / a + 1 / c);
  if (alpha.points == 0 || carbonyl.points < referencing::fewestPoints ||
      alpha.points < referencing::fewestPoints || (whenAgreeing && apart > 2)) {
    return;
  }
  alpha.offset = carbonyl.offset = (a * alpha.offset + c * carbonyl.offset) / (a + c);
  alpha.error = carbonyl.error = 1 / std::sqrt(a + c);
}

ShiftCorrection correctionBy(const Remedy& remedy, const CoreRun& core, Estimates estimates) {
  if (remedy.kind == Remedy::Kind::none) {
    return {};
  }
  if (remedy.kind == Remedy::Kind::program) {
    const OffsetEstimates found = core.offsetEstimates();
    const auto recorded = [](const OffsetEstimate& estimate) {
      return estimate.counts ? static_cast<double>(estimate.offset) : 0;
    };
    return {recorded(found.ca), recorded(found.ha), recorded(found.c)};
  }
  if (remedy.kind != Remedy::Kind::separate) {
    shareCarbons(estimates, remedy.kind == Remedy::Kind::agreeing);
  }
  const auto worthIt = [&remedy](const Estimate& estimate) {
    return std::fabs(estimate.offset) > remedy.fewestErrors * estimate.error ? estimate.offset : 0;
  };
  return {worthIt(estimates[0]), worthIt(estimates[1]), worthIt(estimates[2])};
}

Treatment misreferenced(const CarbonError& error) {
  Treatment treatment;
  treatment.carbonError = error.size;
  treatment.correction.carbonyl = error.ofAll ? 0 : error.size;
  return treatment;
}

using CorrectionKey = std::array<double, 3>;

/// The prolines with and without CG, corrected as told.
std::vector<std::array<Trial, 2>> tryCorrection(CoreRun& core, const Protein& protein,
                                                const std::vector<int>& residues,
                                                const CarbonError& error,
                                                const ShiftCorrection& correction) {
  Treatment treatment = misreferenced(error);
  treatment.correction.carbon += correction.carbon;
  treatment.correction.ha += correction.ha;
  treatment.correction.carbonyl += correction.carbonyl;
  core.prepare(protein, treatment);
  std::vector<std::array<Trial, 2>> trials;
  trials.reserve(residues.size());
  for (const int residue : residues) {
    trials.push_back({trialOf(core.score(residue)), trialOf(core.score(residue, true))});
  }
  return trials;
}

void tryReferencing(CoreRun& core, const referencing::Model& model, const Protein& protein,
                    const std::vector<int>& residues, std::vector<ProlineTrials>& trials) {
  for (const CarbonError& error : carbonErrors) {
    core.prepare(protein, misreferenced(error));
    const Estimates estimates = estimate(model, referencing::residuesOf(core.program()));
    std::vector<ShiftCorrection> corrections;
    for (const Remedy& remedy : remedies()) {
      corrections.push_back(correctionBy(remedy, core, estimates));
    }
    // Many remedies correct alike.
    std::map<CorrectionKey, std::vector<std::array<Trial, 2>>> known;
    for (const ShiftCorrection& correction : corrections) {
      const CorrectionKey key = {correction.carbon, correction.ha, correction.carbonyl};
      auto found = known.find(key);
      if (found == known.end()) {
        found = known.emplace(key, tryCorrection(core, protein, residues, error, correction)).first;
      }
      for (std::size_t i = 0; i < residues.size(); ++i) {
        trials[i].referencing.insert(trials[i].referencing.end(), found->second[i].begin(),
                                     found->second[i].end());
      }
    }
  }
}

} // namespace

const std::vector<Condition>& conditions() {
  static const std::vector<Condition> made = makeConditions();
  return made;
}

const std::vector<Remedy>& remedies() {
  static const std::vector<Remedy> made = makeRemedies();
  return made;
}

std::size_t referencingTrial(std::size_t error, std::size_t remedy, bool hideCg) {
  return (error * remedies().size() + remedy) * 2 + (hideCg ? 1 : 0);
}

std::vector<ProlineTrials> tryProlines(CoreRun& core, const referencing::Model& model,
                                       const Protein& protein, const std::vector<int>& residues) {
  std::vector<ProlineTrials> trials(residues.size());
  for (const Condition& each : conditions()) {
    core.prepare(protein, each.treatment);
    for (std::size_t i = 0; i < residues.size(); ++i) {
      trials[i].conditions.push_back(trialOf(core.score(residues[i])));
    }
  }
  tryReferencing(core, model, protein, residues, trials);
  return trials;
}

} // namespace derive
