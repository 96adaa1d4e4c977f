#include <algorithm>

#include "tools/import/amino_acids.h"
#include "tools/import/deposition.h"
#include "tools/import/residue_names.h"

namespace {

/// The name of the save frame that a cell points to.
std::string frameName(std::string_view pointer) {
  return std::string(!pointer.empty() && pointer[0] == '$' ? pointer.substr(1) : pointer);
}

/// The molecule frame that a component of the system stands for, by component name.
std::map<std::string, std::string> componentFrames(const StarDocument& document,
                                                   const StarBlock& frames) {
  std::map<std::string, std::string> molecules;
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      const int component = loop.column({"_mol_system_component_name"});
      const int label = loop.column({"_mol_label"});
      if (component < 0 || label < 0 || !loop.broken.empty()) {
        continue;
      }
      StarRows rows(document, loop, {component, label});
      while (rows.next()) {
        molecules[std::string(rows[0])] = frameName(rows[1]);
      }
    }
  }
  return molecules;
}

/// Whether a loop lists residues and nothing of them: loops of shifts, couplings and the like name
/// residues too.
bool isSequence(const StarLoop& loop) {
  return loop.has("_residue_seq_code") && loop.has("_residue_label") &&
         std::all_of(loop.tags.begin(), loop.tags.end(), [](const std::string& tag) {
           return tag == "_residue_seq_code" || tag == "_residue_label" ||
                  tag == "_residue_author_seq_code" || tag == "_residue_name";
         });
}

void addMolecule(const StarDocument& document, const StarFrame& frame, Deposition& deposition) {
  Polymer polymer;
  polymer.id = frame.name;
  polymer.name = frame.tag({"_name_common", "_molecular_system_name", "_saveframe_category"});
  const std::string thiols = frame.tag({"_mol_thiol_state"});
  polymer.allDisulfide = wording::allOxidised(thiols);
  polymer.saysThiols = wording::saysThiols(thiols);
  const std::string letters = frame.tag({"_mol_residue_sequence"});
  for (const StarLoop& loop : frame.loops) {
    const bool spare = !loop.broken.empty() && !letters.empty();
    if (!isSequence(loop) || spare || !polymer.residues.empty()) {
      continue;
    }
    StarRows rows(document, loop,
                  {loop.column({"_residue_seq_code"}), loop.column({"_residue_author_seq_code"}),
                   loop.column({"_residue_label"})});
    while (rows.next()) {
      polymer.residues.push_back({std::string(rows[0]), std::string(rows[1]), capitals(rows[2])});
    }
  }
  if (polymer.residues.empty()) {
    polymer.residues = residuesFromLetters(letters);
  }
  deposition.polymers.push_back(std::move(polymer));
}

bool isMolecule(const StarFrame& frame) {
  return !frame.tag({"_mol_polymer_class", "_mol_residue_sequence"}).empty() ||
         std::any_of(frame.loops.begin(), frame.loops.end(), isSequence);
}

/// Loops of reference compounds have values, but no residues.
bool isShifts(const StarLoop& loop) {
  return loop.has("_chem_shift_value") &&
         (loop.has("_residue_seq_code") || loop.has("_residue_author_seq_code"));
}

std::map<std::string, std::string> allConditions(const StarDocument& document,
                                                 const StarBlock& frames) {
  std::map<std::string, std::string> conditions;
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      if (loop.has("_variable_type") && loop.broken.empty()) {
        conditions[frame.name] = readConditions(document, loop, "_variable_type", "_variable_value",
                                                "_variable_value_units");
      }
    }
  }
  return conditions;
}

ShiftList readShifts(const StarDocument& document, const StarFrame& frame, const StarLoop& loop,
                     const std::map<std::string, std::string>& molecules,
                     const Deposition& deposition) {
  const std::string component = frame.tag({"_mol_system_component_name"});
  const auto named = molecules.find(component);
  // The polymers are complete by now: their texts stay where they are.
  const Polymer* const molecule =
      deposition.known(named == molecules.end() ? component : named->second);
  const std::string_view id = molecule == nullptr ? std::string_view() : molecule->id;
  ShiftList list;
  list.line = loop.line;
  list.name = frame.name;
  list.id = std::to_string(deposition.lists.size() + 1);
  const auto open = [&]() -> NextShift {
    StarRows rows(document, loop,
                  {loop.column({"_residue_seq_code"}), loop.column({"_residue_author_seq_code"}),
                   loop.column({"_residue_label"}), loop.column({"_atom_name"}),
                   loop.column({"_chem_shift_value"}),
                   loop.column({"_chem_shift_ambiguity_code", "_chem_shift_ambiguity_type"})});
    return [id, rows](ListedShift& row) mutable {
      const bool found = rows.next();
      row = {id,      {},     rows[0].empty() ? rows[1] : rows[0], rows[1], rows[2], rows[3],
             rows[4], rows[5]};
      return found;
    };
  };
  addShifts(open, deposition, list);
  return list;
}

} // namespace

Deposition readNmrStar21(const StarDocument& document, const StarBlock& frames) {
  Deposition deposition;
  deposition.kind = "NMR-STAR 2.1";
  bool systemOxidised = false;
  for (const StarFrame& frame : frames) {
    const std::string id = frame.tag({"_bmrb_accession_number"});
    deposition.id = id.empty() ? deposition.id : id;
    systemOxidised = systemOxidised || wording::allOxidised(frame.tag({"_system_thiol_state"}));
    if (isMolecule(frame)) {
      addMolecule(document, frame, deposition);
    }
  }
  sortResidues(deposition);
  tidyResidues(deposition);
  const std::map<std::string, std::string> molecules = componentFrames(document, frames);
  std::map<std::string, std::string> conditions = allConditions(document, frames);
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      if (isShifts(loop)) {
        ShiftList list = readShifts(document, frame, loop, molecules, deposition);
        list.conditions = conditions[frameName(frame.tag({"_sample_conditions_label"}))];
        deposition.add(std::move(list));
      }
      noteLabelling(document, loop, "_isotopic_labeling", "_mol_label", deposition);
    }
  }
  for (Polymer& polymer : deposition.polymers) {
    polymer.allDisulfide = polymer.allDisulfide || (systemOxidised && !polymer.saysThiols);
  }
  return deposition;
}
