#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/import/deposition.h"

/// Which residue of a polymer each shift belongs to.
struct Numbering {
  std::vector<int> positions; ///< per shift, 1 to the number of residues; 0 when none
  std::string way;            ///< for people: how the numbers were read
  bool authors = false;       ///< whether the shifts count as the authors do
  std::size_t misfits = 0;    ///< residues whose names differ
  std::size_t fits = 0;       ///< residues whose names agree
};

/// Aligns the residue numbers of some shifts with a polymer by residue names: as the deposition's
/// own count, as authors' numbers, moved by a constant, or moved by constants that change along the
/// sequence, whichever fits best, the earlier where two fit as well.
///
/// One residue in twenty may bear another name. Throws ToolError(badData) when none fits so well;
/// `place` begins the message.
Numbering alignNumbers(const Polymer& polymer, const std::vector<Shift>& shifts,
                       const std::string& place);

/// Gives each residue without an author number one that counts on from the nearest before it that
/// has one, else back from the first after it; its index where none has a plain number.
void fillAuthors(const Polymer& polymer, std::vector<std::string>& authors);

/// How far the number of each listed residue lies from its position along the sequence, when that
/// may change from residue to residue at a price; for authors' numbers that jump.
///
/// \param listed  names by number
/// \return the distance for each listed number, all of them positions inside of the polymer or not
std::map<int, long long> distancesWithJumps(const Polymer& polymer,
                                            const std::map<int, std::string>& listed);
