#include "structure/atom_list.h"

#include <algorithm>

void AtomList::add(const CORdata& atom) {
  const Position added = static_cast<Position>(atoms_.size());
  const auto known = lastOfResidue_.try_emplace(atom.resNumber, none).first;
  atoms_.push_back({ShortText(atom.atomName),
                    ShortText(atom.resName),
                    ShortText(atom.chainID),
                    atom.atomNumber,
                    atom.resNumber,
                    {atom.x, atom.y, atom.z},
                    atom.bFactor,
                    known->second});
  known->second = added;
  bySerial_.clear();
}

void AtomList::clear() {
  atoms_.clear();
  lastOfResidue_.clear();
  bySerial_.clear();
}

CORdata AtomList::find(int residue, std::string_view name) const {
  const auto known = lastOfResidue_.find(residue);
  const ShortText wanted(name);
  Position at = known == lastOfResidue_.end() ? none : known->second;
  while (at != none && !(atoms_[at].name == wanted)) {
    at = atoms_[at].previous;
  }
  return unpacked(at);
}

CORdata AtomList::find(int serial) const {
  if (bySerial_.empty()) {
    for (Position at = 0; at < atoms_.size(); ++at) {
      bySerial_[atoms_[at].serial] = at;
    }
  }
  const auto known = bySerial_.find(serial);
  return unpacked(known == bySerial_.end() ? none : known->second);
}

CORdata AtomList::unpacked(Position at) const {
  CORdata atom;
  if (at == none) {
    return atom;
  }
  const Atom& packed = atoms_[at];
  atom.atomNumber = packed.serial;
  atom.resNumber = packed.residue;
  atom.atomName = packed.name.view();
  atom.resName = packed.residueName.view();
  atom.chainID = packed.chain.view();
  std::copy_n(packed.coor, 3, atom.coor);
  atom.x = atom.coor[0];
  atom.y = atom.coor[1];
  atom.z = atom.coor[2];
  atom.bFactor = packed.bFactor;
  return atom;
}
