#include "tools/analyse/analyse.h"

#include <stdexcept>

#include "tools/common/program_tables.h"
#include "tools/common/tool.h"
#include "tools/import/gzip_text.h"
#include "tools/import/import.h"
#include "tools/import/structure_file.h"
#include "tools/report/exports.h"

namespace analyse {
namespace {

/// The line that a refusal prints, without what lays it out.
[[noreturn]] void refuse(const std::string& message) {
  throw ToolError(ToolStatus::badData, GDB::simplifyWhiteSpace(message));
}

/// Does something that the program may refuse.
template <typename Do>
auto inProgram(const std::string& name, Do work) {
  try {
    return work();
  } catch (const RunEnd& refusal) {
    refuse(refusal.message().empty() ? name + ": cannot be used" : refusal.message());
  } catch (const std::out_of_range&) {
    refuse(name + ": a line is too short for what it begins with");
  }
}

bool endsWith(const std::string& text, const std::string& ending) {
  return text.size() > ending.size() &&
         text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

/// "bmr16570" of "bmr16570.str.gz".
std::string stemOf(std::string_view name) {
  std::string stem(name);
  if (endsWith(stem, ".gz")) {
    stem.resize(stem.size() - 3);
  }
  const std::size_t point = stem.rfind('.');
  return point == std::string::npos || point == 0 ? stem : stem.substr(0, point);
}

void append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

std::string lettersOf(const GDB& table, const std::string& name) {
  std::string letters;
  for (const auto& [number, residue] : table.residueNames()) {
    letters += residue;
  }
  if (letters.empty() || table.residueNames().begin()->first != 1) {
    throw ToolError(ToolStatus::badData, name + ": no table with a sequence from residue 1");
  }
  return letters;
}

} // namespace

/// A silent run with the database and this input.
CITRANS Analyser::run(const std::string& table, const Settings& settings) const {
  CITRANS run = database_.run;
  run.clipOn = settings.clip;
  run.isoOn = settings.isotope;
  run.offsetOn = settings.offset;
  run.inputTable.loadText(table);
  return run;
}

void Analyser::importShifts(const File& shifts, const Settings& settings, Result& result) const {
  const std::string name(shifts.name);
  const std::string unpacked = isGzip(shifts.bytes) ? unpackGzip(shifts.bytes, name) : "";
  const std::string_view text = isGzip(shifts.bytes) ? unpacked : shifts.bytes;
  if (isProgramTable(text)) {
    result.table = text;
    return;
  }
  Imported imported = importDeposition(text, name, settings.choice, result.alternatives);
  result.imported = true;
  result.table = std::move(imported.table);
  result.map = std::move(imported.map);
  append(result.notes, imported.remarks);
  append(result.warnings, imported.warnings);
}

void Analyser::correctReferencing(const Settings& settings, Result& result) const {
  Settings uncorrected = settings;
  uncorrected.isotope = uncorrected.offset = false;
  CITRANS prepared = run(result.table, uncorrected);
  prepared.getResInfo();
  result.referencing = referencing::estimate(database_.model, referencing::residuesOf(prepared));
  const std::vector<std::string> notes = referencing::describe(*result.referencing);
  result.table = referencing::correctText(result.table,
                                          referencing::offsetsToApply(*result.referencing), notes);
  append(result.notes, notes);
}

void Analyser::fitReference(const File& structure, const Settings& settings, Result& result) const {
  const std::string name(structure.name);
  const Structure read = readStructure(structure.bytes, name);
  GDB table;
  table.loadText(result.table);
  result.fitted =
      fitStructure(read.models, lettersOf(table, result.tableName()), settings.structure, name);
  result.structure = result.fitted->pdb;
  result.structureName = stemOf(name) + ".ref.pdb";
  for (const StructureModel& model : read.models) {
    if (model.id != result.fitted->model) {
      continue;
    }
    for (const ModelChain& chain : model.chains) {
      result.alternatives.chains.push_back(
          {chain.id, chain.id + ", " + std::to_string(chain.residues.size()) + " residues",
           chain.id == result.fitted->chain});
    }
  }
  append(result.notes, structureNotes(*result.fitted));
  append(result.warnings, read.warnings);
}

void Analyser::predict(const Settings& settings, Result& result) const {
  CITRANS made = run(result.table, settings);
  std::string said;
  made.errors = [&said](std::string_view text) { said += text; };
  made.inName = made.inTitle = result.tableName();
  if (!result.structure.empty()) {
    made.refName = made.refTitle = result.structureName;
    made.reference.loadText(result.structure, made.refName);
  }
  made.predictInput();
  for (const std::string& line : GDB::split("\n", said)) {
    result.warnings.push_back(GDB::simplifyWhiteSpace(line));
  }
  for (const auto& [number, letter] : made.sequence) {
    result.sequence += letter;
  }
  result.predictions = made.predictions;
  result.summary = made.summary.text();
  result.secondary = made.shiftTableText();
}

Result Analyser::analyse(const File& shifts, const std::optional<File>& structure,
                         const Settings& settings) const {
  Result result;
  result.name = stemOf(shifts.name);
  importShifts(shifts, settings, result);
  inProgram(result.tableName(), [&]() {
    if (settings.rereference) {
      correctReferencing(settings, result);
    }
    if (structure) {
      fitReference(*structure, settings, result);
    }
    predict(settings, result);
  });
  Sources sources;
  sources.summary = {result.summaryName(), result.summary};
  sources.shifts = {result.name + ".predAdjCS.tab", result.secondary};
  if (!result.map.empty()) {
    sources.map = {result.name + ".map", result.map};
  }
  sources.clip = settings.clip;
  result.report = makeReport(sources, database_);
  append(result.warnings, result.report.warnings);
  return result;
}

Result analyse(const File& shifts, const std::optional<File>& structure, const Settings& settings) {
  static const Analyser analyser;
  return analyser.analyse(shifts, structure, settings);
}

} // namespace analyse
