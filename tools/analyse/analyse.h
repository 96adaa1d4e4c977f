#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/calls/calls.h"
#include "tools/common/tool.h"
#include "tools/import/alternatives.h"
#include "tools/import/import.h"
#include "tools/import/structure_text.h"
#include "tools/referencing/correction.h"
#include "tools/report/report.h"

/// From the bytes of a file to everything that the programs say of it: import, correction of the
/// referencing, prediction and report in one call, without files and without printing. The page,
/// the Python module, citrans-batch and citrans-report are thin over it, and it gives the bytes
/// that the programs give one after the other for the same input: citrans-import, citrans and
/// citrans-report.
namespace analyse {

/// A file in memory. The name is for messages, titles and the names of outputs; it has no folders.
struct File {
  std::string_view name;
  std::string_view bytes;
};

struct Settings {
  Choice choice;             ///< of molecule, shift list and copy; empty for the default
  StructureChoice structure; ///< chain and model; empty for the default
  bool isotope = false;      ///< correct for deuteration
  bool rereference = false;  ///< take estimated offsets off the shifts, where that is worth it
  bool offset = false;       ///< the program's own correction, as -offset makes it, instead
  bool clip = true;          ///< bound extreme secondary shifts
  bool report = true;        ///< make the report, and the texts of the program's files
};

/// What an analysis does, in this order.
enum class Step { import, structure, prediction, referencing, report };

/// Something that was decided, or that may be wrong.
struct Note {
  Step step;
  bool warning;
  std::string text; ///< one line
};

/// One predicted proline.
struct Proline {
  Prediction used;  ///< by the shifts that count: corrected, where that was asked for and worth it
  Prediction given; ///< by the shifts as they came
  bool hasCb = false; ///< whether CB has a shift; the prediction tells of CG
  calls::Call call = calls::Call::undecided;
  calls::Call givenCall = calls::Call::undecided;
};

/// What an analysis found. The texts are those of the files that the programs write.
struct Result {
  std::string name;          ///< of the shifts' file, without folders and endings: "bmr16570"
  bool imported = false;     ///< false for a table of the program's own
  Alternatives alternatives; ///< what else there was to choose, and what was chosen
  std::string sequence;      ///< one-letter names; "c" for an oxidised cysteine
  std::string table;         ///< the input table, corrected when that was asked for
  std::string map;           ///< author numbers; empty without an import
  std::string structure;     ///< PDB file renumbered to the table; empty without a structure
  std::string structureName; ///< "2kpu.ref.pdb"; empty without a structure
  std::string summary;       ///< predictions
  std::string secondary;     ///< secondary shifts
  std::vector<Proline> prolines;
  std::optional<FittedStructure> fitted;             ///< with a structure
  std::optional<referencing::Estimates> referencing; ///< with `Settings::rereference`
  std::vector<Note> notes;
  Report report; ///< see htmlPage, tsvText, jsonText and the pictures; empty unless asked for

  /// What was decided, and what may be wrong, one line each.
  std::vector<std::string> decisions() const { return texts(false); }
  std::vector<std::string> warnings() const { return texts(true); }

  /// Names of the files, as the programs were told: "bmr16570.tab", "bmr16570.pred.tab" and so on.
  std::string tableName() const { return name + ".tab"; }
  std::string summaryName() const { return name + ".pred.tab"; }

 private:
  std::vector<std::string> texts(bool warnings) const;
};

/// An input that cannot be used. The message is the line that importer or program would print.
class Refusal : public ToolError {
 public:
  /// \param said  all that the program said of the input, this included; several lines
  Refusal(Step step, const std::string& message, std::string said)
      : ToolError(ToolStatus::badData, message), step_(step), said_(std::move(said)) {}

  Step step() const { return step_; } ///< that could not be done
  const std::string& said() const { return said_; }

 private:
  Step step_;
  std::string said_;
};

/// The tables of a database by the names of their files, such as "randcoil.tab".
using TableTexts = std::map<std::string, std::string, std::less<>>;

/// The tables that are compiled in.
TableTexts builtInTables();

/// The database, read once, for any number of analyses, also at the same time in several threads.
class Analyser {
 public:
  /// Throws ToolError(badData) for a table that is missing or cannot be right.
  explicit Analyser(const TableTexts& tables = builtInTables());

  /// \param shifts     NMR-STAR, NEF or a table of the program's own, gzipped or not
  /// \param structure  mmCIF or PDB, gzipped or not; nothing for none
  ///
  /// Throws Refusal for input that cannot be used.
  Result analyse(const File& shifts, const std::optional<File>& structure,
                 const Settings& settings = {}) const;

  /// The same of what an importer has made.
  ///
  /// \param name  of the file that it came from
  Result analyse(const Imported& imported, std::string_view name, const Settings& settings) const;

  /// A report on files that the program has written. Throws ToolError(badData).
  Report report(const Sources& sources) const { return makeReport(sources, database_); }

 private:
  void analyseTable(const std::optional<File>& structure, const Settings& settings,
                    Result& result) const;
  CITRANS run(const Settings& settings, const Result& result) const;
  void addProlines(const CITRANS& used, const CITRANS& given, Result& result) const;
  bool correctReferencing(const CITRANS& given, Result& result) const;
  void addReport(const Settings& settings, Result& result) const;

  Database database_;
};

/// The same with the tables that are compiled in.
Result analyse(const File& shifts, const std::optional<File>& structure,
               const Settings& settings = {});

/// Makes the output of one kind, and the name of its file.
///
/// \param kind  "html", "tsv", "json", "svg" (the overview), "chimerax", "pymol", "table", "map",
///              "summary", "secondary" or "structure"
/// Throws ToolError(usage) for any other kind; the text is empty for a map or structure that there
/// is none of.
NamedText makeOutput(const Result& result, std::string_view kind);

} // namespace analyse
