#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "app/citrans.h"

/// What the user names on the command line.
struct InputPaths {
  std::string summary;  ///< "-" for standard input
  std::string shifts;   ///< empty: beside the summary, as citrans names it; "-" likewise
  std::string database; ///< folder of the tables; empty: where citrans looks
  std::string map;      ///< author numbers; empty for none
};

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
};

/// One row of the secondary-shift table, ppm.
struct ShiftRow {
  int residue = 0;
  std::string name, atom;
  std::string shiftText; ///< secondary shift as printed
  double rounding = 0;   ///< half a unit of its last printed digit
  double observed = 0;
};

/// Everything read from the files, checked.
struct Inputs {
  std::string title;          ///< of the shifts, from the summary; may be empty
  std::string referenceTitle; ///< of the reference structure; empty without one
  std::vector<SummaryRow> summary;
  std::vector<ShiftRow> shifts;
  std::map<int, std::string> sequence;
  int residueCount = 0;
  std::vector<std::string> corrections; ///< remarks on offsets and isotope shifts that were applied
  std::map<int, std::string> authors;   ///< author number by table number; empty without a map
  std::vector<std::string> warnings;    ///< plain text

  /// The number to show: the author's where the map has one, else the table's.
  std::string number(int residue) const;
  /// "Pro82", with the number to show.
  std::string residueLabel(int residue) const;
  const SummaryRow* summaryRow(int residue) const;
};

/// Reads and checks the files. Throws ToolError: inputMissing, or badData with file and line.
Inputs readInputs(const InputPaths& paths);

/// The name of the secondary-shift table that citrans writes beside a summary.
std::string shiftTableName(const std::string& summary);

/// Author numbers by table number, from tab-separated text whose header names the columns "resid"
/// and "author". Throws ToolError(badData) for other headers, short rows and numbers given twice.
std::map<int, std::string> readAuthorMap(const std::string& path);

/// Where the tables of the database are: `database` when given; else where citrans looks, below
/// CITRANS_DIR or the current directory; else, when that is not there, those that are installed
/// with this program.
std::string databaseFolder(const std::string& database);

/// Gives a run what its preparation would have left: sequence, secondary shifts (six rows for each
/// residue), counts and CG shifts, and the statistics and limits of the database. Throws
/// ToolError(inputMissing) for a table that is not there.
void fillRun(CITRANS& run, const Inputs& inputs, const std::string& folder);
