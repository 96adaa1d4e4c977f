#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tools/derive/residues.h"

/// Residue adjustments that make the referencing estimate unbiased.
///
/// The estimate fits, per protein, the secondary shifts of CA, HA and C' against CA minus CB on
/// either side of 0 and compares the intercepts with constants. Random-coil values from peptides
/// miss these constants, so that a third of all well-referenced proteins would be "corrected". An
/// adjustment per residue type and atom is added to the random-coil shift instead. It minimises,
/// over all training proteins and the three nuclei,
///   - the offset that is found, in robust form, together and for each set of points,
///   - a smooth count of the offsets that would be recorded,
///   - the squares of the adjustments' deviations from their mean per atom.
/// A CA or CB that moves takes points across 0, where the objective jumps. A line search stalls at
/// the jumps, so the descent takes steps of its own (Adam: D. P. Kingma & J. Ba, ICLR 2015), and
/// the four means per atom follow finite differences wide enough to see past them.
namespace derive {

/// Adjusted atoms, the order of all arrays below.
enum Adjusted : std::size_t { adjCA, adjCB, adjHA, adjC, adjustedCount };
constexpr std::array<Atom, adjustedCount> adjustedAtoms = {CA, CB, HA, C};

using Adjustments = std::array<std::array<double, letterCount>, adjustedCount>;

/// Residues that the referencing looks at: not proline or cysteine, CA and CB present.
struct ReferencePoint {
  std::array<double, adjustedCount> shift; ///< secondary shifts, ppm; not-a-number when missing
  std::uint8_t letter;
};

/// The points of one protein, in the order in which the program visits them.
using ReferencePoints = std::vector<ReferencePoint>;

/// Value of the objective at some adjustments, and its gradient with the points held in their sets.
double adjustmentLoss(const std::vector<ReferencePoints>& proteins, const Adjustments& adjustments,
                      Adjustments* gradient);

/// Adjustments to add to the random-coil shifts, ppm. Letters that the referencing leaves out get
/// the mean of their atom only for cysteines, nothing for proline.
Adjustments fitAdjustments(const std::vector<ReferencePoints>& proteins);

} // namespace derive
