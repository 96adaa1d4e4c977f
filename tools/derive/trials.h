#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/calls/calls.h"
#include "tools/derive/core_run.h"
#include "tools/referencing/estimate.h"

/// Every labelled proline under every condition that a user's data may be in, scored by tables that
/// never saw its cluster: what the words `cis`, `trans` and `undecided` are derived from, and what
/// the correction of the referencing is judged by.
namespace derive {

/// An error of the referencing of the carbons.
struct CarbonError {
  double size; ///< ppm
  bool ofAll;  ///< of C' as well: its spectra may be referenced apart
};
constexpr std::array<CarbonError, 11> carbonErrors = {{{-2.7, true},
                                                       {-1, true},
                                                       {-0.5, true},
                                                       {0, true},
                                                       {0.5, true},
                                                       {1, true},
                                                       {2.7, true},
                                                       {-2.7, false},
                                                       {-1, false},
                                                       {1, false},
                                                       {2.7, false}}};
/// So many of them, the first, are of all carbons.
constexpr std::size_t errorsOfAll = 7;

/// What is done about the referencing before the prediction.
struct Remedy {
  enum class Kind { none, program, separate, agreeing, common };
  Kind kind = Kind::none;
  /// Errors from which on the companions' estimate is applied.
  double fewestErrors = 0;
};
/// Nothing, the estimate of the program, and the companions' in all its variants.
const std::vector<Remedy>& remedies();
constexpr std::size_t noRemedy = 0;
constexpr std::size_t programRemedy = 1;
constexpr std::size_t firstCompanionRemedy = 2;

/// What the data of all proteins lack; the referencing is apart.
struct Condition {
  std::string name;
  Treatment treatment;
};
const std::vector<Condition>& conditions();

/// One proline under one condition.
struct Trial {
  bool predicted = false; ///< whether the program gives it a row
  calls::Assigned assigned = calls::Assigned::neither;
  int shifts = 0;        ///< of the sixteen of the triplet, CG not counted
  double evidence = 0;   ///< log10 odds before the prior
  double normalised = 0; ///< P_CIS_NORM
};

/// The trials of one proline: by condition, then those of the referencing.
struct ProlineTrials {
  std::vector<Trial> conditions;
  std::vector<Trial> referencing;
};
/// Place of a trial among those of the referencing.
std::size_t referencingTrial(std::size_t error, std::size_t remedy, bool hideCg);

/// Tries the prolines of one protein under all conditions.
///
/// \param residues  of the prolines
/// \return trials by proline
std::vector<ProlineTrials> tryProlines(CoreRun& core, const referencing::Model& model,
                                       const Protein& protein, const std::vector<int>& residues);

} // namespace derive
