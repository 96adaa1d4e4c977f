#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// A residue that a row of the input names otherwise than the sequence does; the sequence wins.
struct NameMismatch {
  int residue;
  std::string header, row; ///< one-letter names
};

/// Secondary shifts that one kind of residue and atom may have, ppm.
struct ShiftLimits {
  float lowest, highest;
};

/// A secondary shift beyond the limits of its residue and atom.
struct Outlier {
  int residue;
  std::string name; ///< one-letter
  std::string atom;
  double shift; ///< ppm
  float limit;  ///< the one that it exceeds, ppm
  bool marked;  ///< more than twice as large as the limit, thrice for HA
};

/// What the straight-line fits of one nucleus say about its referencing.
struct OffsetEstimate {
  float offset = 0;       ///< ppm; 0 when neither set has points enough
  float error = 0;        ///< its standard error, ppm
  std::size_t points = 0; ///< in both sets
  bool shortage = false;  ///< whether there are points, but too few in either set
  bool counts = false;    ///< whether it is recorded: larger than five times its error
};

struct OffsetEstimates {
  OffsetEstimate ca; ///< for CA and CB
  OffsetEstimate ha;
  OffsetEstimate c;
};

/// What the shift check finds in the secondary shifts of one protein.
struct ShiftCheck {
  std::vector<Outlier> outliers; ///< in the order of the rows
  OffsetEstimates offsets;
};
