#pragma once

#include <string>

#include "tools/referencing/correction.h"

namespace referencing {

/// The tables that an estimate needs, read once, for any number of proteins.
class Database {
 public:
  /// Reads the database of a folder, reref.tab included.
  ///
  /// \param options  of the runs, as `CITRANS::setArgs` takes them
  /// Throws ToolError(inputMissing) for a table that is not there, ToolError(badData) for one that
  /// cannot be right.
  explicit Database(const std::string& tabFolder, CITRANS::Options options = {});

  /// A silent run with the database and this input; its secondary shifts are yet to be made.
  CITRANS run(const GDB& input) const;

  /// The offsets of a table of observed shifts. Throws ToolError(badData) with the core's line for
  /// a table without sequence, columns or rows.
  Estimates estimate(const GDB& input) const;

  /// The offsets of a run whose `shiftTable` is filled and not corrected.
  Estimates estimate(const CITRANS& run) const {
    return referencing::estimate(model_, residuesOf(run));
  }

 private:
  CITRANS run_;
  Model model_;
};

/// A corrected table, and what was found and done in sentences.
struct Corrected {
  std::string text;
  std::vector<std::string> notes;
};

/// Estimates and corrects the text of a table; the notes become its first remarks. Throws as
/// `estimate`.
Corrected rereference(const Database& database, const std::string& text);

/// The same with offsets that are known.
Corrected shiftBy(const Offsets& offsets, const std::string& text);

} // namespace referencing
