#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/import/deposition.h"
#include "tools/import/places.h"

/// Shifts of one residue in the order of `tableAtoms`, ppm; not-a-number where there is none.
using ShiftValues = std::array<double, tableAtoms.size()>;

/// Shifts of all residues, and what was met on the way.
struct TakenShifts {
  /// \param letters  the sequence; must outlive this
  explicit TakenShifts(const std::string& letters);

  std::vector<ShiftValues> values;
  Places placeholders; ///< values that stand for no shift, left out
  Places noNumbers;    ///< left out
  Places impossible;   ///< left out
  Places forms;        ///< residues of which one of several forms was taken
  Places twice;        ///< atoms with two different shifts, of which the first was taken
  Places ambiguous;
  Places unusual;
};

/// Takes one shift for each atom of each residue.
///
/// Where a proline has two forms in a list, the one with more shifts is taken whole, the first of
/// equals; its CB and CG are never of different forms. Elsewhere the first shift of an atom counts.
///
/// \param positions  of the runs, as `Numbering` gives them
TakenShifts takeShifts(const std::string& letters, const ShiftList& list,
                       const std::vector<const ShiftRun*>& runs, const std::vector<int>& positions);

/// Whether there is a shift.
bool present(double shift);

/// A shift in a message, seven digits at most.
std::string numberText(double shift);

/// "PRO 18", a residue as the list of shifts calls it.
std::string residueLabel(const ShiftRun& run);
