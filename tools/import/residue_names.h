#pragma once

#include <functional>
#include <map>
#include <string_view>
#include <unordered_map>

#include "tools/import/deposition.h"

/// Residues that are called otherwise than by three-letter name and plain number: by one letter, by
/// number alone, by numbers that a program for tables has written.

/// A residue number as it is counted: without "+", leading zeros, and the ".0" that programs for
/// tables append. Other texts as they are.
std::string_view plainCount(std::string_view text);

/// Gives the residues of all polymers plain numbers and, where one-letter names can only be amino
/// acids, three-letter names. "A", "C", "G", "T", "U" alone are nucleotides.
void tidyResidues(Deposition& deposition);

/// Moves to the next row of a loop of shifts; false when there is none.
using NextShift = std::function<bool(ListedShift&)>;

/// Adds the rows of a loop to a list. One-letter names become three-letter ones as above. A loop
/// that names no residue at all gets the names that its numbers have in the sequences, counted as
/// they or as the authors do, whichever finds more of them; none when glycines would then have a CB
/// and prolines an HN.
///
/// \param open  goes to the first row, again each time
/// \param deposition  with all its residues, tidy; the names point there
void addShifts(const std::function<NextShift()>& open, const Deposition& deposition,
               ShiftList& list);
