#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/calls/calls.h"
#include "tools/derive/core_run.h"

/// Every labelled proline under every condition that a user's data may be in, scored by tables that
/// never saw its cluster: what the words `cis`, `trans` and `undecided` are derived from, and what
/// the correction of the referencing is judged by.
namespace derive {

/// Errors added to all carbons, ppm.
constexpr std::array<double, 7> carbonErrors = {-2.7, -1, -0.5, 0, 0.5, 1, 2.7};

/// What is done about the referencing before the prediction.
enum class Remedy { none, programEstimate, companionEstimate };
constexpr std::size_t remedyCount = 3;

struct Condition {
  std::string name;
  Treatment treatment;
  Remedy remedy = Remedy::none;
  /// Whether the words must keep their promise here. Not where an error of the referencing goes
  /// uncorrected.
  bool binding = true;
};

/// All conditions, those of the referencing last: by error, then remedy, then CG given and hidden.
const std::vector<Condition>& conditions();
/// Place of one of the latter.
std::size_t referencingCondition(std::size_t error, Remedy remedy, bool hideCg);

/// One proline under one condition.
struct Trial {
  bool predicted = false; ///< whether the program gives it a row
  calls::Assigned assigned = calls::Assigned::neither;
  int shifts = 0;        ///< of the sixteen of the triplet, CG not counted
  double evidence = 0;   ///< log10 odds before the prior
  double normalised = 0; ///< P_CIS_NORM
};

/// The trials of one proline, by condition.
using ProlineTrials = std::vector<Trial>;

/// Tries the prolines of one protein under all conditions.
///
/// \param residues  of the prolines
/// \return trials by proline
std::vector<ProlineTrials> tryProlines(CoreRun& core, const Protein& protein,
                                       const std::vector<int>& residues);

} // namespace derive
