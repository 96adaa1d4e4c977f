#pragma once

#include "tools/import/deposition.h"

/// Column of the values in a loop of shifts of NMR-STAR 3, which early files call by a longer name;
/// -1 for other loops.
int star3ValueColumn(const StarLoop& loop);

/// The shifts of such a loop.
///
/// \param frame  the save frame that it stands in
/// \param deposition  with all its residues, tidy, and the molecules of its copies
ShiftList readStar3Shifts(const StarDocument& document, const StarFrame& frame,
                          const StarLoop& loop, const Deposition& deposition);
