#pragma once

#include <string>

#include "tools/import/shift_choice.h"

/// The input table of the program: residues renumbered from 1, with remarks that say where the
/// shifts come from and what was decided.
std::string tableText(const Deposition& deposition, const ChosenShifts& chosen,
                      const std::string& source);

/// The way back to the authors' numbers: a header line, then table number, author number and
/// one-letter name of each residue, tab-separated.
std::string mapText(const ChosenShifts& chosen);

/// The text as one line: control characters, which a deposition may hold, become blanks.
std::string oneLine(std::string text);
