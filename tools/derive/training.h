#pragma once

#include <array>
#include <limits>
#include <string>
#include <vector>

#include "tools/derive/residues.h"

/// The training data: sequences, observed shifts and the cis/trans truth of prolines.
namespace derive {

/// Stands for a shift that is not assigned.
constexpr double noShift = std::numeric_limits<double>::quiet_NaN();
/// Values of this size or more mean "not assigned" in the input.
constexpr double missingFrom = 999;

/// Observed shifts of one residue, ppm; `noShift` where not assigned.
struct ObservedShifts {
  double n, ha, c, ca, cb, hn, ha2, ha3, cg;
};

struct Protein {
  std::string entry;
  int cluster = 0;                    ///< related sequences share a number
  std::string sequence;               ///< one-letter codes; residue i is sequence[i - 1]
  std::vector<ObservedShifts> shifts; ///< by residue, from index 1
};

/// Where a cis/trans label comes from.
enum class Source { both, shifts, structure };

struct LabelledProline {
  std::size_t protein; ///< place among the proteins
  int residue;
  bool cis;
  Source source;
  double delta; ///< CB - CG, ppm; 9999 where not assigned
};

struct Training {
  std::vector<Protein> proteins;
  std::vector<LabelledProline> prolines; ///< without the disputed ones
  std::size_t disputed = 0;
  /// Disputed prolines that are cis, or trans, by a structure, and the other form by CB - CG.
  std::size_t contradictedCis = 0;
  std::size_t contradictedTrans = 0;
};

/// Reads training_sequences.tab, training_shifts.tab and training_prolines.tab of a folder.
///
/// Throws ToolError with file and line for a missing column, a cell that is no number, an unknown
/// entry, a residue number outside its sequence, a proline that is none, an unknown label, and
/// when there is no cis or no trans proline.
Training readTraining(const std::string& folder);

} // namespace derive
