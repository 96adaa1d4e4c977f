#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/derive/core_run.h"
#include "tools/derive/pipeline.h"
#include "tools/derive/trials.h"

/// 10-fold cross-validation by cluster: every figure comes from tables that were derived without
/// any protein related to the one that is scored. Adjustments, limits, statistics and the common
/// factor are all derived anew for each fold.
namespace derive {

constexpr int foldCount = 10;

/// Fold of a cluster: spreads cluster numbers evenly, the same in every run.
int foldOf(int cluster);

/// The experiments in which every proline is scored.
enum Experiment : std::size_t {
  cgGiven,
  cgHidden,
  noCb,
  noHa,
  noCbNoHa,
  noCarbonyl,
  protonsOnly,
  amidesOnly,
  plainGiven, ///< robust means and deviations instead of the fitted ones
  plainHidden,
  earlierGiven, ///< without the penalty that draws the forms together, CB bounded at the cis
                ///< prolines
  earlierHidden,
  earlierNoCb,
  chosenGiven, ///< with that penalty as strong as the other folds choose it
  chosenHidden,
  chosenNoCb,
  error27Down, ///< all carbons misreferenced by -2.7 ppm, with CG
  error10Down,
  error10Up,
  error27Up,
  error27DownCorrected, ///< the same, with the offset correction of the program
  error10DownCorrected,
  error10UpCorrected,
  error27UpCorrected,
  error27DownNoCg,
  error27UpNoCg,
  error27DownNoCgCorrected,
  error27UpNoCgCorrected,
  offsetCorrected, ///< well referenced, with the offset correction
  deuterated,
  deuteratedCorrected, ///< with the isotope correction of the program
  experimentCount
};

/// Referencing errors of the experiments, ppm.
constexpr std::array<double, 4> injectedErrors = {-2.7, -1, 1, 2.7};

/// One proline with all that was measured on it.
struct ScoredProline {
  LabelledProline label{};
  std::array<float, statisticCount> shifts{};        ///< with CG, as the likelihood saw them
  double neighbourLogOdds = 0;                       ///< of the neighbour frequencies
  double cbMinusCg = noShift;                        ///< observed, ppm
  std::array<bool, experimentCount> predicted{};     ///< whether the program gives it a row
  std::array<double, experimentCount> probability{}; ///< P_CIS_NORM
  ProlineTrials trials;                              ///< by condition
  int fold = 0;                                      ///< of its protein
};

/// What the referencing estimate says about one protein, by nucleus: CA/CB, HA, C'.
struct OffsetTrial {
  std::array<bool, 3> estimated{};
  std::array<bool, 3> recorded{};
  std::array<double, 3> offset{}; ///< ppm, recorded or not
  /// Offset of CA/CB that the program records at each injected error; 0 when it records none.
  std::array<double, injectedErrors.size()> found{};
};

struct CrossValidation {
  std::vector<ScoredProline> prolines; ///< those of the training data that are not disputed
  std::vector<OffsetTrial> offsets;    ///< by protein
  std::vector<int> clusters;           ///< by protein
  std::vector<double> chosenDrawing;   ///< by fold: see `chooseDrawing`
  /// The companions' estimates, by protein, from constants that never saw its cluster.
  std::vector<referencing::Estimates> estimates;
};

/// Whether the experiments with tables by other choices are made too; they take as long as the
/// rest.
enum class Extent { shippedChoice, otherChoices };

/// Experiments that are not made predict nothing.
CrossValidation crossValidate(const Derivation& derivation, Extent extent,
                              const Progress& progress);

} // namespace derive
