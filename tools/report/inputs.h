#pragma once

#include <array>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "app/citrans.h"
#include "tools/calls/calls.h"
#include "tools/referencing/model.h"

/// A text that came from a file, and the file's name for messages.
struct NamedText {
  std::string name;
  std::string text;
};

/// What a report is made of.
struct Sources {
  NamedText summary;
  NamedText shifts; ///< the table of secondary shifts
  NamedText map;    ///< author numbers; without a name for none
  bool clip = true; ///< whether the run bounded shifts: false after -noclip
};

/// The tables that a report needs, read once for any number of reports.
struct Database {
  CITRANS run;              ///< holds limits and statistics; copied for each report
  calls::Rules rules;       ///< for the three words
  referencing::Model model; ///< for the referencing
  std::string madeBy;       ///< what made the statistics, as their remarks say; may be empty
};

/// What made the statistics of a database, as the remarks of their table say; may be empty.
std::string statisticsMadeBy(const GDB& statistics);

/// One row of the summary: a proline that was predicted.
struct SummaryRow {
  int residue = 0;
  std::string before, after;        ///< one-letter names of the neighbours
  std::array<int, 3> shiftCounts{}; ///< of the residue before, the proline, the residue after
  double cg = 0;                    ///< ppm, shift::missing without one
  double cgRounding = 0;            ///< half a unit of its last printed digit, ppm
  double pCis = 0;                  ///< as printed; may be not-a-number
  double pCisNorm = 0;              ///< likewise
  std::string pCisText, pCisNormText;
  std::string referenceName; ///< residue type in the reference structure; empty without one
  double omega = 0;          ///< degrees; 9999 when an atom is missing there
  bool hasOmega = false;     ///< whether a structure was given and has the angle

  /// Whether the reference structure has a proline here, and its angle.
  bool comparable() const { return hasOmega && referenceName == "P"; }
  /// Whether that angle is nearer to cis; only when comparable.
  bool referenceIsCis() const { return std::fabs(omega) < 90; }
};

/// One row of the secondary-shift table, ppm.
struct ShiftRow {
  int residue = 0;
  std::string name, atom;
  std::string shiftText; ///< secondary shift as printed
  double rounding = 0;   ///< half a unit of its last printed digit
  double observed = 0;   ///< shift as it was given
  double adjustment = 0; ///< what citrans took off besides an offset
};

/// What the shifts are of, as far as the table's remarks tell. Any text may be empty.
struct About {
  std::string entry;                    ///< "NMR-STAR 3 entry 16570"
  std::string protein;                  ///< name of the molecule
  std::string source;                   ///< name of the deposition's file
  std::string table;                    ///< the table's file as citrans was told it
  std::vector<std::string> remarks;     ///< of the input table, in order, the warnings left out
  std::vector<std::string> warnings;    ///< of the import
  std::vector<std::string> corrections; ///< offsets and isotope shifts that citrans applied
};

/// What the remarks of a table of secondary shifts say; those that citrans writes itself are left
/// out.
About aboutFrom(const std::vector<std::string>& remarks);

/// Everything read from the texts, checked.
struct Inputs {
  std::string title; ///< of the shifts, from the summary; may be empty
  About about;
  std::string referenceTitle; ///< of the reference structure; empty without one
  std::vector<SummaryRow> summary;
  std::vector<ShiftRow> shifts;
  std::map<int, std::string> sequence; ///< one-letter names by table number
  int residueCount = 0;
  std::map<int, std::string> authors; ///< author number by table number; empty without a map
  std::vector<std::string> warnings;  ///< plain text

  /// Table numbers of the ends of the sequence: 1 and its length unless the table has FIRST_RESID.
  int firstResidue() const { return sequence.empty() ? 1 : sequence.begin()->first; }
  int lastResidue() const { return sequence.empty() ? 0 : sequence.rbegin()->first; }
  /// Whether citrans looks at a residue with both its neighbours: it prepares shifts of residues 1
  /// to residueCount, whatever their numbers in the sequence.
  bool isInReach(int residue) const { return residue > 1 && residue < residueCount; }
  /// The number to show: the author's where the map has one, else the table's.
  std::string number(int residue) const;
  /// "Pro82", with the number to show.
  std::string residueLabel(int residue) const;
  /// What to call the protein: its name, else what title or remarks say; never empty.
  std::string proteinName() const;
  /// The titles of shifts and reference; without their folders where they are files.
  std::string shownTitle() const;
  std::string shownReference() const;
  const SummaryRow* summaryRow(int residue) const;
  /// The shift of an atom; null without one. An amide proton called H is not HN here.
  const ShiftRow* shiftOf(int residue, const std::string& atom) const;

  std::map<std::pair<int, std::string>, std::size_t> shiftIndex; ///< places in `shifts`
};

/// Reads and checks the texts. Throws ToolError(badData) with file and line.
Inputs readInputs(const Sources& sources);

/// Author numbers by table number, from tab-separated text whose header names the columns "resid"
/// and "author". Throws ToolError(badData) for other headers, short rows and numbers given twice.
std::map<int, std::string> readAuthorMap(const NamedText& map);

/// Gives a run that has the database what its preparation would have left: sequence, secondary
/// shifts (six rows for each residue), counts and CG shifts.
void fillRun(CITRANS& run, const Inputs& inputs);
