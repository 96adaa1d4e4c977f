#pragma once

#include <string>
#include <vector>

#include "tools/import/shift_choice.h"

/// One thing that a user can choose.
struct Alternative {
  std::string id;    ///< what chooses it
  std::string label; ///< for people
  bool chosen = false;
};

/// What there is to choose from in a deposition and a structure beside it; a list of one has no
/// choice in it. Texts are single lines.
struct Alternatives {
  std::vector<Alternative> entities; ///< proteins that have shifts in any list
  std::vector<Alternative> lists;    ///< those that hold shifts of the chosen protein
  std::vector<Alternative> copies;   ///< of the chosen protein in the chosen list
  std::vector<Alternative> chains;   ///< of the structure's chosen model
};

/// The alternatives to shifts that `chooseShifts` has chosen; `chains` stays empty.
Alternatives alternativesTo(const ChosenShifts& chosen, const Deposition& deposition);
