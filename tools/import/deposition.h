#pragma once

#include <set>
#include <string>
#include <vector>

#include "tools/import/star_document.h"

/// One residue of a polymer, in sequence order.
struct Residue {
  std::string index;  ///< number in the deposition's own count, as text
  std::string author; ///< the authors' number, as text; may be empty
  std::string name;   ///< three-letter name in capitals
};

/// One kind of molecule.
struct Polymer {
  std::string id;   ///< entity ID, frame name or chain code
  std::string name; ///< for people
  std::vector<Residue> residues;
  bool allDisulfide = false;    ///< the deposition says that all its cysteines are oxidised
  bool saysThiols = false;      ///< it says anything of the state of this one's cysteines
  std::set<std::string> bonded; ///< indices of the residues in listed disulfide bonds

  /// Whether most residues are amino acids.
  bool isProtein() const;
};

/// One assigned shift.
struct Shift {
  std::string polymer; ///< id of its polymer; may be empty
  std::string copy;    ///< which copy of the polymer in the assembly; may be empty
  std::string index;   ///< residue number as the list counts
  std::string author;  ///< residue number of the authors; may be empty
  std::string residue; ///< three-letter name in capitals
  std::string atom;
  std::string value; ///< ppm, as text
  int ambiguity = 0; ///< BMRB ambiguity code, 0 when not given
};

/// One list of assigned shifts.
struct ShiftList {
  std::string id;
  std::string name;
  std::size_t line = 0; ///< of its loop in the file
  std::vector<Shift> shifts;
};

/// What a deposition holds of interest here.
struct Deposition {
  std::string kind; ///< "NMR-STAR 3", "NMR-STAR 2.1" or "NEF"
  std::string id;   ///< accession code, or empty
  std::vector<Polymer> polymers;
  std::vector<ShiftList> lists;
  bool deuterated = false;     ///< a sample is said to hold deuterated protein
  std::size_t otherBlocks = 0; ///< data blocks of the file that hold shifts too
};

/// Recognises the kind of a file from its tags and gathers the molecules and shifts of its first
/// data block that holds shifts.
///
/// Throws ToolError(badData) when the text is no STAR file or holds no shifts.
Deposition readDeposition(std::string_view text, const std::string& file);

/// The readers of the three kinds.
Deposition readNmrStar3(const std::vector<StarFrame>& frames);
Deposition readNmrStar21(const std::vector<StarFrame>& frames);
Deposition readNef(const std::vector<StarFrame>& frames);

/// One-letter code of an amino acid's three-letter name; 'X' for any other.
char oneLetterCode(const std::string& threeLetterName);
/// Residues from one-letter text, white space apart, numbered from 1.
std::vector<Residue> residuesFromLetters(const std::string& letters);
/// Residues as far as the shifts of a list name them, with unknown ones in the gaps; for a
/// deposition without a sequence.
std::vector<Residue> residuesFromShifts(const ShiftList& list);
