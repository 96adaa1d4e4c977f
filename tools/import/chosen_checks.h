#pragma once

#include "tools/import/numbering.h"
#include "tools/import/shift_choice.h"

/// What is said of shifts that were chosen; each adds to their warnings and notes.

/// A sequence that was guessed, residues that have numbers only, numbers that were moved, residues
/// named otherwise than by the sequence.
void warnOfNumbers(const Polymer& polymer, bool namedBySequence,
                   const std::vector<const ShiftRun*>& runs, const Numbering& numbering,
                   ChosenShifts& chosen);
/// Shifts of no certain residue.
void warnOfStrays(const ShiftList& list, ChosenShifts& chosen);
/// What was left out or is doubtful, by residue and atom.
void warnOfShifts(const TakenShifts& taken, ChosenShifts& chosen);
/// Prolines whose CB and CG are both the same as another's: they were probably copied.
void warnOfCopies(ChosenShifts& chosen);
/// Nuclei without any shift; the prolines are counted.
void warnOfMissingNuclei(ChosenShifts& chosen);

/// Marks oxidised cysteines, by what the deposition says or, on request, by their CB; without it
/// those left are pointed out.
void markCysteines(const Polymer& polymer, bool byCb, ChosenShifts& chosen);
