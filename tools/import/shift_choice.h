#pragma once

#include <string>
#include <vector>

#include "tools/import/deposition.h"
#include "tools/import/shift_values.h"

/// What the user chose; empty for the default.
struct Choice {
  std::string entity;
  std::string list;
  std::string copy;          ///< of the polymer, where an assembly holds several
  bool oxidisedByCb = false; ///< cysteines with a CB above 34 ppm are oxidised
};

/// One protein's shifts, ready for the table.
struct ChosenShifts {
  std::string entity, list, copy; ///< what was chosen, as `Choice` takes it
  std::vector<Residue> residues;
  std::vector<ShiftValues> values;   ///< per residue
  std::string letters;               ///< sequence, "c" for oxidised cysteine
  std::vector<std::string> authors;  ///< author number per residue
  std::vector<std::string> notes;    ///< decisions, one line each
  std::vector<std::string> warnings; ///< what may be wrong, one line each
};

/// Rows of a list that belong to one polymer.
struct PolymerShifts {
  const Polymer* polymer = nullptr;
  const ShiftList* list = nullptr;
  std::vector<const ShiftRun*> runs;                      ///< those of a certain residue
  std::size_t rows = 0;                                   ///< of these runs
  std::map<std::string, std::size_t, std::less<>> copies; ///< rows by copy in the assembly

  void add(const ShiftRun& run);
  /// Counts the shifts that name no copy to every copy that others name.
  void shareUnnamed();
};

/// Whether most residues of a polymer are amino acids, of one without a sequence those of its
/// shifts.
bool areOfProtein(const PolymerShifts& shifts);

/// The shifts of a list by polymer, of those that have any, in the order of the deposition: those
/// that name it, and those that name none that there is, where it is the only one or the first that
/// they fit.
std::vector<PolymerShifts> shiftsByPolymer(const Deposition& deposition, const ShiftList& list);

/// Chooses the polymer and the list (by default the protein and list with the most shifts), aligns
/// numbers with the sequence, names atoms as the program does and looks for what may be wrong.
///
/// `file` is for messages. Throws ToolError(badData) for a choice that is not there, a deposition
/// without protein shifts, or numbers that do not fit.
ChosenShifts chooseShifts(const Deposition& deposition, const Choice& choice,
                          const std::string& file);

/// Takes the shifts of one polymer from one list, as `chooseShifts` does when it has chosen.
ChosenShifts takePolymer(const Deposition& deposition, const PolymerShifts& shifts,
                         const Choice& choice, const std::string& file);

/// What a deposition holds: one line per polymer, then one per list, with the shifts, copies and
/// prolines of each polymer in it, temperature and pH. Fields are separated by tabs.
std::string listContents(const Deposition& deposition);
