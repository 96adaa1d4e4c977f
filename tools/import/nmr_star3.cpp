#include <algorithm>

#include "tools/import/amino_acids.h"
#include "tools/import/deposition.h"
#include "tools/import/nmr_star3_shifts.h"
#include "tools/import/residue_names.h"

namespace {

/// How copies in the assembly belong to entities.
using CopyEntities = std::map<std::string, std::string, std::less<>>;

/// A loop that helps where it is there and can be read.
bool usable(const StarLoop& loop, const char* tag) {
  return loop.has(tag) && loop.broken.empty();
}

/// Adds residues of `_Entity_comp_index` or `_Entity_poly_seq` to entities that have none yet from
/// another loop.
void addSequence(const StarDocument& document, const StarLoop& loop, const std::string& frameEntity,
                 std::initializer_list<const char*> nameTags,
                 std::initializer_list<const char*> indexTags, const char* authorTag,
                 const char* entityTag, Deposition& deposition) {
  if (loop.column(nameTags) < 0 || loop.column(indexTags) < 0 || !loop.broken.empty()) {
    return;
  }
  std::map<std::string, std::vector<Residue>> added;
  StarRows rows(document, loop,
                {loop.column(nameTags), loop.column(indexTags), loop.column({authorTag}),
                 loop.column({entityTag})});
  while (rows.next()) {
    added[rows[3].empty() ? frameEntity : std::string(rows[3])].push_back(
        {std::string(rows[1]), std::string(rows[2]), capitals(rows[0])});
  }
  for (auto& [entity, residues] : added) {
    Polymer& polymer = deposition.polymer(entity);
    if (polymer.residues.empty()) {
      polymer.residues = std::move(residues);
    }
  }
}

void addSequences(const StarDocument& document, const StarBlock& frames, Deposition& deposition) {
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      addSequence(document, loop, frame.tag({"_entity.id"}), {"_entity_comp_index.comp_id"},
                  {"_entity_comp_index.id"}, "_entity_comp_index.auth_seq_id",
                  "_entity_comp_index.entity_id", deposition);
    }
  }
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      addSequence(document, loop, frame.tag({"_entity.id"}), {"_entity_poly_seq.mon_id"},
                  {"_entity_poly_seq.comp_index_id", "_entity_poly_seq.num"}, "",
                  "_entity_poly_seq.entity_id", deposition);
    }
  }
}

void addEntityTags(const StarFrame& frame, Deposition& deposition) {
  const std::string letters =
      frame.tag({"_entity.polymer_seq_one_letter_code_can", "_entity.polymer_seq_one_letter_code"});
  const std::string id = frame.tag({"_entity.id"});
  if (id.empty() && letters.empty()) {
    return;
  }
  Polymer& polymer = deposition.polymer(id);
  polymer.name = frame.tag({"_entity.name", "_entity.sf_framecode"});
  const std::string thiols = frame.tag({"_entity.thiol_state"});
  polymer.allDisulfide = wording::allOxidised(thiols);
  polymer.saysThiols = wording::saysThiols(thiols);
  if (polymer.residues.empty()) {
    polymer.residues = residuesFromLetters(letters);
  }
}

bool sameNames(const std::vector<Residue>& one, const std::vector<Residue>& other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](const Residue& a, const Residue& b) { return a.name == b.name; });
}

/// The copies that a loop of the assembly lists, with those of their cysteines that lack HG.
void readCopies(const StarDocument& document, const StarLoop& loop, CopyEntities& entities,
                std::map<std::string, std::vector<Residue>>& copies, Polymer& oxidised) {
  StarRows rows(document, loop,
                {loop.column({"_chem_comp_assembly.entity_assembly_id"}),
                 loop.column({"_chem_comp_assembly.auth_asym_id"}),
                 loop.column({"_chem_comp_assembly.entity_id"}),
                 loop.column({"_chem_comp_assembly.comp_index_id", "_chem_comp_assembly.seq_id"}),
                 loop.column({"_chem_comp_assembly.auth_seq_id"}),
                 loop.column({"_chem_comp_assembly.comp_id"}),
                 loop.column({"_chem_comp_assembly.auth_variant_id"})});
  while (rows.next()) {
    const std::string copy(rows[0].empty() ? rows[1] : rows[0]);
    const std::string author(rows[4]);
    const std::string index = rows[3].empty() ? author : std::string(rows[3]);
    copies[copy].push_back({index, author, capitals(rows[5])});
    if (!rows[2].empty()) {
      entities[copy] = rows[2];
    }
    if (copies[copy].back().name == "CYS" && rows[6] == "-HG") {
      oxidised.bonded.insert(copy + " " + index);
    }
  }
}

/// Gives each copy of the assembly its polymer: the entity that the deposition names, else the
/// first copy of the same sequence, which then stands for the entity.
void addCopies(const StarDocument& document, const StarBlock& frames, CopyEntities& entities,
               Deposition& deposition) {
  std::map<std::string, std::vector<Residue>> copies;
  Polymer oxidised;
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      if (usable(loop, "_chem_comp_assembly.comp_id")) {
        readCopies(document, loop, entities, copies, oxidised);
      }
    }
  }
  std::map<std::vector<std::string>, std::string> firsts;
  for (const auto& [copy, residues] : copies) {
    std::vector<std::string> names;
    std::transform(residues.begin(), residues.end(), std::back_inserter(names),
                   [](const Residue& residue) { return residue.name; });
    const std::string first = firsts.emplace(names, copy).first->second;
    entities.emplace(copy, first);
    Polymer& polymer = deposition.polymer(entities[copy]);
    for (const Residue& residue : residues) {
      if (oxidised.bonded.count(copy + " " + residue.index) > 0) {
        polymer.bonded.insert(residue.index);
      }
    }
    if (!polymer.residues.empty() && polymer.copies.empty()) {
      continue; // the entity says it already
    }
    if (polymer.residues.empty()) {
      polymer.residues = residues;
    }
    if (sameNames(polymer.residues, residues)) {
      polymer.copies[copy] = residues;
    }
  }
}

/// Refuses a deposition whose sequence is lost with a broken loop.
void requireSequence(const StarDocument& document, const StarBlock& frames,
                     const Deposition& deposition) {
  const bool any = std::any_of(deposition.polymers.begin(), deposition.polymers.end(),
                               [](const Polymer& polymer) { return !polymer.residues.empty(); });
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      if (!any && loop.column({"_entity_comp_index.comp_id", "_entity_poly_seq.mon_id",
                               "_chem_comp_assembly.comp_id"}) >= 0) {
        StarRows(document, loop, {}); // which throws for a broken loop
      }
    }
  }
}

CopyEntities assemblyEntities(const StarDocument& document, const StarBlock& frames) {
  CopyEntities entities;
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      if (usable(loop, "_entity_assembly.entity_id")) {
        StarRows rows(
            document, loop,
            {loop.column({"_entity_assembly.id"}), loop.column({"_entity_assembly.entity_id"})});
        while (rows.next()) {
          entities[std::string(rows[0])] = rows[1];
        }
      }
    }
  }
  return entities;
}

/// Adds the cysteines of `_Bond` rows that tie two sulfurs.
void addBonds(const StarDocument& document, const StarLoop& loop, const CopyEntities& entities,
              Deposition& deposition) {
  for (const char* end : {"1", "2"}) {
    const auto column = [&loop, end](const char* name) {
      return loop.column({(std::string("_bond.") + name + "_" + end).c_str()});
    };
    const int index = column("comp_index_id") < 0 ? column("seq_id") : column("comp_index_id");
    StarRows rows(document, loop,
                  {loop.column({"_bond.type"}), loop.column({"_bond.atom_id_1"}),
                   loop.column({"_bond.atom_id_2"}), column("entity_id"),
                   column("entity_assembly_id"), index});
    while (rows.next()) {
      const bool sulfurs = equalWithoutCase(rows[1], "SG") && equalWithoutCase(rows[2], "SG");
      if (!sulfurs && !equalWithoutCase(rows[0], "disulfide")) {
        continue;
      }
      const auto entity = entities.find(rows[4]);
      const std::string id(rows[3].empty() && entity != entities.end() ? entity->second : rows[3]);
      deposition.polymer(id).bonded.insert(std::string(plainCount(rows[5])));
    }
  }
}

/// Conditions by ID of their list.
std::map<std::string, std::string> allConditions(const StarDocument& document,
                                                 const StarBlock& frames) {
  std::map<std::string, std::string> conditions;
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      if (usable(loop, "_sample_condition_variable.type")) {
        conditions[frame.tag({"_sample_condition_list.id"})] = readConditions(
            document, loop, "_sample_condition_variable.type", "_sample_condition_variable.val",
            "_sample_condition_variable.val_units");
      }
    }
  }
  return conditions;
}

} // namespace

Deposition readNmrStar3(const StarDocument& document, const StarBlock& frames) {
  Deposition deposition;
  deposition.kind = "NMR-STAR 3";
  addSequences(document, frames, deposition);
  bool assemblyOxidised = false;
  for (const StarFrame& frame : frames) {
    const std::string id = frame.tag({"_entry.id"});
    deposition.id = id.empty() ? deposition.id : id;
    addEntityTags(frame, deposition);
    assemblyOxidised =
        assemblyOxidised || wording::allOxidised(frame.tag({"_assembly.thiol_state"}));
  }
  deposition.copyEntities = assemblyEntities(document, frames);
  addCopies(document, frames, deposition.copyEntities, deposition);
  requireSequence(document, frames, deposition);
  sortResidues(deposition);
  tidyResidues(deposition);
  std::map<std::string, std::string> conditions = allConditions(document, frames);
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      if (usable(loop, "_bond.id") || usable(loop, "_bond.type")) {
        addBonds(document, loop, deposition.copyEntities, deposition);
      }
      if (star3ValueColumn(loop) >= 0) {
        ShiftList list = readStar3Shifts(document, frame, loop, deposition);
        list.conditions =
            conditions[frame.tag({"_assigned_chem_shift_list.sample_condition_list_id"})];
        deposition.add(std::move(list));
      }
      noteLabelling(document, loop, "_sample_component.isotopic_labeling",
                    "_sample_component.entity_id", deposition);
    }
  }
  for (Polymer& polymer : deposition.polymers) {
    polymer.allDisulfide = polymer.allDisulfide || (assemblyOxidised && !polymer.saysThiols);
  }
  return deposition;
}
