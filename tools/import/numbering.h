#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/import/deposition.h"

/// Which residue of a polymer each run of shifts belongs to.
struct Numbering {
  std::vector<int> positions; ///< per run, 1 to the number of residues; 0 when none
  std::string way;            ///< for people: how the numbers were read
  bool authors = false;       ///< whether the shifts count as the authors do
  bool moved = false;         ///< whether numbers had to be moved to agree
  std::size_t misfits = 0;    ///< residues whose names differ
  std::size_t fits = 0;       ///< residues whose names agree
};

/// Aligns the residue numbers of some shifts with residues by residue names: as the deposition's
/// own count, as authors' numbers, moved by a constant, or moved by constants that change along the
/// sequence, whichever fits best, the earlier where two fit as well.
Numbering alignNumbers(const std::vector<Residue>& residues,
                       const std::vector<const ShiftRun*>& runs);

/// Whether the names agree well enough: one residue in twenty may bear another name, and one in any
/// case where numbers did not have to be moved and three agree.
bool fitsWell(const Numbering& numbering);

/// Whether a text is a decimal number of at most eight characters and nothing else.
bool isPlainNumber(std::string_view text);

/// Whether a shift's residue name is that of a residue, under whichever of its names.
bool namesAgree(const ShiftRun& run, const Residue& residue);

/// Gives each residue without an author number one that counts on from the nearest before it that
/// has one, else back from the first after it; its index where none has a plain number.
void fillAuthors(const std::vector<Residue>& residues, std::vector<std::string>& authors);

/// How far the number of each listed residue lies from its position along the sequence, when that
/// may change from residue to residue at a price; for authors' numbers that jump.
///
/// \param listed  a run of each number
/// \return the distance for each listed number, all of them positions inside of the polymer or not
std::map<int, long long> distancesWithJumps(const std::vector<Residue>& residues,
                                            const std::map<int, const ShiftRun*>& listed);
