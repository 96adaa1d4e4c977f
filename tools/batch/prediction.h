#pragma once

#include <string>

#include "tools/batch/entry.h"
#include "tools/calls/calls.h"
#include "tools/referencing/database.h"

/// What a prediction depends on besides its table.
struct PredictionSettings {
  std::string tabFolder;   ///< tables of the database
  bool offset = false;     ///< the program's own correction, instead of the companions'
  bool iso = false;        ///< correct for deuteration
  bool noclip = false;     ///< leave extreme shifts
  bool rereference = true; ///< correct the referencing where that is worth it
};

/// The prolines of any number of tables, with the database read once. Predicts in this process,
/// without files and without printing.
class Predictor {
 public:
  /// Throws ToolError for tables of the database that are missing or cannot be right.
  explicit Predictor(const PredictionSettings& settings);

  /// Predicts one table: as it is, and corrected where offsets apply.
  ///
  /// \param table  text of an input table of the program
  /// \param result  out: prolines (with the table's numbers for the authors'), offsets, status and
  ///                message; a table that the program refuses is the status "refused"
  void predict(const std::string& table, EntryResult& result) const;

 private:
  ProlineRow rowOf(const Prediction& corrected, const Prediction& raw, bool hasCb) const;
  void predictInput(const GDB& input, EntryResult& result) const;

  PredictionSettings settings_;
  referencing::Database database_;
  calls::Rules rules_;
};
