#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/derive/adjustments.h"
#include "tools/derive/limits.h"
#include "tools/derive/referencing_fit.h"
#include "tools/derive/statistics_fit.h"
#include "tools/derive/tables.h"
#include "tools/derive/training.h"

/// From training data to tables, step by step.
namespace derive {

/// Receives one line of progress.
using Progress = std::function<void(const std::string&)>;

/// What was chosen by cross-validation: see `fitStatistics` and `findLimits`.
struct Choice {
  double drawing = shippedDrawing;
  double leastHighestCb = shippedHighestCb;
};

/// Everything a derivation starts from, and what does not depend on the selection of proteins.
class Derivation {
 public:
  /// Secondary shifts of all proteins without adjustments.
  Derivation(const Training& training, const Published& published, const Progress& progress);

  /// Derives all tables from the proteins for which `use` is true.
  TableSet derive(const std::vector<bool>& use, const Progress& progress) const;

  /// The same tables by another choice: with other limits and statistics, the adjustments as they
  /// are.
  TableSet rederive(const std::vector<bool>& use, TableSet tables, const Choice& choice,
                    const Progress& progress) const;

  const Training& training() const { return training_; }
  /// The constants of the companions' referencing estimate, with the adjustments of `tables`.
  referencing::Model fitReferencingTo(const std::vector<bool>& use, const TableSet& tables) const;
  /// What that estimate looks at in one protein.
  ReferencedProtein referencedProtein(std::size_t protein, const TableSet& tables) const;

 private:
  Adjustments fitAdjustmentsOf(const std::vector<bool>& use) const;
  Limits limitsOf(const std::vector<bool>& use, const ResidueValues& adjustments,
                  double leastHighestCb) const;
  void fitStatisticsOf(const std::vector<bool>& use, TableSet& tables, double drawing,
                       const Progress& progress) const;

  const Training& training_;
  const Published& published_;
  std::vector<std::vector<std::array<float, atomCount>>> secondary_;
};

/// The samples of the chosen proteins' prolines that the program predicts, with the tables' own
/// secondary shifts and limits.
std::vector<TrainingSample> makeSamples(const Training& training, const std::vector<bool>& use,
                                        const TableSet& tables);

/// "N prolines (C cis) of P proteins": what a selection holds.
std::string describeSelection(const Training& training, const std::vector<bool>& use);

} // namespace derive
