#include <algorithm>

#include "tools/common/tool.h"
#include "tools/import/shift_choice.h"
#include "tools/import/table_text.h"

namespace {

/// "copies 1 (506 shifts), 2 (480 shifts)"; empty text where there is one without a name.
std::string copiesText(const PolymerShifts& shifts) {
  std::string text;
  for (const auto& [copy, rows] : shifts.copies) {
    if (!copy.empty()) {
      text += (text.empty() ? (shifts.copies.size() > 1 ? ", copies " : ", copy ") : ", ") + copy +
              " (" + counted(rows, "shift", "shifts") + ")";
    }
  }
  return text;
}

/// "8 prolines, 7 with CB, 7 with CG" of what would be imported.
std::string prolinesText(const Deposition& deposition, const PolymerShifts& shifts) {
  std::size_t prolines = 0;
  std::size_t withCb = 0;
  std::size_t withCg = 0;
  try {
    const ChosenShifts chosen = takePolymer(deposition, shifts, Choice(), "");
    for (std::size_t i = 0; i < chosen.letters.size(); ++i) {
      const bool proline = chosen.letters[i] == 'P';
      prolines += proline ? 1U : 0U;
      withCb += proline && present(chosen.values[i][atomCb]) ? 1U : 0U;
      withCg += proline && present(chosen.values[i][atomCg]) ? 1U : 0U;
    }
  } catch (const ToolError&) {
    return ", does not fit the sequence";
  }
  return ", " + counted(prolines, "proline", "prolines") + ", " + std::to_string(withCb) +
         " with CB, " + std::to_string(withCg) + " with CG";
}

/// One line about a molecule.
std::string polymerText(const Polymer& polymer) {
  if (polymer.guessed) {
    return "entity " + oneLine(polymer.id) + "\tno sequence\tunknown\t\t" + oneLine(polymer.name) +
           "\n";
  }
  const auto prolines = std::count_if(polymer.residues.begin(), polymer.residues.end(),
                                      [](const Residue& residue) { return residue.name == "PRO"; });
  return "entity " + oneLine(polymer.id) + "\t" +
         counted(polymer.residues.size(), "residue", "residues") + "\t" +
         (polymer.isProtein() ? "protein" : "other") + "\t" +
         counted(static_cast<std::size_t>(prolines), "proline", "prolines") + "\t" +
         oneLine(polymer.name) + "\n";
}

} // namespace

std::string listContents(const Deposition& deposition) {
  std::string text = deposition.kind + " " + oneLine(deposition.id) + "\n";
  for (const Polymer& polymer : deposition.polymers) {
    text += polymerText(polymer);
  }
  for (const ShiftList& list : deposition.lists) {
    text += "list " + oneLine(list.id) + "\t" + counted(list.rows, "shift", "shifts");
    for (const PolymerShifts& shifts : shiftsByPolymer(deposition, list)) {
      text += "\tentity " + oneLine(shifts.polymer->id) + ": " +
              counted(shifts.rows, "shift", "shifts") + oneLine(copiesText(shifts)) +
              (areOfProtein(shifts) ? prolinesText(deposition, shifts) : "");
    }
    text += (list.conditions.empty() ? "" : "\t" + oneLine(list.conditions)) + "\t" +
            oneLine(list.name) + "\n";
  }
  return text;
}
