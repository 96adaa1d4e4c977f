#pragma once

#include <array>
#include <string>
#include <vector>

/// Residue types and atoms as the derivation counts them.
namespace derive {

/// Atoms of a secondary shift, in the order of the program.
enum Atom : std::size_t { N, HA, C, CA, CB, HN, atomCount };
constexpr std::array<const char*, atomCount> atomNames = {"N", "HA", "C", "CA", "CB", "HN"};

/// One-letter codes with shifts of their own; "c" is the cysteine of a disulfide.
constexpr char letters[] = "ACDEFGHIKLMNPQRSTVWYc";
constexpr std::size_t letterCount = sizeof letters - 1;

/// Place of a code in `letters`; h counts as H and p as P; `letterCount` for any other.
std::size_t letterIndex(char code);

/// One row of a residue table: the name it is looked up by and whose values it holds.
struct ResidueRow {
  std::string name;
  std::size_t letter;
};

/// Rows of the random-coil, adjustment, neighbour and isotope tables: every one-letter code, then
/// every three-letter name.
const std::vector<ResidueRow>& residueRows();

/// Every one-letter code that a sequence can hold and the program can look up, with `letterCount`
/// for the codes that stand for no single residue type (B, J, O, U).
const std::vector<ResidueRow>& sequenceRows();

} // namespace derive
