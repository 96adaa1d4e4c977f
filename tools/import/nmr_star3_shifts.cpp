#include "tools/import/nmr_star3_shifts.h"

#include <algorithm>

#include "tools/import/residue_names.h"

namespace {

/// The polymer of a row: the entity that it names, else that of its copy.
std::string_view polymerOf(const ListedShift& row,
                           const std::map<std::string, std::string, std::less<>>& entities,
                           const std::set<std::string_view>& known) {
  if (known.count(row.polymer) > 0) {
    return row.polymer;
  }
  const auto entity = entities.find(row.copy);
  return entity == entities.end() ? row.polymer : std::string_view(entity->second);
}

/// Whether chains stand for the copies that a loop of shifts does not name.
bool chainsAreCopies(const StarDocument& document, const StarLoop& loop) {
  StarRows rows(document, loop,
                {loop.column({"_atom_chem_shift.entity_assembly_id"}),
                 loop.column({"_atom_chem_shift.auth_asym_id"})});
  while (rows.next()) {
    if (!rows[0].empty() || rows[1].empty()) {
      return false;
    }
  }
  return true;
}

/// Whether the authors' numbers are the only ones. Where a few rows lack the other, they are of no
/// certain residue: the two kinds of numbers must not be mixed.
bool hasAuthorsNumbersOnly(const StarDocument& document, const StarLoop& loop) {
  StarRows rows(
      document, loop,
      {loop.column({"_atom_chem_shift.comp_index_id"}), loop.column({"_atom_chem_shift.seq_id"})});
  while (rows.next()) {
    if (!rows[0].empty() || !rows[1].empty()) {
      return false;
    }
  }
  return true;
}

/// The first value that is there: many files say a thing once, as the database or as the authors.
std::string_view firstOf(std::initializer_list<std::string_view> values) {
  const auto* const found = std::find_if(values.begin(), values.end(),
                                         [](std::string_view value) { return !value.empty(); });
  return found == values.end() ? std::string_view() : *found;
}

} // namespace

int star3ValueColumn(const StarLoop& loop) {
  return loop.column({"_atom_chem_shift.val", "_atom_chem_shift.chem_shift_val"});
}

ShiftList readStar3Shifts(const StarDocument& document, const StarFrame& frame,
                          const StarLoop& loop, const Deposition& deposition) {
  const auto column = [&loop](const char* name) {
    return loop.column({(std::string("_atom_chem_shift.") + name).c_str()});
  };
  const StarRows rows(document, loop,
                      {column("entity_id"), column("entity_assembly_id"), column("comp_index_id"),
                       column("seq_id"), column("auth_seq_id"), column("comp_id"),
                       column("auth_comp_id"), column("atom_id"), column("auth_atom_id"),
                       star3ValueColumn(loop),
                       loop.column({"_atom_chem_shift.ambiguity_code",
                                    "_atom_chem_shift.chem_shift_ambiguity_code"}),
                       column("assigned_chem_shift_list_id"), column("auth_asym_id")});
  std::set<std::string_view> known;
  for (const Polymer& polymer : deposition.polymers) {
    if (!polymer.residues.empty()) {
      known.insert(polymer.id);
    }
  }
  const bool chains = chainsAreCopies(document, loop);
  const bool authors = hasAuthorsNumbersOnly(document, loop);
  ShiftList list;
  list.line = loop.line;
  list.name = frame.name;
  list.id = frame.tag({"_assigned_chem_shift_list.id"});
  const auto next = [&, own = rows](ListedShift& row) mutable {
    if (!own.next()) {
      return false;
    }
    row = {own[0],
           chains ? own[12] : own[1],
           authors ? own[4] : firstOf({own[2], own[3]}),
           own[4],
           firstOf({own[5], own[6]}),
           firstOf({own[7], own[8]}),
           own[9],
           own[10]};
    row.polymer = polymerOf(row, deposition.copyEntities, known);
    list.id = list.id.empty() ? std::string(own[11]) : list.id;
    return true;
  };
  addShifts([&next] { return NextShift(next); }, deposition, list);
  return list;
}
