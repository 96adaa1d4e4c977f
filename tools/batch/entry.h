#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tools/report/index.h"

/// One input of a batch, as the user named it or as it was found in a folder.
struct Entry {
  std::string path;
  long long size = 0;     ///< bytes
  long long modified = 0; ///< seconds since 1970
};

/// One predicted proline, by shifts whose referencing is corrected where that is worth it; texts
/// stand as the summary of the program has them.
struct ProlineRow {
  std::string resid;       ///< residue number in the table that the program read, from 1
  std::string author;      ///< residue number in the deposition; the same for a table
  std::string before;      ///< one-letter name of the residue before
  std::string after;       ///< one-letter name of the residue after
  std::string counts[3];   ///< shifts present of the residue before, the proline, the one after
  std::string cgShift;     ///< ppm, or empty when not assigned
  std::string pCis;        ///< P_CIS
  std::string pCisNorm;    ///< P_CIS_NORM
  std::string call;        ///< "cis", "trans" or "undecided"
  std::string evidence;    ///< log10 of the odds of cis before the prior; "nan" where P_CIS is
  bool hasCb = false;      ///< whether the proline's CB has a shift
  bool hasCg = false;      ///< likewise CG
  std::string rawPCisNorm; ///< P_CIS_NORM of the shifts as they are
  std::string rawCall;     ///< the call that these give
};

/// What became of one entry.
///
/// `status` is one word: "ok"; "missing" when the file cannot be read; "import" when the importer
/// refused it; "refused" when the program did; "crashed" when either ended by a signal, running out
/// of time included.
struct EntryResult {
  Entry entry;
  std::string status;
  std::string message; ///< why it failed, or the warnings, joined by " | "
  std::vector<ProlineRow> prolines;
  /// Referencing offsets that were taken off, ppm, of CA/CB, HA and C': "0.000" for none, empty
  /// where none was looked for.
  std::array<std::string, 3> offsets;
  std::optional<IndexEntry> listed; ///< its row in the list of pages, when it has a page
};
