#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/import/alternatives.h"
#include "tools/import/structure_text.h"
#include "tools/referencing/correction.h"
#include "tools/report/report.h"

/// From the bytes of a file to everything that the programs say of it: import, correction of the
/// referencing, prediction and report in one call, without files and without printing. The page and
/// the Python module are thin over it, and it gives the bytes that the programs give for the same
/// input: citrans-import, citrans and citrans-report, one after the other.
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
  bool offset = false;       ///< the program's own correction, as -offset makes it
  bool clip = true;          ///< bound extreme secondary shifts
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
  std::string summary;       ///< predictions
  std::string secondary;     ///< secondary shifts
  std::vector<Prediction> predictions;
  std::optional<FittedStructure> fitted;             ///< with a structure
  std::optional<referencing::Estimates> referencing; ///< with `Settings::rereference`
  std::vector<std::string> notes;                    ///< what was decided, one line each
  std::vector<std::string> warnings;                 ///< what may be wrong, one line each
  Report report; ///< see htmlPage, tsvText, jsonText and the pictures

  /// Names of the files, as the programs were told: "bmr16570.tab", "bmr16570.pred.tab" and so on.
  std::string tableName() const;
  std::string summaryName() const { return name + ".pred.tab"; }
  std::string structureName; ///< "2kpu.ref.pdb"; empty without a structure
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
  /// Throws ToolError with the line that importer or program would print, for input that cannot be
  /// used.
  Result analyse(const File& shifts, const std::optional<File>& structure,
                 const Settings& settings = {}) const;

 private:
  CITRANS run(const std::string& table, const Settings& settings) const;
  void importShifts(const File& shifts, const Settings& settings, Result& result) const;
  void correctReferencing(const Settings& settings, Result& result) const;
  void fitReference(const File& structure, const Settings& settings, Result& result) const;
  void predict(const Settings& settings, Result& result) const;

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
