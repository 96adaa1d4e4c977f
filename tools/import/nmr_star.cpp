#include <algorithm>
#include <map>

#include "table/number.h"
#include "tools/import/deposition.h"

namespace {

std::string capitals(std::string text) {
  for (char& c : text) {
    c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
  }
  return text;
}

/// Whether a labelling text names deuterium of the protein, as "[U-2H; U-15N]" does; the solvent's
/// does not count.
bool namesDeuterium(const std::string& labelling) {
  const std::string text = capitals(labelling);
  return text.find("2H") != std::string::npos || text.find("DEUTER") != std::string::npos;
}

/// Whether a cell points to a molecule: an entity ID, or "$" and the name of a frame.
bool isPointer(const std::string& cell) {
  return !cell.empty() && (cell[0] == '$' || (cell[0] >= '0' && cell[0] <= '9'));
}

bool saysAllOxidised(const std::string& thiolState) {
  return capitals(thiolState).find("ALL DISULFIDE") != std::string::npos;
}

Polymer& polymerOf(Deposition& deposition, const std::string& id) {
  for (Polymer& polymer : deposition.polymers) {
    if (polymer.id == id) {
      return polymer;
    }
  }
  deposition.polymers.emplace_back();
  deposition.polymers.back().id = id;
  return deposition.polymers.back();
}

/// Where a sample's components point to molecules, only those count: heavy water and buffers are
/// deuterated in many samples whose protein is not.
void noteLabelling(const StarLoop& loop, const char* labellingTag, const char* pointerTag,
                   Deposition& deposition) {
  const int labelling = loop.column({labellingTag});
  const int pointer = loop.column({pointerTag});
  bool pointed = false;
  for (std::size_t row = 0; row < loop.rows(); ++row) {
    pointed = pointed || isPointer(loop.value(row, pointer));
  }
  for (std::size_t row = 0; row < loop.rows(); ++row) {
    const bool counts = !pointed || isPointer(loop.value(row, pointer));
    deposition.deuterated =
        deposition.deuterated || (counts && namesDeuterium(loop.value(row, labelling)));
  }
}

/// Adds the cysteines of `_Bond` rows that tie two sulfurs.
void addBonds3(const StarLoop& loop, Deposition& deposition) {
  const int type = loop.column({"_bond.type"});
  const int atoms[] = {loop.column({"_bond.atom_id_1"}), loop.column({"_bond.atom_id_2"})};
  const int entities[] = {loop.column({"_bond.entity_id_1"}), loop.column({"_bond.entity_id_2"})};
  const int indices[] = {loop.column({"_bond.comp_index_id_1", "_bond.seq_id_1"}),
                         loop.column({"_bond.comp_index_id_2", "_bond.seq_id_2"})};
  for (std::size_t row = 0; row < loop.rows(); ++row) {
    const bool sulfurs =
        capitals(loop.value(row, atoms[0])) == "SG" && capitals(loop.value(row, atoms[1])) == "SG";
    if (sulfurs || capitals(loop.value(row, type)) == "DISULFIDE") {
      for (const int end : {0, 1}) {
        polymerOf(deposition, loop.value(row, entities[end]))
            .bonded.insert(loop.value(row, indices[end]));
      }
    }
  }
}

/// Adds residues of `_Entity_comp_index` or `_Entity_poly_seq`.
void addSequence3(const StarLoop& loop, const std::string& frameEntity, Deposition& deposition) {
  const int name = loop.column({"_entity_comp_index.comp_id", "_entity_poly_seq.mon_id"});
  const int index = loop.column({"_entity_comp_index.id", "_entity_poly_seq.comp_index_id"});
  const int author = loop.column({"_entity_comp_index.auth_seq_id"});
  const int entity = loop.column({"_entity_comp_index.entity_id", "_entity_poly_seq.entity_id"});
  if (name < 0 || index < 0) {
    return;
  }
  const bool polymerLoop = loop.column({"_entity_poly_seq.mon_id"}) >= 0;
  for (std::size_t row = 0; row < loop.rows(); ++row) {
    const std::string& named = loop.value(row, entity);
    Polymer& polymer = polymerOf(deposition, named.empty() ? frameEntity : named);
    if (polymerLoop && !polymer.residues.empty() && row == 0) {
      return; // the component index said it already
    }
    polymer.residues.push_back(
        {loop.value(row, index), loop.value(row, author), capitals(loop.value(row, name))});
  }
}

void addShifts3(const StarFrame& frame, const StarLoop& loop, Deposition& deposition) {
  const int entity = loop.column({"_atom_chem_shift.entity_id"});
  const int copy = loop.column({"_atom_chem_shift.entity_assembly_id"});
  const int index = loop.column({"_atom_chem_shift.comp_index_id", "_atom_chem_shift.seq_id"});
  const int sequence = loop.column({"_atom_chem_shift.seq_id"});
  const int author = loop.column({"_atom_chem_shift.auth_seq_id"});
  const int residue = loop.column({"_atom_chem_shift.comp_id"});
  const int atom = loop.column({"_atom_chem_shift.atom_id"});
  const int value = loop.column({"_atom_chem_shift.val"});
  const int ambiguity = loop.column({"_atom_chem_shift.ambiguity_code"});
  const int listId = loop.column({"_atom_chem_shift.assigned_chem_shift_list_id"});
  ShiftList list;
  list.line = loop.line;
  list.name = frame.name;
  list.id = frame.tag({"_assigned_chem_shift_list.id"});
  for (std::size_t row = 0; row < loop.rows(); ++row) {
    Shift shift;
    shift.polymer = loop.value(row, entity);
    shift.copy = loop.value(row, copy);
    shift.index =
        loop.value(row, index).empty() ? loop.value(row, sequence) : loop.value(row, index);
    shift.author = loop.value(row, author);
    shift.residue = capitals(loop.value(row, residue));
    shift.atom = capitals(loop.value(row, atom));
    shift.value = loop.value(row, value);
    shift.ambiguity = parseInt(loop.value(row, ambiguity));
    list.id = list.id.empty() ? loop.value(row, listId) : list.id;
    list.shifts.push_back(shift);
  }
  if (!list.shifts.empty()) {
    deposition.lists.push_back(list);
  }
}

void addEntityTags3(const StarFrame& frame, Deposition& deposition) {
  const std::string letters =
      frame.tag({"_entity.polymer_seq_one_letter_code_can", "_entity.polymer_seq_one_letter_code"});
  const std::string id = frame.tag({"_entity.id"});
  if (id.empty() && letters.empty()) {
    return;
  }
  Polymer& polymer = polymerOf(deposition, id);
  polymer.name = frame.tag({"_entity.name", "_entity.sf_framecode"});
  const std::string thiols = frame.tag({"_entity.thiol_state"});
  polymer.allDisulfide = saysAllOxidised(thiols);
  polymer.saysThiols =
      !thiols.empty() && capitals(thiols).find("NOT REPORTED") == std::string::npos;
  if (polymer.residues.empty()) {
    polymer.residues = residuesFromLetters(letters);
  }
}

/// The molecule frame that a component of the system stands for, by component name.
std::map<std::string, std::string> componentFrames(const std::vector<StarFrame>& frames) {
  std::map<std::string, std::string> molecules;
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      const int component = loop.column({"_mol_system_component_name"});
      const int label = loop.column({"_mol_label"});
      for (std::size_t row = 0; component >= 0 && label >= 0 && row < loop.rows(); ++row) {
        const std::string& pointer = loop.value(row, label);
        molecules[loop.value(row, component)] =
            pointer.empty() || pointer[0] != '$' ? pointer : pointer.substr(1);
      }
    }
  }
  return molecules;
}

void addMolecule21(const StarFrame& frame, Deposition& deposition) {
  Polymer polymer;
  polymer.id = frame.name;
  polymer.name = frame.tag({"_name_common", "_molecular_system_name", "_saveframe_category"});
  polymer.allDisulfide = saysAllOxidised(frame.tag({"_mol_thiol_state"}));
  for (const StarLoop& loop : frame.loops) {
    const int index = loop.column({"_residue_seq_code"});
    const int author = loop.column({"_residue_author_seq_code"});
    const int name = loop.column({"_residue_label"});
    for (std::size_t row = 0; index >= 0 && name >= 0 && row < loop.rows(); ++row) {
      polymer.residues.push_back(
          {loop.value(row, index), loop.value(row, author), capitals(loop.value(row, name))});
    }
  }
  if (polymer.residues.empty()) {
    polymer.residues = residuesFromLetters(frame.tag({"_mol_residue_sequence"}));
  }
  deposition.polymers.push_back(polymer);
}

void addShifts21(const StarFrame& frame, const StarLoop& loop,
                 const std::map<std::string, std::string>& molecules, Deposition& deposition) {
  const int index = loop.column({"_residue_seq_code"});
  const int author = loop.column({"_residue_author_seq_code"});
  const int residue = loop.column({"_residue_label"});
  const int atom = loop.column({"_atom_name"});
  const int value = loop.column({"_chem_shift_value"});
  const int ambiguity = loop.column({"_chem_shift_ambiguity_code"});
  const std::string component = frame.tag({"_mol_system_component_name"});
  const auto molecule = molecules.find(component);
  ShiftList list;
  list.line = loop.line;
  list.name = frame.name;
  list.id = std::to_string(deposition.lists.size() + 1);
  for (std::size_t row = 0; row < loop.rows(); ++row) {
    Shift shift;
    shift.polymer = molecule == molecules.end() ? "" : molecule->second;
    shift.index = loop.value(row, index);
    shift.author = loop.value(row, author);
    shift.residue = capitals(loop.value(row, residue));
    shift.atom = capitals(loop.value(row, atom));
    shift.value = loop.value(row, value);
    shift.ambiguity = parseInt(loop.value(row, ambiguity));
    list.shifts.push_back(shift);
  }
  if (!list.shifts.empty()) {
    deposition.lists.push_back(list);
  }
}

} // namespace

Deposition readNmrStar3(const std::vector<StarFrame>& frames) {
  Deposition deposition;
  deposition.kind = "NMR-STAR 3";
  bool assemblyOxidised = false;
  for (const StarFrame& frame : frames) {
    const std::string id = frame.tag({"_entry.id"});
    deposition.id = id.empty() ? deposition.id : id;
    for (const StarLoop& loop : frame.loops) {
      addSequence3(loop, frame.tag({"_entity.id"}), deposition);
      if (loop.column({"_atom_chem_shift.val"}) >= 0) {
        addShifts3(frame, loop, deposition);
      }
      if (loop.column({"_bond.id", "_bond.type"}) >= 0) {
        addBonds3(loop, deposition);
      }
      noteLabelling(loop, "_sample_component.isotopic_labeling", "_sample_component.entity_id",
                    deposition);
    }
    addEntityTags3(frame, deposition);
    assemblyOxidised = assemblyOxidised || saysAllOxidised(frame.tag({"_assembly.thiol_state"}));
  }
  for (Polymer& polymer : deposition.polymers) {
    polymer.allDisulfide = polymer.allDisulfide || (assemblyOxidised && !polymer.saysThiols);
  }
  return deposition;
}

Deposition readNmrStar21(const std::vector<StarFrame>& frames) {
  Deposition deposition;
  deposition.kind = "NMR-STAR 2.1";
  const std::map<std::string, std::string> molecules = componentFrames(frames);
  for (const StarFrame& frame : frames) {
    const std::string id = frame.tag({"_bmrb_accession_number"});
    deposition.id = id.empty() ? deposition.id : id;
    if (!frame.tag({"_mol_polymer_class", "_mol_residue_sequence"}).empty()) {
      addMolecule21(frame, deposition);
    }
    for (const StarLoop& loop : frame.loops) {
      // Loops of reference compounds have values, but no residues.
      if (loop.column({"_chem_shift_value"}) >= 0 && loop.column({"_residue_seq_code"}) >= 0) {
        addShifts21(frame, loop, molecules, deposition);
      }
      noteLabelling(loop, "_isotopic_labeling", "_mol_label", deposition);
    }
  }
  return deposition;
}
