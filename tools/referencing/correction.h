#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/referencing/estimate.h"

/// Which shifts an offset belongs to, and taking it off.
namespace referencing {

/// What to take off the shifts of each nucleus, ppm.
using Offsets = std::array<double, nucleusCount>;

/// The offsets of the estimates that apply; 0 for the others.
Offsets offsetsToApply(const Estimates& estimates);

/// The nucleus whose offset a shift carries: C' that of its own, HA with HA1 to HA3 theirs, and
/// every aliphatic carbon, of which CB and a proline's CG tell most, that of CA.
///
/// \param residue  one-letter code or three-letter name
/// \return nothing for nitrogen and all other protons, carbons of aromatic rings, and those of
///         carboxyl, amide and guanidinium groups: their spectra are taken and referenced apart
std::optional<Nucleus> nucleusOf(std::string_view residue, std::string_view atom);

/// Takes offsets off the SHIFT cells of a table with the columns RESNAME, ATOMNAME and SHIFT; a
/// shift that stands for none stays. \return number of shifts that changed
int correct(GDB& table, const Offsets& offsets);

/// The same on the text of a table file, so that everything else stays as it is, byte for byte. The
/// remarks come first.
std::string correctText(std::string_view text, const Offsets& offsets,
                        const std::vector<std::string>& remarks);

/// One sentence for each nucleus: offset, error, number of points, and what was done.
std::vector<std::string> describe(const Estimates& estimates);

/// What such sentences, and those on shifts that were told, say was taken off, to 0.001 ppm.
Offsets takenOff(const std::vector<std::string>& notes);

/// Reads "C=-2.36,HA=0.02": shifts to add, ppm, by CA (with CB and all aliphatic carbons), HA, CO
/// (C' alone) or C (all carbons). Throws ToolError(usage) for other text. \return what to take off
Offsets parseShiftBy(const std::string& text);

} // namespace referencing
