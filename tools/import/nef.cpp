#include "tools/import/deposition.h"

namespace {

void addSequence(const StarLoop& loop, Deposition& deposition) {
  const int chain = loop.column({"_nef_sequence.chain_code"});
  const int number = loop.column({"_nef_sequence.sequence_code"});
  const int name = loop.column({"_nef_sequence.residue_name"});
  for (std::size_t row = 0; number >= 0 && name >= 0 && row < loop.rows(); ++row) {
    const std::string& id = loop.value(row, chain);
    if (deposition.polymers.empty() || deposition.polymers.back().id != id) {
      deposition.polymers.emplace_back();
      deposition.polymers.back().id = id;
      deposition.polymers.back().name = "chain " + id;
    }
    deposition.polymers.back().residues.push_back(
        {loop.value(row, number), loop.value(row, number), loop.value(row, name)});
  }
}

/// Adds the cysteines of links between two sulfurs.
void addLinks(const StarLoop& loop, Deposition& deposition) {
  const int atoms[] = {loop.column({"_nef_covalent_links.atom_name_1"}),
                       loop.column({"_nef_covalent_links.atom_name_2"})};
  const int chains[] = {loop.column({"_nef_covalent_links.chain_code_1"}),
                        loop.column({"_nef_covalent_links.chain_code_2"})};
  const int numbers[] = {loop.column({"_nef_covalent_links.sequence_code_1"}),
                         loop.column({"_nef_covalent_links.sequence_code_2"})};
  for (std::size_t row = 0; row < loop.rows(); ++row) {
    if (loop.value(row, atoms[0]) != "SG" || loop.value(row, atoms[1]) != "SG") {
      continue;
    }
    for (Polymer& polymer : deposition.polymers) {
      for (const int end : {0, 1}) {
        if (polymer.id == loop.value(row, chains[end])) {
          polymer.bonded.insert(loop.value(row, numbers[end]));
        }
      }
    }
  }
}

void addShifts(const StarFrame& frame, const StarLoop& loop, Deposition& deposition) {
  const int chain = loop.column({"_nef_chemical_shift.chain_code"});
  const int number = loop.column({"_nef_chemical_shift.sequence_code"});
  const int residue = loop.column({"_nef_chemical_shift.residue_name"});
  const int atom = loop.column({"_nef_chemical_shift.atom_name"});
  const int value = loop.column({"_nef_chemical_shift.value"});
  ShiftList list;
  list.line = loop.line;
  list.name = frame.name;
  list.id = std::to_string(deposition.lists.size() + 1);
  for (std::size_t row = 0; value >= 0 && row < loop.rows(); ++row) {
    Shift shift;
    shift.polymer = loop.value(row, chain);
    shift.index = loop.value(row, number);
    shift.author = shift.index;
    shift.residue = loop.value(row, residue);
    shift.atom = loop.value(row, atom);
    shift.value = loop.value(row, value);
    list.shifts.push_back(shift);
  }
  if (!list.shifts.empty()) {
    deposition.lists.push_back(list);
  }
}

} // namespace

Deposition readNef(const std::vector<StarFrame>& frames) {
  Deposition deposition;
  deposition.kind = "NEF";
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      addSequence(loop, deposition);
      if (loop.column({"_nef_chemical_shift.value"}) >= 0) {
        addShifts(frame, loop, deposition);
      }
    }
  }
  for (const StarFrame& frame : frames) { // now that every chain is known
    for (const StarLoop& loop : frame.loops) {
      addLinks(loop, deposition);
    }
  }
  return deposition;
}
