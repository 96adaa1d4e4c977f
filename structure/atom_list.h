#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "structure/cordata.h"

/// The atoms of one conformer in the order of a file, found by residue and name or by serial.
///
/// Each atom knows the one before it of the same residue number, and a look-up walks one residue's
/// atoms from the last one back: of atoms with one residue number and name it finds the last. The
/// first look-up by serial makes an index of all atoms.
class AtomList {
 public:
  /// Room for so many atoms, so that adding them moves none.
  void reserve(std::size_t count);
  void add(CORdata&& atom);
  void clear();

  /// The atom added last; a default record when there is none.
  const CORdata& last() const;

  /// The atom, valid until one is added; a default record when there is none.
  const CORdata& find(int residue, std::string_view name) const;
  const CORdata& find(int serial) const;

 private:
  using Position = std::uint32_t;
  static constexpr Position none = static_cast<Position>(-1);

  std::vector<CORdata> atoms_;
  /// By position, the atom before it of the same residue number, or none.
  std::vector<Position> previous_;
  std::unordered_map<int, Position> lastOfResidue_;
  mutable std::unordered_map<int, Position> bySerial_;
};
