#pragma once

#include <string>

/// One atom of a structure, from one ATOM line of a PDB file (columns 1-based, inclusive).
///
/// A default record, with an empty `atomName`, stands for an absent atom everywhere.
struct CORdata {
  int atomNumber = 0;        ///< columns 7-11, serial number
  int resNumber = 0;         ///< columns 23-26; the insertion code is not read
  std::string atomName;      ///< columns 12-16; "H" as "HN", a leading 1, 2 or 3 moved to the end
  std::string resName;       ///< first three of columns 18-21
  std::string chainID;       ///< column 22, blank included
  float x = 0;               ///< columns 31-38, Angstrom
  float y = 0;               ///< columns 39-46, Angstrom
  float z = 0;               ///< columns 47-54, Angstrom
  float bFactor = 0;         ///< columns 61-66, square Angstrom
  float coor[3] = {0, 0, 0}; ///< x, y, z again; distances and bond angles read these
};
