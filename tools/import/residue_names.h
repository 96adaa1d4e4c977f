#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "tools/import/deposition.h"

/// Residues that are called otherwise than by three-letter name and plain number: by one letter, by
/// number alone, by numbers that a program for tables has written.

/// A residue number as it is counted: without "+", leading zeros, and the ".0" that programs for
/// tables append. Other texts as they are.
std::string_view plainCount(std::string_view text);

/// Residues from one-letter text, numbered from 1; what is no letter is skipped. A name in
/// parentheses, as in "A(MSE)G", is one residue. A line that begins with ">", as in files of
/// sequences, is a title. Text of nothing but three-letter names, as in "Met-Ser-Pro", is read as
/// such.
std::vector<Residue> residuesFromLetters(std::string_view letters);

/// Sorts residues that are listed out of order, as programs do that sort numbers as text.
///
/// \param numbers  of the residues along the sequence; nothing is done unless they are whole
///                 numbers that count on without a gap
/// \return whether anything was moved
bool sortByNumber(std::vector<Residue>& residues, const std::vector<std::string>& numbers);

/// What to say of it.
std::string outOfOrder(const Polymer& polymer);

/// Sorts the residues of all polymers by their own numbers, where these are a count, and takes out
/// those that are listed twice. Problems of the deposition tell of it.
void sortResidues(Deposition& deposition);

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
