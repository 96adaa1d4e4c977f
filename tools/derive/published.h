#pragma once

#include <array>
#include <string>

#include "tools/derive/residues.h"

/// Published values that the tables start from, read from the folder published/ of the data.
namespace derive {

/// Written where an atom has no value: the run then has no secondary shift.
constexpr double noValue = 9999;

/// A value per residue type and atom, ppm.
using ResidueValues = std::array<std::array<double, atomCount>, letterCount>;
/// CA and CB per residue type, ppm.
using IsotopeValues = std::array<std::array<double, 2>, letterCount>;

/// Residues around prolines in a set of known structures.
struct NeighbourCounts {
  double cis = 0;
  double trans = 0;
};
using NeighbourTable = std::array<NeighbourCounts, letterCount>;

/// Published means and deviations of CB - CG of prolines, ppm.
struct PublishedRule {
  double transMean = 0, transWidth = 0, cisMean = 0, cisWidth = 0;
};

struct Published {
  ResidueValues randomCoil{}; ///< noValue where the atom does not exist or is not used
  ResidueValues previous{};   ///< effect of the residue before, by that residue
  ResidueValues next{};       ///< effect of the residue after, by that residue
  IsotopeValues isotope{};    ///< deuterated minus protonated; noValue for glycine CB
  NeighbourTable before{};    ///< counts of residues before prolines
  NeighbourTable after{};     ///< counts of residues after prolines
  PublishedRule rule;
};

/// Reads the tables of `folder`; throws ToolError with file and line for anything missing.
Published readPublished(const std::string& folder);

} // namespace derive
