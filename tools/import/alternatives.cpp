#include "tools/import/alternatives.h"

#include <algorithm>

#include "tools/import/table_text.h"

namespace {

Alternative alternative(const std::string& id, const std::string& name, std::size_t shifts,
                        bool chosen) {
  const std::string words = id + (name.empty() || name == id ? "" : " " + name) + ", " +
                            counted(shifts, "shift", "shifts");
  return {oneLine(id), oneLine(words), chosen};
}

bool isChosen(const ShiftList& list, const ChosenShifts& chosen) {
  return (list.id.empty() ? list.name : list.id) == chosen.list;
}

/// Adds what one list holds of the proteins.
void addList(const ShiftList& list, const std::vector<PolymerShifts>& all,
             const ChosenShifts& chosen, Alternatives& found) {
  for (const PolymerShifts& shifts : all) {
    const std::string& id = shifts.polymer->id;
    const bool isEntity = id == chosen.entity;
    const bool known = std::any_of(found.entities.begin(), found.entities.end(),
                                   [&id](const Alternative& other) { return other.id == id; });
    if (!known && (isEntity || areOfProtein(shifts))) {
      found.entities.push_back(alternative(id, shifts.polymer->name, shifts.rows, isEntity));
    }
    if (!isEntity) {
      continue;
    }
    found.lists.push_back(alternative(list.id.empty() ? list.name : list.id, list.name, shifts.rows,
                                      isChosen(list, chosen)));
    if (isChosen(list, chosen) && found.copies.empty()) {
      for (const auto& [copy, rows] : shifts.copies) {
        found.copies.push_back(alternative(copy, "", rows, copy == chosen.copy));
      }
    }
  }
}

} // namespace

Alternatives alternativesTo(const ChosenShifts& chosen, const Deposition& deposition) {
  Alternatives found;
  for (const ShiftList& list : deposition.lists) {
    addList(list, shiftsByPolymer(deposition, list), chosen, found);
  }
  return found;
}
