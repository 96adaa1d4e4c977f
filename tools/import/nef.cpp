#include "tools/import/amino_acids.h"
#include "tools/import/deposition.h"
#include "tools/import/residue_names.h"

namespace {

/// Places of the chains in the deposition.
using Chains = std::map<std::string_view, std::size_t>;

/// Adds the residues of a sequence loop. Early files call the name of a residue its type. A
/// cysteine without HG is in a disulfide bond.
///
/// \param orders  gets the place in the sequence of each residue of each chain
void addSequence(const StarDocument& document, const StarLoop& loop, Chains& chains,
                 std::vector<std::vector<std::string>>& orders, Deposition& deposition) {
  const int name = loop.column({"_nef_sequence.residue_name", "_nef_sequence.residue_type"});
  const int number = loop.column({"_nef_sequence.sequence_code"});
  if (name < 0 || number < 0) {
    return;
  }
  StarRows rows(document, loop,
                {loop.column({"_nef_sequence.chain_code"}), number, name,
                 loop.column({"_nef_sequence.residue_variant"}),
                 loop.column({"_nef_sequence.index"})});
  while (rows.next()) {
    const auto [chain, added] = chains.emplace(rows[0], deposition.polymers.size());
    if (added) {
      orders.emplace_back();
      deposition.polymers.emplace_back();
      deposition.polymers.back().id = rows[0];
      deposition.polymers.back().name = "chain " + std::string(rows[0]);
    }
    orders[chain->second].emplace_back(rows[4].empty() ? rows[1] : rows[4]);
    Polymer& polymer = deposition.polymers[chain->second];
    polymer.residues.push_back({std::string(rows[1]), std::string(rows[1]), capitals(rows[2])});
    if (polymer.residues.back().name == "CYS" && rows[3] == "-HG") {
      polymer.bonded.insert(std::string(rows[1]));
    }
  }
}

/// Adds the cysteines of links between two sulfurs.
void addLinks(const StarDocument& document, const StarLoop& loop, const Chains& chains,
              Deposition& deposition) {
  if (!loop.broken.empty() || !loop.has("_nef_covalent_links.atom_name_1")) {
    return;
  }
  StarRows rows(document, loop,
                {loop.column({"_nef_covalent_links.atom_name_1"}),
                 loop.column({"_nef_covalent_links.atom_name_2"}),
                 loop.column({"_nef_covalent_links.chain_code_1"}),
                 loop.column({"_nef_covalent_links.sequence_code_1"}),
                 loop.column({"_nef_covalent_links.chain_code_2"}),
                 loop.column({"_nef_covalent_links.sequence_code_2"})});
  while (rows.next()) {
    for (const std::size_t end : {2U, 4U}) {
      const auto chain = chains.find(rows[end]);
      if (rows[0] == "SG" && rows[1] == "SG" && chain != chains.end()) {
        deposition.polymers[chain->second].bonded.insert(std::string(plainCount(rows[end + 1])));
      }
    }
  }
}

void addList(const StarDocument& document, const StarFrame& frame, const StarLoop& loop,
             Deposition& deposition) {
  ShiftList list;
  list.line = loop.line;
  list.name = frame.name;
  list.id = std::to_string(deposition.lists.size() + 1);
  const auto open = [&]() -> NextShift {
    StarRows rows(
        document, loop,
        {loop.column({"_nef_chemical_shift.chain_code"}),
         loop.column({"_nef_chemical_shift.sequence_code"}),
         loop.column({"_nef_chemical_shift.residue_name", "_nef_chemical_shift.residue_type"}),
         loop.column({"_nef_chemical_shift.atom_name"}),
         loop.column({"_nef_chemical_shift.value"})});
    return [rows](ListedShift& row) mutable {
      const bool found = rows.next();
      row = {rows[0], {}, rows[1], rows[1], rows[2], rows[3], rows[4], {}};
      return found;
    };
  };
  addShifts(open, deposition, list);
  deposition.add(std::move(list));
}

} // namespace

Deposition readNef(const StarDocument& document, const StarBlock& frames) {
  Deposition deposition;
  deposition.kind = "NEF";
  Chains chains;
  std::vector<std::vector<std::string>> orders;
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      addSequence(document, loop, chains, orders, deposition);
    }
  }
  for (std::size_t i = 0; i < orders.size(); ++i) {
    if (sortByNumber(deposition.polymers[i].residues, orders[i])) {
      deposition.problems.push_back(outOfOrder(deposition.polymers[i]));
    }
  }
  tidyResidues(deposition);
  for (const StarFrame& frame : frames) { // now that every chain is known
    for (const StarLoop& loop : frame.loops) {
      if (loop.has("_nef_chemical_shift.value")) {
        addList(document, frame, loop, deposition);
      }
      addLinks(document, loop, chains, deposition);
    }
  }
  return deposition;
}
