#pragma once

#include <string>
#include <vector>

/// One input of a batch, as the user named it or as it was found in a folder.
struct Entry {
  std::string path;
  long long size = 0;     ///< bytes
  long long modified = 0; ///< seconds since 1970
};

/// One predicted proline; texts stand as the summary has them.
struct ProlineRow {
  std::string resid;     ///< residue number in the table that the program read, from 1
  std::string author;    ///< residue number in the deposition; the same for a table
  std::string before;    ///< one-letter name of the residue before
  std::string after;     ///< one-letter name of the residue after
  std::string counts[3]; ///< shifts present of the residue before, the proline, the one after
  std::string cgShift;   ///< ppm, or empty when not assigned
  std::string pCis;      ///< P_CIS
  std::string pCisNorm;  ///< P_CIS_NORM
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
};
