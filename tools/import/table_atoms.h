#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// Atoms that the program reads, in the order in which the table lists them.
constexpr std::array<const char*, 9> tableAtoms = {"N", "HN", "HA", "HA2", "HA3",
                                                   "C", "CA", "CB", "CG"};

/// Places of some of them.
enum TableAtom : std::uint8_t {
  atomN,
  atomHn,
  atomHa,
  atomHa2,
  atomHa3,
  atomC,
  atomCa,
  atomCb,
  atomCg
};

/// An alpha proton of glycine of which the name does not tell which one it is.
constexpr std::uint8_t alphaAtom = 9;
/// HA1 of glycine: HA2 where its partner is HA2 in the file, which is then HA3.
constexpr std::uint8_t alphaOneAtom = 10;
/// An atom that the program does not read.
constexpr std::uint8_t otherAtom = 255;

/// Place of an atom by its name in a deposition, whatever the case: in `tableAtoms`, or one of the
/// three numbers above.
///
/// \param letter  of its residue
std::uint8_t tableAtom(char letter, std::string_view name);
