#pragma once

#include <optional>
#include <string>
#include <vector>

/// One proline in the list of many proteins.
struct IndexProline {
  std::string number;     ///< residue number, the author's where there is one
  std::string call;       ///< "cis", "trans" or "undecided"; another word where there is no call
  bool disagrees = false; ///< with the reference structure
  bool changes = false;   ///< whether correcting the referencing changes the call
};

/// One protein of many, as the list of them shows it.
struct IndexEntry {
  std::string name;             ///< what the user calls it: the name of its file
  std::string page;             ///< where its page is, relative to the list; empty without one
  std::string protein;          ///< what its page is called
  std::string remark;           ///< warnings, or why it could not be predicted; may be empty
  bool hasReport = false;       ///< false: not predicted, and nothing below is known
  bool hasReference = false;    ///< whether it is compared with a structure
  std::optional<double> offset; ///< referencing of CA and CB, ppm: what was taken off, or should be
  std::vector<IndexProline> prolines; ///< all of the sequence, in its order
};

struct Report;

/// One report as one of many; what it is called and its page are not known.
IndexEntry indexEntry(const Report& report);

/// A page that lists the entries, with links to theirs: it sorts by any column and filters by what
/// needs a look. One file without network; its script is in it. The same entries give the same
/// bytes.
std::string indexPage(const std::vector<IndexEntry>& entries);
