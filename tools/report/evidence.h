#pragma once

#include <string>
#include <vector>

#include "tools/report/inputs.h"

/// One factor of the likelihoods: a shift, a neighbour's residue type, or CG.
///
/// Its contribution is the natural logarithm of the factor for cis over the factor for trans:
/// above 0 it speaks for cis. For a shift x that is
/// ((x - avg_trans)/std_trans)^2/2 - ((x - avg_cis)/std_cis)^2/2: the program compares Gaussians
/// of height 1.
struct Term {
  enum class Kind { neighbour, shift, cg };
  Kind kind = Kind::shift;
  int place = 1;             ///< 1 before the proline, 2 the proline, 3 after it
  int residue = 0;           ///< table number
  std::string atom;          ///< "N", ..., "CG"; "type" for a neighbour
  bool present = false;      ///< a missing shift contributes nothing
  bool applicable = true;    ///< false for N and HN of the proline, which are never used
  bool clipped = false;      ///< bounded by the limits of the database
  bool readAsZero = false;   ///< the table calls it H: the program then reads a shift of 0
  double shift = 0;          ///< secondary shift, ppm, or observed CG; only when present
  double used = 0;           ///< the same after bounding
  double rounding = 0;       ///< half a unit of its last printed digit, ppm
  double cis = 0, trans = 0; ///< mean of each form, ppm; for a neighbour its frequency
  double cisDeviation = 0, transDeviation = 0; ///< ppm
  double logRatio =
      0; ///< contribution; 0 when missing, infinite or not-a-number without statistics
};

/// "shift", "cg" or "neighbour", as exports name it.
const char* kindName(Term::Kind kind);
/// "used", "clipped", "missing", "unused" (not applicable) or "read as 0".
const char* stateName(const Term& term);

/// All factors of one proline and what they add up to.
struct Evidence {
  int residue = 0;
  std::vector<Term> terms; ///< before, proline (with CG), after; the type first, then N to HN
  double logRatio = 0;     ///< their sum, ln(P_CIS / (1 - P_CIS))
  double pCis = 0;         ///< from the sum
  double pCisNorm = 0;
  double rounding = 0;  ///< how far P_CIS can be off because the tables are rounded
  CisLikelihood core{}; ///< what citrans computes from the same shifts, in single precision

  /// Whether the sum gives the printed likelihood within what rounding explains.
  bool agreesWith(double printedPCis) const;
};

/// Prior odds of trans that P_CIS_NORM takes into account, as a logarithm: ln 19.
extern const double logPriorOdds;

/// P_CIS_NORM that belongs to a P_CIS.
double normalised(double pCis);

/// The evidence on one proline of a filled run; its `clipOn` decides on bounding.
Evidence gatherEvidence(CITRANS& run, const Inputs& inputs, int proline);
