#include "tools/analyse/analyse.h"

#include <stdexcept>

#include "table/file_io.h"
#include "table/number.h"
#include "tools/common/program_tables.h"
#include "tools/import/gzip_text.h"
#include "tools/import/structure_file.h"

namespace analyse {
namespace {

/// A name as it can stand in a line of a table or of a message.
std::string plain(std::string_view name) {
  std::string text(name);
  for (char& c : text) {
    c = static_cast<unsigned char>(c) < ' ' || c == '\x7f' ? '_' : c;
  }
  return text;
}

bool endsWith(const std::string& text, const std::string& ending) {
  return text.size() > ending.size() &&
         text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

/// "bmr16570" of "bmr16570.str.gz".
std::string stemOf(std::string_view name) {
  std::string stem = plain(name);
  if (endsWith(stem, ".gz")) {
    stem.resize(stem.size() - 3);
  }
  const std::size_t point = stem.rfind('.');
  return point == std::string::npos || point == 0 ? stem : stem.substr(0, point);
}

void note(Result& result, Step step, bool warning, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) {
    result.notes.push_back({step, warning, line});
  }
}

/// Does what may find the input unusable.
template <typename Do>
void inStep(Step step, const std::string& name, Do work) {
  const auto refuse = [step](const std::string& said) {
    throw Refusal(step, GDB::simplifyWhiteSpace(said), said);
  };
  try {
    work();
  } catch (const Refusal&) {
    throw;
  } catch (const RunEnd& refusal) {
    refuse(refusal.message().empty() ? name + ": cannot be used" : refusal.message());
  } catch (const ToolError& refusal) {
    refuse(refusal.what());
  } catch (const std::out_of_range&) {
    refuse(name + ": a line holds REMARK or DATA and nothing else");
  }
}

Imported importFile(const File& shifts, const Settings& settings, Result& result) {
  const std::string name = plain(shifts.name);
  const std::string unpacked = isGzip(shifts.bytes) ? unpackGzip(shifts.bytes, name) : "";
  const std::string_view text = isGzip(shifts.bytes) ? unpacked : shifts.bytes;
  Imported imported;
  if (isProgramTable(text)) {
    imported.table = text;
  } else {
    imported = importDeposition(text, name, settings.choice, result.alternatives);
  }
  return imported;
}

void takeImported(Imported imported, std::string_view name, const Settings& settings,
                  Result& result) {
  result.name = stemOf(name);
  result.imported = !imported.map.empty();
  result.table = std::move(imported.table);
  result.map = std::move(imported.map);
  note(result, Step::import, false, imported.remarks);
  for (const std::string& warning : imported.warnings) {
    if (!settings.isotope || warning.find(isotopeAdvice) == std::string::npos) {
      note(result, Step::import, true, {warning});
    }
  }
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

/// The chains of the model that was taken.
std::vector<Alternative> chainsBeside(const FittedStructure& fitted, const Structure& structure) {
  std::vector<Alternative> chains;
  for (const StructureModel& model : structure.models) {
    if (model.id != fitted.model) {
      continue;
    }
    for (const ModelChain& chain : model.chains) {
      chains.push_back({chain.id,
                        chain.id + ", " + std::to_string(chain.residues.size()) + " residues",
                        chain.id == fitted.chain});
    }
  }
  return chains;
}

void fitReference(const File& file, const Settings& settings, Result& result) {
  const std::string name = plain(file.name);
  const Structure structure = readStructure(file.bytes, name);
  GDB table;
  table.loadText(result.table);
  const std::string letters = lettersOf(table, result.tableName());
  result.fitted = fitStructure(structure.models, letters, settings.structure, name);
  result.structure = result.fitted->pdb;
  result.structureName = stemOf(file.name) + ".ref.pdb";
  result.alternatives.chains = chainsBeside(*result.fitted, structure);
  note(result, Step::structure, false, structureNotes(*result.fitted));
  note(result, Step::structure, true, structure.warnings);
  note(result, Step::structure, true, structureWarnings(*result.fitted));
}

/// Predicts, and notes what the program says of its input. A refusal says that too.
void predictNoting(CITRANS& run, Result& result) {
  std::string said;
  run.errors = [&said](std::string_view text) { said += text; };
  try {
    run.predictInput();
  } catch (const RunEnd& refusal) {
    throw Refusal(Step::prediction, GDB::simplifyWhiteSpace(refusal.message()),
                  said + refusal.message());
  }
  std::string_view rest = said;
  for (std::string_view line; takeLine(rest, line);) {
    const std::string text = GDB::simplifyWhiteSpace(std::string(line));
    if (!text.empty()) {
      note(result, Step::prediction, true, {text});
    }
  }
  run.errors = [](std::string_view) {};
}

bool hasShift(const CITRANS& run, int residue, const char* atom) {
  const GDB& table = run.shiftTable;
  const std::size_t row = table.findRow("RESID", std::to_string(residue), "ATOMNAME", atom);
  return row != GDB::noRow && parseDouble(table.cell(row, "SHIFT")) < shift::missingFrom;
}

} // namespace

std::vector<std::string> Result::texts(bool warnings) const {
  std::vector<std::string> lines;
  for (const Note& each : notes) {
    if (each.warning == warnings) {
      lines.push_back(each.text);
    }
  }
  return lines;
}

/// A silent run with the database and the table as it is now.
CITRANS Analyser::run(const Settings& settings, const Result& result) const {
  CITRANS run = database_.run;
  run.clipOn = settings.clip;
  run.isoOn = settings.isotope;
  run.offsetOn = settings.offset;
  run.inputTable.loadText(result.table);
  run.inName = run.inTitle = result.tableName();
  if (!result.structure.empty()) {
    run.refName = run.refTitle = result.structureName;
    run.reference.loadText(result.structure, run.refName);
  }
  return run;
}

/// Whether the table holds other shifts now. What was found becomes its first remarks either way.
bool Analyser::correctReferencing(const CITRANS& given, Result& result) const {
  result.referencing = referencing::estimate(database_.model, referencing::residuesOf(given));
  const referencing::Offsets offsets = referencing::offsetsToApply(*result.referencing);
  const std::vector<std::string> found = referencing::describe(*result.referencing);
  result.table = referencing::correctText(result.table, offsets, found);
  note(result, Step::referencing, false, found);
  return offsets != referencing::Offsets{};
}

void Analyser::addProlines(const CITRANS& used, const CITRANS& given, Result& result) const {
  for (const auto& [number, letter] : used.sequence) {
    result.sequence += letter;
  }
  const auto call = [this](const Prediction& prediction, bool hasCb) {
    const double evidence = calls::evidence(static_cast<double>(prediction.likelihood.cis));
    const bool hasCg = static_cast<double>(prediction.cgShift) < shift::missingFrom;
    return database_.rules.call(evidence, calls::assigned(hasCb, hasCg),
                                calls::shiftCount(prediction.shiftCounts));
  };
  // The same shifts are there: the same prolines are predicted.
  for (std::size_t i = 0; i < used.predictions.size(); ++i) {
    Proline proline{used.predictions[i], given.predictions.at(i)};
    proline.hasCb = hasShift(used, proline.used.residue, "CB");
    proline.call = call(proline.used, proline.hasCb);
    proline.givenCall = call(proline.given, proline.hasCb);
    result.prolines.push_back(proline);
  }
}

/// The report is of the printed numbers, as one that is made from the program's files: what a
/// reader finds in these is what it explains.
void Analyser::addReport(const Settings& settings, Result& result) const {
  Sources sources;
  sources.summary = {result.summaryName(), result.summary};
  sources.shifts = {result.name + ".predAdjCS.tab", result.secondary};
  if (!result.map.empty()) {
    sources.map = {result.name + ".map", result.map};
  }
  sources.clip = settings.clip;
  result.report = makeReport(sources, database_);
  note(result, Step::report, true, result.report.warnings);
}

void Analyser::analyseTable(const std::optional<File>& structure, const Settings& settings,
                            Result& result) const {
  const std::string name = result.tableName();
  if (structure) {
    inStep(Step::structure, name, [&]() { fitReference(*structure, settings, result); });
  }
  inStep(Step::prediction, name, [&]() {
    CITRANS given = run(settings, result);
    predictNoting(given, result);
    bool other = false;
    if (settings.rereference && !settings.offset) {
      other = correctReferencing(given, result);
    }
    std::optional<CITRANS> again;
    if (other || (result.referencing && settings.report)) {
      again = run(settings, result);
      again->predictInput();
    }
    const CITRANS& used = again ? *again : given;
    addProlines(used, given, result);
    if (settings.report) {
      result.summary = used.summary.text();
      result.secondary = used.shiftTableText();
    }
  });
  if (settings.report) {
    inStep(Step::report, name, [&]() { addReport(settings, result); });
  }
}

Result Analyser::analyse(const File& shifts, const std::optional<File>& structure,
                         const Settings& settings) const {
  Result result;
  inStep(Step::import, plain(shifts.name), [&]() {
    takeImported(importFile(shifts, settings, result), shifts.name, settings, result);
  });
  analyseTable(structure, settings, result);
  return result;
}

Result Analyser::analyse(const Imported& imported, std::string_view name,
                         const Settings& settings) const {
  Result result;
  takeImported(imported, name, settings, result);
  analyseTable(std::nullopt, settings, result);
  return result;
}

Result analyse(const File& shifts, const std::optional<File>& structure, const Settings& settings) {
  static const Analyser analyser;
  return analyser.analyse(shifts, structure, settings);
}

} // namespace analyse
