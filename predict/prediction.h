#pragma once

#include <array>
#include <string>

/// Degrees of belief that one Xaa-Pro bond is cis.
struct CisLikelihood {
  float cis;        ///< P_CIS, 0 to 1 at even prior odds; not-a-number when both products are 0
  float normalised; ///< P_CIS_NORM, 0 to 1 at the prior odds of 1 cis to 19 trans
};

/// What a run says about one proline.
struct Prediction {
  int residue = 0;                     ///< number of the proline
  std::array<std::string, 3> names;    ///< one-letter, of the triplet
  std::array<int, 3> shiftCounts = {}; ///< backbone shifts of each residue, 0 to 6
  float cgShift = 0;                   ///< ppm, as used; 9999 without one
  CisLikelihood likelihood = {};
  std::string referenceName; ///< one-letter, in the reference structure; "X" when not there
  float referenceOmega = 0;  ///< degrees; 9999 when an atom is missing, 0 without a structure
};
