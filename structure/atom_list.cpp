#include "structure/atom_list.h"

#include <utility>

namespace {
const CORdata absent;
}

void AtomList::reserve(std::size_t count) {
  atoms_.reserve(count);
  previous_.reserve(count);
}

void AtomList::add(CORdata&& atom) {
  const Position added = static_cast<Position>(atoms_.size());
  const auto known = lastOfResidue_.try_emplace(atom.resNumber, none).first;
  previous_.push_back(known->second);
  known->second = added;
  atoms_.push_back(std::move(atom));
  bySerial_.clear();
}

void AtomList::clear() {
  atoms_.clear();
  previous_.clear();
  lastOfResidue_.clear();
  bySerial_.clear();
}

const CORdata& AtomList::last() const {
  return atoms_.empty() ? absent : atoms_.back();
}

const CORdata& AtomList::find(int residue, std::string_view name) const {
  const auto known = lastOfResidue_.find(residue);
  Position at = known == lastOfResidue_.end() ? none : known->second;
  while (at != none && atoms_[at].atomName != name) {
    at = previous_[at];
  }
  return at == none ? absent : atoms_[at];
}

const CORdata& AtomList::find(int serial) const {
  if (bySerial_.empty()) {
    for (Position at = 0; at < atoms_.size(); ++at) {
      bySerial_[atoms_[at].atomNumber] = at;
    }
  }
  const auto known = bySerial_.find(serial);
  return known == bySerial_.end() ? absent : atoms_[known->second];
}
