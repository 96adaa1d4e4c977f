#pragma once

#include "tools/report/picture.h"
#include "tools/report/report.h"

/// The pictures of a report. Bars and curves of cis lie to the right or are drawn through; those of
/// trans lie to the left or are dashed.

/// All prolines at one sight: a row each with the call, the sum, and a cell for each shift and
/// neighbour.
///
/// \param linked  whether a row leads to the proline's card, as on the page
Picture overviewPicture(const Report& report, bool linked);

/// One proline: a bar for each contribution, on a scale common to the report, with what is missing
/// and what was bounded.
Picture evidencePicture(const Report& report, const ProlineReport& proline);

/// Where the proline's CB or CG lies in the Gaussians of cis and trans. The term is that of the
/// shift, present or not.
Picture positionPicture(const Report& report, const Term& term);

/// CB - CG of a proline and the bands of cis, trans and what lies between. It needs both carbons.
Picture carbonsPicture(const Report& report, const ProlineReport& proline);

/// The sum of one proline as a small bar for a table cell.
Picture sumPicture(const Report& report, const ProlineReport& proline);

/// The atoms with a track of secondary shifts, from top to bottom: those with any shift.
using Tracks = std::vector<std::string>;
Tracks sequenceTracks(const Report& report);
/// Whether none is left out.
bool areAll(const Tracks& tracks);

/// Residues of the sequence, numbered without a gap.
struct Stretch {
  int first;
  int last; ///< included; may be the largest number that there is
};
/// The whole sequence, in stretches of at most so many residues.
std::vector<Stretch> stretchesOf(const Inputs& inputs, int longest);

/// Secondary shifts of a stretch, a track for each atom; prolines stand out by their call, outliers
/// by an exclamation mark.
Picture sequencePicture(const Report& report, const Tracks& tracks, const Stretch& stretch);

/// Largest contribution that the bars show in full: that of the report, rounded up, at most 10.
double contributionScale(const Report& report);

/// The residue's name and number as pictures show it: a long number is cut.
std::string pictureLabel(const Inputs& inputs, int residue);

/// The style of words and marks for a call: "cis", "trans", "undecided" or, without one, "muted".
const char* callStyle(Verdict::Call call);
