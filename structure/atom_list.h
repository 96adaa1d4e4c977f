#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "structure/cordata.h"

/// A text of at most seven bytes, as the columns of an atom line hold; compared as one number.
class ShortText {
 public:
  /// A longer text becomes one that equals none of those that fit.
  explicit ShortText(std::string_view text) {
    const bool fits = text.size() < sizeof bytes_ - 1;
    if (fits && !text.empty()) {
      std::memcpy(bytes_, text.data(), text.size());
    }
    bytes_[sizeof bytes_ - 1] = static_cast<char>(fits ? text.size() : tooLong);
  }

  std::string_view view() const {
    return {bytes_, static_cast<std::size_t>(bytes_[sizeof bytes_ - 1])};
  }

  friend bool operator==(const ShortText& a, const ShortText& b) {
    return std::memcmp(a.bytes_, b.bytes_, sizeof a.bytes_) == 0;
  }

 private:
  static constexpr std::size_t tooLong = 127;
  char bytes_[8] = {}; ///< the text, zeros, and in the last byte the size
};

/// The atoms of one conformer in the order of a file, found by residue and name or by serial.
///
/// Each atom knows the one before it of the same residue number, and a look-up walks one residue's
/// atoms from the last one back: of atoms with one residue number and name it finds the last. The
/// first look-up by serial makes an index of all atoms.
class AtomList {
 public:
  /// Room for so many atoms, so that adding them moves none.
  void reserve(std::size_t count) { atoms_.reserve(count); }
  void add(const CORdata& atom);
  void clear();

  /// The atom; a default record when there is none.
  CORdata find(int residue, std::string_view name) const;
  CORdata find(int serial) const;

 private:
  using Position = std::uint32_t;
  static constexpr Position none = static_cast<Position>(-1);

  /// A `CORdata` in less than half its size: reading a large file is bounded by memory.
  struct Atom {
    ShortText name;
    ShortText residueName;
    ShortText chain;
    int serial;
    int residue;
    float coor[3];
    float bFactor;
    Position previous; ///< the atom before it of the same residue number, or none
  };
  CORdata unpacked(Position at) const;

  std::vector<Atom> atoms_;
  std::unordered_map<int, Position> lastOfResidue_;
  mutable std::unordered_map<int, Position> bySerial_;
};
