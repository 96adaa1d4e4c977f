#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "tools/import/deposition.h"
#include "tools/import/numbering.h"

/// Atoms that the program reads, in the order in which the table lists them.
constexpr std::array<const char*, 9> tableAtoms = {"N", "HN", "HA", "HA2", "HA3",
                                                   "C", "CA", "CB", "CG"};

/// What the user chose; empty for the default.
struct Choice {
  std::string entity;
  std::string list;
  std::string copy;          ///< of the polymer, where an assembly holds several
  bool oxidisedByCb = false; ///< cysteines with a CB above 34 ppm are oxidised
};

/// One protein's shifts, ready for the table.
struct ChosenShifts {
  Polymer polymer;
  ShiftList list;
  std::vector<std::map<std::string, std::string>> values; ///< per residue, ppm by atom
  std::string letters;                                    ///< sequence, "c" for oxidised cysteine
  std::vector<std::string> authors;                       ///< author number per residue
  std::vector<std::string> notes;                         ///< decisions, one line each
  std::vector<std::string> warnings;                      ///< what may be wrong, one line each
};

/// Chooses the polymer and the list (by default the protein and list with the most shifts), aligns
/// numbers with the sequence, names atoms as the program does and looks for what may be wrong.
///
/// `file` is for messages. Throws ToolError(badData) for a choice that is not there, a deposition
/// without protein shifts, or numbers that do not fit.
ChosenShifts chooseShifts(const Deposition& given, const Choice& choice, const std::string& file);

/// What a deposition holds, one line per polymer and per list, with their shifts counted.
std::string listContents(const Deposition& given);
