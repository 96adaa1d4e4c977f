#include "tools/import/structure_models.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "table/number.h"
#include "tools/import/amino_acids.h"

namespace {

constexpr std::array<const char*, 9> waterNames = {"HOH", "WAT", "H2O",  "DOD", "SOL",
                                                   "TIP", "SPC", "TIP3", "TIP4"};

std::string keyOf(const AtomRecord& record) {
  return record.number + " " + record.residue;
}

/// Ligands have atoms of these names too, but not these two together in one that is no amino acid
/// of a kind; an ion of calcium is one atom called CA.
bool isAminoAcid(const ModelResidue& residue) {
  const bool known = !aminoAcidNamed(residue.name).empty();
  const bool bonded = residue.atom("N") != nullptr || residue.atom("C") != nullptr;
  return residue.atom("CA") != nullptr && (known || bonded);
}

/// Selenomethionine counts as methionine, its selenium as sulfur.
void renameAsStandard(ModelResidue& residue) {
  const std::string standard = aminoAcidNamed(residue.name);
  if (standard == "MET" && residue.name != standard) {
    for (ModelAtom& atom : residue.atoms) {
      if (atom.name == "SE") {
        atom.name = "SD";
        atom.element = "S";
      }
    }
  }
  if (!standard.empty()) {
    residue.name = standard;
  }
}

/// Joins a chain with the one before it when they have one name and a bond between them.
void joinBonded(std::vector<ModelChain>& chains) {
  std::vector<ModelChain> joined;
  for (ModelChain& chain : chains) {
    if (!joined.empty() && joined.back().id == chain.id &&
        bondBetween(joined.back().residues.back(), chain.residues.front()) == Bond::yes) {
      std::move(chain.residues.begin(), chain.residues.end(),
                std::back_inserter(joined.back().residues));
    } else {
      joined.push_back(std::move(chain));
    }
  }
  chains = std::move(joined);
}

/// Chains of one name get ids of their own.
void nameCopies(std::vector<ModelChain>& chains) {
  std::map<std::string, int> counts;
  for (const ModelChain& chain : chains) {
    ++counts[chain.id];
  }
  std::map<std::string, int> seen;
  for (ModelChain& chain : chains) {
    const std::string name = chain.id;
    const int copy = ++seen[name];
    if (counts[name] > 1 && name.empty()) {
      chain.id = std::to_string(copy);
    } else if (copy > 1) {
      chain.id += "-" + std::to_string(copy);
    }
  }
}

} // namespace

std::string elementNamed(std::string_view atomName) {
  const std::size_t letter = atomName.find_first_not_of("0123456789");
  return letter == std::string_view::npos ? "" : capitals(atomName.substr(letter, 1));
}

bool isWaterName(std::string_view residueName) {
  return std::find(waterNames.begin(), waterNames.end(), capitals(residueName)) != waterNames.end();
}

const ModelAtom* ModelResidue::atom(const std::string& wanted) const {
  const auto found = std::find_if(atoms.begin(), atoms.end(),
                                  [&wanted](const ModelAtom& one) { return one.name == wanted; });
  return found == atoms.end() ? nullptr : &*found;
}

Bond bondBetween(const ModelResidue& before, const ModelResidue& next) {
  const ModelAtom* const carbon = before.atom("C");
  const ModelAtom* const nitrogen = next.atom("N");
  if (carbon == nullptr || nitrogen == nullptr) {
    return Bond::unknown;
  }
  const double length =
      std::hypot(carbon->x - nitrogen->x, carbon->y - nitrogen->y, carbon->z - nitrogen->z);
  return length <= longestPeptideBond ? Bond::yes : Bond::no;
}

void ModelBuilder::startModel(const std::string& id) {
  const auto same = [&id](const OpenModel& model) { return model.id == id; };
  const bool taken = id.empty() || std::any_of(models_.begin(), models_.end(), same);
  current_ = models_.size();
  models_.emplace_back();
  models_.back().id = taken ? std::to_string(current_ + 1) : id;
  open_ = true;
}

void ModelBuilder::selectModel(const std::string& id) {
  if (open_ && models_[current_].id == id) {
    return;
  }
  for (std::size_t i = 0; i < models_.size(); ++i) {
    if (models_[i].id == id) {
      current_ = i;
      open_ = true;
      return;
    }
  }
  startModel(id);
}

void ModelBuilder::endChain() {
  if (open_ && !models_[current_].chains.empty()) {
    models_[current_].chains.back().ended = true;
  }
}

/// Whether the atom is of another copy of the chain.
bool ModelBuilder::beginsCopy(const OpenChain& chain, const AtomRecord& record) {
  const ModelResidue& last = chain.residues.back().residue;
  const bool unnamed = chain.name.empty();
  const auto known = chain.known.find(keyOf(record));
  if (known == chain.known.end()) {
    const bool back = parseInt(record.number) < parseInt(last.number);
    const bool protein = !aminoAcidNamed(record.residue).empty();
    return unnamed ? chain.ended || back : chain.ended && back && protein;
  }
  if (!chain.ended && last.number == record.number && last.name == record.residue) {
    return false; // an atom given twice
  }
  const OpenResidue& residue = chain.residues[known->second];
  const auto atom = residue.locations.find(record.atom.name);
  return (unnamed && chain.ended) ||
         (atom != residue.locations.end() && atom->second == record.location);
}

ModelBuilder::OpenChain& ModelBuilder::chainFor(const AtomRecord& record) {
  if (!open_) {
    startModel("");
  }
  OpenModel& model = models_[current_];
  const std::string& name = record.chain.empty() ? record.segment : record.chain;
  const auto latest = model.latest.find(name);
  if (latest != model.latest.end() && !beginsCopy(model.chains[latest->second], record)) {
    return model.chains[latest->second];
  }
  model.latest[name] = model.chains.size();
  model.chains.emplace_back();
  model.chains.back().name = name;
  return model.chains.back();
}

void ModelBuilder::add(const AtomRecord& record) {
  if (isWaterName(record.residue)) {
    return;
  }
  OpenChain& chain = chainFor(record);
  const auto [known, added] = chain.known.emplace(keyOf(record), chain.residues.size());
  if (added) {
    chain.residues.emplace_back();
    chain.residues.back().residue.number = record.number;
    chain.residues.back().residue.name = record.residue;
    chain.residues.back().location = record.location;
  }
  OpenResidue& residue = chain.residues[known->second];
  if (residue.locations.emplace(record.atom.name, record.location).second) {
    residue.residue.atoms.push_back(record.atom);
  }
}

std::vector<StructureModel> ModelBuilder::finish() {
  std::vector<StructureModel> models;
  for (OpenModel& model : models_) {
    models.push_back({model.id, {}});
    for (OpenChain& chain : model.chains) {
      ModelChain kept{chain.name, {}};
      std::string before; // the number of the residue before
      for (OpenResidue& residue : chain.residues) {
        // One place in the sequence with two kinds of residue: the first stays.
        const bool second = !residue.location.empty() && before == residue.residue.number;
        before = residue.residue.number;
        if (!second && isAminoAcid(residue.residue)) {
          kept.residues.push_back(std::move(residue.residue));
          renameAsStandard(kept.residues.back());
        }
      }
      if (!kept.residues.empty()) {
        models.back().chains.push_back(std::move(kept));
      }
    }
    model.chains.clear();
    joinBonded(models.back().chains);
    nameCopies(models.back().chains);
  }
  models_.clear();
  open_ = false;
  return models;
}
